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
#include <cstring>

namespace {

int failures = 0;

void Expect(bool condition, const char* what) {
  if (!condition) {
    std::printf("failed: %s\n", what);
    ++failures;
  }
}

DISPID IdOf(IDispatch* object, const OLECHAR* name) {
  LPOLESTR names[1] = {const_cast<LPOLESTR>(name)};
  DISPID id = DISPID_UNKNOWN;
  object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  return id;
}

HRESULT PutText(IDispatch* object, const OLECHAR* name, const OLECHAR* text) {
  VARIANTARG argument;
  VariantInit(&argument);
  argument.vt = VT_BSTR;
  argument.bstrVal = SysAllocString(text);
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters = {&argument, &put, 1, 1};
  const HRESULT result =
      object->Invoke(IdOf(object, name), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT,
                     &parameters, nullptr, nullptr, nullptr);
  VariantClear(&argument);
  return result;
}

HRESULT Call(IDispatch* object, const OLECHAR* name, WORD flags, VARIANT* result,
             EXCEPINFO* exception) {
  DISPPARAMS none = {nullptr, nullptr, 0, 0};
  return object->Invoke(IdOf(object, name), IID_NULL, LOCALE_USER_DEFAULT, flags, &none, result,
                        exception, nullptr);
}

}  // namespace

int main() {
  Expect(SUCCEEDED(CoInitialize(nullptr)), "CoInitialize");
  CLSID clsid;
  Expect(CLSIDFromProgID(OLESTR("SabXmlParser.VePrsAccelColl"), &clsid) == S_OK, "CLSIDFromProgID");
  IDispatch* list = nullptr;
  Expect(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                          reinterpret_cast<void**>(&list)) == S_OK,
         "CoCreateInstance");
  Expect(CLSIDFromProgID(OLESTR("SabXmlParser.VePrsAccel"), &clsid) == S_OK, "CLSIDFromProgID");
  IDispatch* accel = nullptr;
  Expect(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                          reinterpret_cast<void**>(&accel)) == S_OK,
         "CoCreateInstance");
  if (!list || !accel) return 1;
  Expect(PutText(accel, OLESTR("key"), OLESTR("F7")) == S_OK, "put Key");

  VARIANTARG item;
  VariantInit(&item);
  item.vt = VT_DISPATCH;
  item.pdispVal = accel;
  DISPPARAMS one = {&item, nullptr, 1, 0};
  Expect(list->Invoke(IdOf(list, OLESTR("AddTail")), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                      &one, nullptr, nullptr, nullptr) == S_OK,
         "AddTail");

  VARIANT value;
  VariantInit(&value);
  Expect(Call(list, OLESTR("GetCount"), DISPATCH_METHOD, &value, nullptr) == S_OK, "GetCount");
  LONG count = 0;
  Expect(VariantChangeType(&value, &value, 0, VT_I4) == S_OK, "VariantChangeType");
  count = value.lVal;
  Expect(count == 1, "one element");
  VariantClear(&value);

  Expect(Call(list, OLESTR("GetHead"), DISPATCH_METHOD, &value, nullptr) == S_OK, "GetHead");
  Expect(value.vt == VT_DISPATCH, "an object");
  VARIANT key;
  VariantInit(&key);
  Expect(Call(value.pdispVal, OLESTR("Key"), DISPATCH_PROPERTYGET, &key, nullptr) == S_OK, "Key");
  Expect(key.vt == VT_BSTR && SysStringLen(key.bstrVal) == 2, "its text");
  VariantClear(&key);
  VariantClear(&value);

  Expect(Call(list, OLESTR("RemoveHeadNoReturn"), DISPATCH_METHOD, nullptr, nullptr) == S_OK,
         "RemoveHeadNoReturn");
  EXCEPINFO exception;
  std::memset(&exception, 0, sizeof exception);
  Expect(Call(list, OLESTR("RemoveHeadNoReturn"), DISPATCH_METHOD, nullptr, &exception) ==
             DISP_E_EXCEPTION,
         "an exception");
  Expect(exception.scode == E_FAIL && exception.bstrDescription, "its code and description");
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);

  accel->Release();
  list->Release();
  CoFreeUnusedLibraries();
  CoUninitialize();
  std::printf("%d failures\n", failures);
  return failures;
}
