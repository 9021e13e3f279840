// Late-bound calls of every class with any members, flags and arguments, among them objects that
// earlier calls have returned: none crashes, and no object remains.

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "base/bstr.h"
#include "base/com_ptr.h"
#include "base/module_lock.h"
#include "generated/dispatch_tables.h"
#include "server/class_entry.h"
#include "server/module.h"

namespace {

using sab::ComPtr;

const sab::Module kModule;

// Files are made in the folder that the process runs in, so that no name leads out of it.
sab::Text FileName(FuzzedDataProvider& data) {
  static const char* const kTexts[] = {"", "s.xml", "/S/G", "//*[", "{", "1e400", "-99999999999"};
  if (data.ConsumeBool()) return sab::FromUtf8(data.PickValueInArray(kTexts));
  sab::Text text = sab::FromUtf8(data.ConsumeRandomLengthString(24));
  std::erase_if(text, [](OLECHAR unit) { return unit == '/' || unit == '\\' || unit == ':'; });
  return text;
}

// The arguments of one call, and the variables that they refer to.
class Arguments {
 public:
  Arguments(FuzzedDataProvider& data, const std::vector<ComPtr<IDispatch>>& objects)
      : values_(data.ConsumeIntegralInRange<std::size_t>(0, 5)),
        variables_(values_.size()),
        names_(data.ConsumeIntegralInRange<std::size_t>(0, values_.size())) {
    for (std::size_t i = 0; i < values_.size(); ++i) Fill(data, objects, values_[i], variables_[i]);
    for (DISPID& name : names_) {
      name = data.ConsumeBool() ? DISPID_PROPERTYPUT : data.ConsumeIntegralInRange(-4, 5);
    }
  }
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;
  ~Arguments() {
    for (VARIANT& value : values_) VariantClear(&value);
    for (VARIANT& variable : variables_) VariantClear(&variable);
  }

  DISPPARAMS Parameters() {
    return {values_.data(), names_.data(), static_cast<UINT>(values_.size()),
            static_cast<UINT>(names_.size())};
  }

 private:
  static void Fill(FuzzedDataProvider& data, const std::vector<ComPtr<IDispatch>>& objects,
                   VARIANT& value, VARIANT& variable) {
    static constexpr VARTYPE kNumbers[] = {VT_EMPTY, VT_NULL, VT_I2,  VT_I4,   VT_R4,   VT_R8,
                                           VT_CY,    VT_DATE, VT_I1,  VT_UI1,  VT_UI2,  VT_UI4,
                                           VT_I8,    VT_UI8,  VT_INT, VT_UINT, VT_BOOL, VT_ERROR};
    switch (data.ConsumeIntegralInRange(0, 6)) {
      case 0:
      case 1:
        value.vt = VT_BSTR;
        if (data.ConsumeBool()) value.bstrVal = sab::Bstr(FileName(data)).Detach();
        break;
      case 2:
        value.vt = data.ConsumeBool() ? VT_DISPATCH : VT_UNKNOWN;
        value.pdispVal = nullptr;
        objects[data.ConsumeIntegralInRange<std::size_t>(0, objects.size() - 1)].CopyTo(
            &value.pdispVal);
        break;
      case 3:
        variable.vt = data.PickValueInArray(kNumbers);
        variable.llVal = data.ConsumeIntegral<LONGLONG>();
        value.vt =
            static_cast<VARTYPE>(VT_BYREF | (variable.vt < VT_I2 ? VT_VARIANT : variable.vt));
        value.byref =
            value.vt == (VT_BYREF | VT_VARIANT) ? static_cast<void*>(&variable) : &variable.llVal;
        break;
      case 4: {
        variable.vt = data.ConsumeBool() ? VT_BSTR : VT_DISPATCH;
        value.vt = static_cast<VARTYPE>(VT_BYREF | variable.vt);
        value.byref = &variable.llVal;
        break;
      }
      case 5:
        value.vt = VT_ARRAY | VT_BSTR;
        value.parray = SafeArrayCreateVector(VT_BSTR, 0, data.ConsumeIntegralInRange(0U, 3U));
        break;
      default:
        value.vt = data.PickValueInArray(kNumbers);
        value.llVal = data.ConsumeBool() ? data.ConsumeIntegral<LONGLONG>()
                                         : data.ConsumeIntegralInRange(-1, 20);
        break;
    }
  }

  std::vector<VARIANT> values_;
  std::vector<VARIANT> variables_;
  std::vector<DISPID> names_;
};

DISPID MemberOf(FuzzedDataProvider& data) {
  return data.ConsumeBool() ? data.ConsumeIntegralInRange(-5, 80) : data.ConsumeIntegral<DISPID>();
}

void Call(FuzzedDataProvider& data, std::vector<ComPtr<IDispatch>>& objects) {
  const ComPtr<IDispatch> object =
      objects[data.ConsumeIntegralInRange<std::size_t>(0, objects.size() - 1)];
  Arguments arguments(data, objects);
  DISPPARAMS parameters = arguments.Parameters();
  VARIANT result{};
  EXCEPINFO exception{};
  UINT bad_argument = 0;
  const DISPID member = MemberOf(data);
  const WORD flags = data.ConsumeIntegralInRange<WORD>(0, 15);
  const HRESULT code =
      object->Invoke(member, IID_NULL, 0, flags, &parameters,
                     data.ConsumeBool() ? &result : nullptr, &exception, &bad_argument);
  if (code == DISP_E_EXCEPTION && SUCCEEDED(exception.scode)) std::abort();
  if (result.vt == VT_DISPATCH && result.pdispVal) objects.emplace_back(result.pdispVal);
  VariantClear(&result);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
}

// Relative names of files lead into a folder of the campaign's own while calls are made.
class OwnFolder {
 public:
  OwnFolder() : before_(std::filesystem::current_path()) { std::filesystem::current_path(Path()); }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;
  ~OwnFolder() { std::filesystem::current_path(before_); }

  static std::filesystem::path Path() {
    return std::filesystem::temp_directory_path() / "sab-fuzz-invoke";
  }

 private:
  std::filesystem::path before_;
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  std::filesystem::create_directories(OwnFolder::Path());
  setenv("SABCOM_REGISTRY", (OwnFolder::Path() / "none.reg").c_str(), 1);
  return FAILED(CoInitialize(nullptr));
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const OwnFolder folder;
  FuzzedDataProvider data(bytes, size);
  const auto classes = sab::ClassTable();
  {
    std::vector<ComPtr<IDispatch>> objects;
    for (int i = 0; i < 3; ++i) {
      const auto place = data.ConsumeIntegralInRange<std::size_t>(0, classes.size() - 1);
      classes[place].create(nullptr, IID_IDispatch, objects.emplace_back().PutVoid());
    }
    while (data.remaining_bytes() > 0 && objects.size() < 64) Call(data, objects);
    // Lists may hold each other, so they are emptied here.
    OLECHAR name[] = OLESTR("RemoveAll");
    for (const ComPtr<IDispatch>& object : objects) {
      LPOLESTR names = name;
      DISPID member = DISPID_UNKNOWN;
      DISPPARAMS none{};
      if (object->GetIDsOfNames(IID_NULL, &names, 1, 0, &member) != S_OK) continue;
      object->Invoke(member, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr);
    }
  }
  SetErrorInfo(0, nullptr);
  if (sab::ModuleLocks::Count() != 0) std::abort();
  return 0;
}
