// Late-bound calls of every class with any members, flags and arguments, among them objects that
// earlier calls have returned: none crashes, and no object remains.

#include <cstdlib>
#include <filesystem>
#include <vector>

#include "base/com_error.h"
#include "base/module_lock.h"
#include "client/late_call.h"
#include "fuzz/choices.h"
#include "generated/dispatch_tables.h"
#include "server/class_entry.h"
#include "server/module.h"

namespace {

using sab::ComPtr;
using sab::client::Value;
using sab::fuzz::Choices;
using Objects = std::vector<ComPtr<IDispatch>>;

const sab::Module kModule;

// Files are made in the folder that the process runs in, so that no name leads out of it.
Value Text(Choices& choices) {
  static const char* const kTexts[] = {"", "s.xml", "/S/G", "//*[", "{", "1e400", "-99999999999"};
  if (choices.Flip()) return Value(choices.Pick(kTexts));
  std::string text = choices.Text(24);
  std::erase_if(text, [](char byte) { return byte == '/' || byte == '\\' || byte == ':'; });
  return Value(text);
}

Value Number(Choices& choices) {
  static constexpr VARTYPE kTypes[] = {VT_EMPTY, VT_NULL, VT_I2,  VT_I4,   VT_R4,   VT_R8,
                                       VT_CY,    VT_DATE, VT_I1,  VT_UI1,  VT_UI2,  VT_UI4,
                                       VT_I8,    VT_UI8,  VT_INT, VT_UINT, VT_BOOL, VT_ERROR};
  Value number(choices.Flip() ? choices.Take<LONGLONG>() : LONGLONG{choices.Take<signed char>()});
  number.Put()->vt = choices.Pick(kTypes);
  return number;
}

/// @param variable what the argument may refer to
Value Argument(Choices& choices, const Objects& objects, Value& variable) {
  switch (choices.Below(6)) {
    case 0:
      return choices.Flip() ? Text(choices) : Value::Missing();
    case 1: {
      Value object = Value::Of(choices.Pick(objects).Get());
      object.Put()->vt = choices.Flip() ? VT_DISPATCH : VT_UNKNOWN;
      return object;
    }
    case 2:
      variable = Number(choices);
      return Value::Reference(VT_VARIANT, variable.Put());
    case 3: {
      static constexpr VARTYPE kTypes[] = {VT_BSTR, VT_DISPATCH, VT_I2, VT_I4, VT_I8, VT_R8};
      variable.Put()->vt = choices.Pick(kTypes);
      return Value::Reference(variable.Get().vt, &variable.Put()->llVal);
    }
    case 4: {
      Value array;
      array.Put()->vt = VT_ARRAY | VT_BSTR;
      array.Put()->parray = SafeArrayCreateVector(VT_BSTR, 0, choices.Take<UINT>() % 4);
      return array;
    }
    default:
      return Number(choices);
  }
}

void Call(Choices& choices, Objects& objects) {
  const ComPtr<IDispatch> object = choices.Pick(objects);
  std::vector<Value> variables(choices.Below(6));
  std::vector<Value> arguments;
  for (Value& variable : variables) arguments.push_back(Argument(choices, objects, variable));
  sab::client::InvokeParameters given(arguments, false);
  std::vector<DISPID> names(choices.Below(arguments.size() + 1));
  for (DISPID& name : names)
    name = choices.Flip() ? DISPID_PROPERTYPUT : choices.Take<signed char>();
  given.parameters.rgdispidNamedArgs = names.data();
  given.parameters.cNamedArgs = static_cast<UINT>(names.size());
  const DISPID member = choices.Flip() ? choices.Take<signed char>() : choices.Take<DISPID>();
  const WORD flags = choices.Take<std::uint8_t>() % 16;
  const auto result = sab::client::Invoke(*object, member, flags, given.parameters);
  sab::fuzz::Require(FAILED(result.scode) || result.code != DISP_E_EXCEPTION);
  const VARIANT& value = result.value.Get();
  if (value.vt == VT_DISPATCH && value.pdispVal) objects.emplace_back(value.pdispVal);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  // Relative names of files lead into a folder of its own.
  const auto folder = std::filesystem::temp_directory_path() / "sab-fuzz-invoke";
  std::filesystem::create_directories(folder);
  std::filesystem::current_path(folder);
  setenv("SABCOM_REGISTRY", (folder / "none.reg").c_str(), 1);
  return FAILED(CoInitialize(nullptr));
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  Choices choices(bytes, size);
  const auto classes = sab::ClassTable();
  {
    Objects objects;
    for (int i = 0; i < 3; ++i)
      choices.Pick(classes).create(nullptr, IID_IDispatch, objects.emplace_back().PutVoid());
    while (!choices.IsEmpty() && objects.size() < 64) Call(choices, objects);
    // Lists may hold each other, so they are emptied here.
    for (const ComPtr<IDispatch>& object : objects) {
      try {
        sab::client::Call(*object, "RemoveAll", DISPATCH_METHOD);
      } catch (const sab::ComError&) {
      }
    }
  }
  SetErrorInfo(0, nullptr);
  sab::fuzz::Require(sab::ModuleLocks::Count() == 0);
  return 0;
}
