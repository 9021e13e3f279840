// A client as anybody would write it, with nothing but the automation interfaces. The same source
// is built against the Windows SDK and against our runtime; only literals are written with OLESTR.

#if defined(_WIN32)
#include <ole2.h>
#include <oleauto.h>
#include <windows.h>
#else
#include <sabxml/com.h>
#endif

#include <cstdio>

namespace {

int failures = 0;

void Expect(bool condition, const char* what) {
  if (condition) return;
  std::printf("failed: %s\n", what);
  ++failures;
}

IDispatch* Create(const OLECHAR* prog_id) {
  CLSID clsid;
  void* object = nullptr;
  Expect(CLSIDFromProgID(prog_id, &clsid) == S_OK, "CLSIDFromProgID");
  Expect(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, &object) == S_OK,
         "CoCreateInstance");
  return static_cast<IDispatch*>(object);
}

// Calls a member by its name, with an argument or with none.
HRESULT Call(IDispatch* object, const OLECHAR* name, WORD flags, VARIANTARG* argument,
             VARIANT* result = nullptr) {
  LPOLESTR names[1] = {const_cast<LPOLESTR>(name)};
  DISPID id = DISPID_UNKNOWN;
  object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  DISPID put = DISPID_PROPERTYPUT;
  const bool is_put = flags == DISPATCH_PROPERTYPUT;
  DISPPARAMS parameters = {argument, is_put ? &put : nullptr, argument ? 1U : 0U, is_put ? 1U : 0U};
  return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result, nullptr,
                        nullptr);
}

}  // namespace

int main() {
  Expect(SUCCEEDED(CoInitialize(nullptr)), "CoInitialize");
  IDispatch* const list = Create(OLESTR("SabXmlParser.VePrsAccelColl"));
  IDispatch* const accel = Create(OLESTR("SabXmlParser.VePrsAccel"));
  if (!list || !accel) return 1;

  VARIANT value = {};
  value.vt = VT_BSTR;
  value.bstrVal = SysAllocString(OLESTR("F7"));
  Expect(Call(accel, OLESTR("key"), DISPATCH_PROPERTYPUT, &value) == S_OK, "put Key");
  VariantClear(&value);
  value.vt = VT_DISPATCH;
  value.pdispVal = accel;  // whose reference it takes over
  Expect(Call(list, OLESTR("AddTail"), DISPATCH_METHOD, &value) == S_OK, "AddTail");
  VariantClear(&value);
  Expect(Call(list, OLESTR("GetHead"), DISPATCH_METHOD, nullptr, &value) == S_OK &&
             value.vt == VT_DISPATCH,
         "GetHead");
  VARIANT key = {};
  Expect(Call(value.pdispVal, OLESTR("Key"), DISPATCH_PROPERTYGET, nullptr, &key) == S_OK &&
             key.vt == VT_BSTR && SysStringLen(key.bstrVal) == 2,
         "Key");
  VariantClear(&key);
  VariantClear(&value);

  list->Release();
  CoFreeUnusedLibraries();
  CoUninitialize();
  std::printf("%d failures\n", failures);
  return failures;
}
