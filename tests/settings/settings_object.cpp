#include "settings/settings_object.h"

#include <gtest/gtest.h>
#include <sabxml/custom_print.h>

#include <cstdio>

#include "common/config_document.h"
#include "common/conversions.h"
#include "dispatch_tables.h"

namespace sab::testing {
namespace {

std::string ResultText(HRESULT result) {
  char code[16];
  std::snprintf(code, sizeof code, "(0x%08X)", static_cast<unsigned>(result));
  return code;
}

std::string TextOfVariant(const VARIANT& value) {
  switch (value.vt) {
    case VT_EMPTY:
      return "";
    case VT_BSTR:
      return ToUtf8(Bstr::ViewOf(value.bstrVal));
    case VT_BOOL:
      return std::to_string(value.boolVal);
    case VT_R4:
      return ToUtf8(FormatFixed(static_cast<double>(value.fltVal), 6));
    case VT_R8:
      return ToUtf8(FormatFixed(value.dblVal, 6));
    default: {
      VARIANT text;
      VariantInit(&text);
      if (FAILED(VariantChangeType(&text, const_cast<VARIANT*>(&value), 0, VT_BSTR)))
        return "(type " + std::to_string(value.vt) + ")";
      Bstr owned;
      owned.Attach(text.bstrVal);
      return ToUtf8(owned.View());
    }
  }
}

std::string Describe(const ConfigElement& parent, Text& scratch) {
  std::string all;
  for (const ConfigElement child : parent.Children()) {
    if (!all.empty()) all += ' ';
    all += ToUtf8(child.ReadLocalName(scratch));
    all += child.Children().begin() == nullptr ? '=' + ToUtf8(child.ReadText(scratch))
                                               : '{' + Describe(child, scratch) + '}';
  }
  return all;
}

}  // namespace

CLSID RegisteredClassId(const std::string& class_name) {
  if (class_name == "VeCustomPTParser") return CLSID_VeCustomPTParserRegistered;
  for (const CoclassInfo& coclass : TheLibrary().coclasses) {
    if (EqualsAscii(coclass.name, class_name)) return *coclass.clsid;
  }
  ADD_FAILURE() << "the type library has no class " << class_name;
  return CLSID_NULL;
}

SettingsObject::SettingsObject(const std::string& class_name) {
  EXPECT_EQ(S_OK, CoCreateInstance(RegisteredClassId(class_name), nullptr, CLSCTX_INPROC_SERVER,
                                   IID_IDispatch, object_.PutVoid()))
      << class_name;
}

HRESULT SettingsObject::Run(const std::string& method, const Text& file,
                            const std::string& node_path) {
  std::vector<Bstr> arguments;
  arguments.emplace_back(file);
  arguments.emplace_back(FromUtf8(node_path));
  return Invoke(method, DISPATCH_METHOD, arguments, nullptr);
}

HRESULT SettingsObject::Put(const std::string& property, const std::string& value) {
  std::vector<Bstr> arguments;
  arguments.emplace_back(FromUtf8(value));
  return Invoke(property, DISPATCH_PROPERTYPUT, arguments, nullptr);
}

HRESULT SettingsObject::Call(const std::string& method, const std::vector<std::string>& texts) {
  std::vector<Bstr> arguments;
  for (const std::string& text : texts) arguments.emplace_back(FromUtf8(text));
  return Invoke(method, DISPATCH_METHOD, arguments, nullptr);
}

std::string SettingsObject::Get(const std::string& member) { return TextOfCall(member, {}); }

std::string SettingsObject::Get(const std::string& member, const std::string& argument) {
  std::vector<Bstr> arguments;
  arguments.emplace_back(FromUtf8(argument));
  return TextOfCall(member, arguments);
}

std::string SettingsObject::TextOfCall(const std::string& member,
                                       const std::vector<Bstr>& arguments) {
  VARIANT value;
  VariantInit(&value);
  const HRESULT result = Invoke(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments, &value);
  const std::string text = FAILED(result) ? ResultText(result) : TextOfVariant(value);
  VariantClear(&value);
  return text;
}

// The code of a member's own failure is what counts, not that there was one.
HRESULT SettingsObject::Invoke(const std::string& name, WORD flags,
                               const std::vector<Bstr>& arguments, VARIANT* result) {
  if (!object_) return E_POINTER;
  Text wide = FromUtf8(name);
  LPOLESTR names[] = {wide.data()};
  DISPID id = DISPID_UNKNOWN;
  const HRESULT found = object_->GetIDsOfNames(IID_NULL, names, 1, 0, &id);
  if (FAILED(found)) return found;
  std::vector<VARIANT> given(arguments.size());
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    VARIANT& argument = given[arguments.size() - 1 - i];
    VariantInit(&argument);
    argument.vt = VT_BSTR;
    argument.bstrVal = arguments[i].Get();
  }
  DISPID put = DISPID_PROPERTYPUT;
  const bool is_put = flags == DISPATCH_PROPERTYPUT;
  DISPPARAMS parameters{given.data(), is_put ? &put : nullptr, static_cast<UINT>(given.size()),
                        is_put ? 1U : 0U};
  EXCEPINFO exception{};
  const HRESULT called =
      object_->Invoke(id, IID_NULL, 0, flags, &parameters, result, &exception, nullptr);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  return called == DISP_E_EXCEPTION ? exception.scode : called;
}

std::string ElementsOf(const Text& file, const std::string& node_path) {
  ConfigDocument document;
  if (!document.Load(file)) return "(no file)";
  const ConfigElement node = document.Select(FromUtf8(node_path));
  Text scratch;
  return node ? Describe(node, scratch) : "(no node)";
}

}  // namespace sab::testing
