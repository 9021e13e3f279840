#include "support/late_object.h"

#include <gtest/gtest.h>
#include <sabxml/custom_print.h>

#include <algorithm>
#include <cstdio>

#include "base/com_error.h"
#include "common/conversions.h"
#include "generated/dispatch_tables.h"

namespace sab::testing {
namespace {

std::string ResultText(HRESULT result) {
  char code[16];
  std::snprintf(code, sizeof code, "(0x%08X)", static_cast<unsigned>(result));
  return code;
}

std::string InBrackets(const std::vector<std::string>& elements) {
  std::string text;
  for (const std::string& element : elements) text += (text.empty() ? "" : " ") + element;
  return "[" + text + "]";
}

std::string TextOfObject(IDispatch* object) {
  if (!object) return "(null)";
  const LateObject late{ComPtr<IDispatch>(object)};
  if (FAILED(late.Invoke("GetHeadPosition", DISPATCH_METHOD).code)) return "{" + late.Told() + "}";
  std::vector<std::string> elements;
  for (const LateObject& element : late.Elements()) elements.push_back("{" + element.Told() + "}");
  return InBrackets(elements);
}

std::string TextOf(const LateValue& value) {
  const VARIANT& variant = value.Get();
  if ((variant.vt & VT_ARRAY) != 0) {
    std::vector<std::string> elements;
    for (const LateValue& element : value.Elements()) elements.push_back(element.Text());
    return InBrackets(elements);
  }
  switch (variant.vt) {
    case VT_DISPATCH:
      return TextOfObject(variant.pdispVal);
    case VT_BOOL:
      return std::to_string(variant.boolVal);
    case VT_R4:
      return ToUtf8(FormatFixed(static_cast<double>(variant.fltVal), 6));
    case VT_R8:
      return ToUtf8(FormatFixed(variant.dblVal, 6));
    default:
      return variant.vt == VT_BSTR && !variant.bstrVal ? "(null)" : value.Text();
  }
}

const InterfaceInfo& InterfaceOf(IDispatch& object) {
  ComPtr<ITypeInfo> type;
  TYPEATTR* attributes = nullptr;
  EXPECT_EQ(S_OK, object.GetTypeInfo(0, LOCALE_USER_DEFAULT, type.Put()));
  EXPECT_EQ(S_OK, type->GetTypeAttr(&attributes));
  const GUID iid = attributes->guid;
  type->ReleaseTypeAttr(attributes);
  for (const InterfaceInfo* info : TheLibrary().interfaces) {
    if (*info->iid == iid) return *info;
  }
  ADD_FAILURE() << "the type library has no such interface";
  return *TheLibrary().interfaces.front();
}

}  // namespace

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find(separator, start), text.size());
    parts.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return parts;
}

CLSID RegisteredClassId(const std::string& class_name) {
  if (class_name == "VeCustomPTParser") return CLSID_VeCustomPTParserRegistered;
  for (const CoclassInfo& coclass : TheLibrary().coclasses) {
    if (EqualsAscii(coclass.name, class_name)) return *coclass.clsid;
  }
  ADD_FAILURE() << "the type library has no class " << class_name;
  return CLSID_NULL;
}

LateObject::LateObject(const std::string& class_name) {
  EXPECT_EQ(S_OK, CoCreateInstance(RegisteredClassId(class_name), nullptr, CLSCTX_INPROC_SERVER,
                                   IID_IDispatch, object_.PutVoid()))
      << class_name;
}

LateResult LateObject::Invoke(const std::string& member, WORD flags,
                              const std::vector<std::string>& arguments) const {
  LateResult result;
  try {
    Check(object_ ? S_OK : E_POINTER, "no object");
    const DISPID id = client::MemberNamed(*object_, member);
    result = client::Invoke(*object_, id, flags, {arguments.begin(), arguments.end()});
    result.code = result.Outcome();
  } catch (const ComError& error) {
    result.code = error.Code();
  }
  return result;
}

HRESULT LateObject::Put(const std::string& property, const std::string& value) const {
  return Invoke(property, DISPATCH_PROPERTYPUT, {value}).code;
}

HRESULT LateObject::Call(const std::string& method, const std::vector<std::string>& arguments,
                         std::string* failure) const {
  const LateResult result = Invoke(method, DISPATCH_METHOD, arguments);
  if (failure) *failure = result.description;
  return result.code;
}

std::string LateObject::Get(const std::string& member,
                            const std::vector<std::string>& arguments) const {
  const LateResult result = Invoke(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments);
  return FAILED(result.code) ? ResultText(result.code) : TextOf(result.value);
}

std::string LateObject::Told() const {
  std::string told;
  for (const MemberInfo& member : InterfaceOf(*object_.Get()).members) {
    std::string name = ToUtf8(member.name);
    if (member.parameters.size() != 1 || !member.parameters[0].IsRetval()) continue;
    const std::string value = Get(name);
    if (value.empty() || value == "(null)" || value == "0" || value == "0.000000" || value == "[]")
      continue;
    if (member.kind == MemberKind::kMethod && name.starts_with("Get")) name.erase(0, 3);
    if (!told.empty()) told += ' ';
    told.append(name).append("=").append(value);
  }
  return told;
}

std::vector<LateObject> LateObject::Elements() const {
  std::vector<LateObject> elements;
  for (client::ListWalk walk(*object_); !walk.IsAtEnd();)
    elements.emplace_back(ComPtr<IDispatch>(walk.Next().Get().pdispVal));
  return elements;
}

LateObject LateObject::Follow(const std::string& path) const {
  LateObject reached(*this);
  for (const std::string& step : Split(path, ' ')) {
    const std::string member = step == "[0]" ? "GetHead" : step;
    const LateResult result = reached.Invoke(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET);
    EXPECT_EQ(VT_DISPATCH, result.value.Get().vt) << path << ": " << step;
    if (result.value.Get().vt != VT_DISPATCH) break;
    reached = LateObject(ComPtr<IDispatch>(result.value.Get().pdispVal));
  }
  return reached;
}

}  // namespace sab::testing
