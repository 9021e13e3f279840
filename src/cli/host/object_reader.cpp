#include "cli/host/object_reader.h"

#include <sabxml/variant_size.h>

#include <algorithm>
#include <charconv>
#include <utility>

#include "cli/host/type_description.h"
#include "cli/suggestion.h"
#include "text/ascii.h"

namespace sabxml::cli {
namespace {

bool IsCollection(const std::vector<MemberDescription>& members) {
  const auto has = [&members](const char* name) {
    return std::any_of(members.begin(), members.end(),
                       [name](const MemberDescription& member) { return member.name == name; });
  };
  return has("GetHeadPosition") && has("GetNext") && has("AddTailColl");
}

// The number that a person would write: 0.1 and not what is nearest to it in a float.
double ShortestOf(float number) {
  char text[32];
  const std::to_chars_result end = std::to_chars(text, text + sizeof text, number);
  double shortest = number;
  std::from_chars(text, end.ptr, shortest);
  return shortest;
}

// "o_pbsLayerName": "LayerName"
std::string NameOfOutput(const std::string& parameter) {
  std::size_t at = parameter.starts_with("o_") ? 2 : 0;
  while (at < parameter.size() && parameter[at] >= 'a' && parameter[at] <= 'z') ++at;
  return at < parameter.size() ? parameter.substr(at) : parameter;
}

Json ScalarOf(const Value& of) {
  const VARIANT& value = of.Get();
  switch (value.vt) {
    case VT_BSTR:
      return ToUtf8(value.bstrVal);
    case VT_BOOL:
      // Files carry other numbers than -1 for true, and settings keep them.
      return value.boolVal != VARIANT_FALSE;
    case VT_R4:
      return ShortestOf(value.fltVal);
    case VT_R8:
      return value.dblVal;
    case VT_EMPTY:
    case VT_NULL:
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return nullptr;
    default:
      return of.Number();
  }
}

std::size_t WidthOfNames(const std::vector<ReadableMember>& members) {
  std::size_t width = 0;
  for (const ReadableMember& member : members) width = std::max(width, member.name.size());
  return width;
}

}  // namespace

const ObjectReader::Shape& ObjectReader::ShapeOf(IDispatch& object) {
  ComPtr<ITypeInfo> info;
  HRESULT result = object.GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Put());
  TYPEATTR* attributes = nullptr;
  if (SUCCEEDED(result)) result = info->GetTypeAttr(&attributes);
  if (FAILED(result)) Fail(result, "reading the type information");
  const std::string identifier(reinterpret_cast<const char*>(&attributes->guid), sizeof(GUID));
  info->ReleaseTypeAttr(attributes);
  const auto known = shapes_.find(identifier);
  if (known != shapes_.end()) return known->second;

  Shape shape;
  shape.type = NameOf(*info.Get());
  const std::vector<MemberDescription> members = DescribeMembers(*info.Get());
  shape.is_collection = IsCollection(members);
  if (!shape.is_collection) shape.members = ReadableMembersOf(members);
  shape.name_width = WidthOfNames(shape.members);
  return shapes_.emplace(identifier, std::move(shape)).first->second;
}

void ObjectReader::Enter(IDispatch& object, std::string_view name,
                         const std::vector<ReadableMember>* selected) {
  const Shape& shape = ShapeOf(object);
  Frame frame;
  frame.object = ComPtr<IDispatch>(&object);
  frame.shape = &shape;
  frame.members = selected ? selected : &shape.members;
  if (shape.is_collection) {
    OrFail([&] { frame.walk.emplace(object); });
    sink_.BeginList(name);
  } else {
    sink_.BeginObject(name, shape.type, selected ? WidthOfNames(*selected) : shape.name_width);
  }
  frames_.push_back(std::move(frame));
}

void ObjectReader::Refuse(std::string_view name, const Failure& failure) {
  sink_.BeginObject(name, {}, 5);
  sink_.AddValue("error", failure.Explanation());
  sink_.End();
  refusals_.push_back((name.empty() ? "an element" : std::string(name)) + ": " +
                      failure.Explanation());
}

void ObjectReader::Take(const Value& value, std::string_view name) {
  const VARIANT& variant = value.Get();
  if ((variant.vt & VT_ARRAY) != 0) {
    sink_.BeginList(name);
    for (const Value& element : value.Elements()) sink_.AddValue({}, ScalarOf(element));
    sink_.End();
  } else if (variant.vt == VT_DISPATCH && variant.pdispVal) {
    Enter(*variant.pdispVal, name, nullptr);
  } else {
    sink_.AddValue(name, ScalarOf(value));
  }
}

// Elements of lists by index and named values are texts and numbers: no objects to enter.
void ObjectReader::TakeCountedList(IDispatch& object, const ReadableMember& list) {
  const LONGLONG count = cli::Read(object, list.member).front().Number();
  std::vector<std::string> names;
  std::size_t width = 0;
  for (const ParameterDescription& parameter : list.element.parameters) {
    if (parameter.is_in) continue;
    names.push_back(NameOfOutput(parameter.name));
    width = std::max(width, names.back().size());
  }
  std::vector<std::vector<Value>> elements;
  for (LONGLONG i = 0; i < count; ++i) {
    elements.push_back(cli::Read(object, list.element, {Value(i)}));
  }
  sink_.BeginList(list.name);
  for (const std::vector<Value>& values : elements) {
    if (values.size() == 1) {
      sink_.AddValue({}, ScalarOf(values.front()));
      continue;
    }
    sink_.BeginObject({}, {}, width);
    for (std::size_t i = 0; i < values.size(); ++i) {
      sink_.AddValue(names[i], ScalarOf(values[i]));
    }
    sink_.End();
  }
  sink_.End();
}

void ObjectReader::TakeNamedValues(IDispatch& object, const ReadableMember& values) {
  const LONGLONG count = cli::Read(object, values.member).front().Number();
  std::vector<std::pair<std::string, Json>> found;
  std::size_t width = 0;
  for (LONGLONG i = 0; i < count; ++i) {
    const Value name = cli::Read(object, values.element_name, {Value(i)}).front();
    found.emplace_back(name.Text(), ScalarOf(cli::Read(object, values.element, {name}).front()));
    width = std::max(width, found.back().first.size());
  }
  sink_.BeginObject(values.name, {}, width);
  for (const auto& [name, value] : found) sink_.AddValue(name, value);
  sink_.End();
}

// Late-bound clients get unsigned numbers above the signed ones as floating-point numbers.
void ObjectReader::TakeValue(const Value& value, const ReadableMember& member) {
  const std::string& type = member.member.result;
  if (value.Get().vt == VT_R8 && type != "double" && type != "float") {
    sink_.AddValue(member.name, value.Number());
  } else {
    Take(value, member.name);
  }
}

void ObjectReader::TakeMember(IDispatch& object, const ReadableMember& member) {
  switch (member.kind) {
    case ReadableMember::Kind::kValue:
      TakeValue(cli::Read(object, member.member).front(), member);
      return;
    case ReadableMember::Kind::kCountedList:
      TakeCountedList(object, member);
      return;
    case ReadableMember::Kind::kNamedValues:
      TakeNamedValues(object, member);
      return;
    case ReadableMember::Kind::kNamedValue:
      Take(cli::Read(object, member.element, {Value(member.name)}).front(), member.name);
      return;
  }
}

void ObjectReader::StepMember(Frame& frame) {
  const std::vector<ReadableMember>& members = *frame.members;
  if (frame.next == members.size()) {
    sink_.End();
    frames_.pop_back();
    return;
  }
  const ReadableMember& member = members[frame.next++];
  try {
    TakeMember(*frame.object.Get(), member);
  } catch (const Failure& failure) {
    Refuse(member.name, failure);
  }
}

void ObjectReader::StepElement(Frame& frame) {
  if (frame.walk->IsAtEnd()) {
    sink_.End();
    frames_.pop_back();
    return;
  }
  try {
    Take(OrFail([&] { return frame.walk->Next(); }), {});
  } catch (const Failure& failure) {
    Refuse({}, failure);
  }
}

void ObjectReader::Step() {
  Frame& frame = frames_.back();
  if (frame.shape->is_collection) {
    StepElement(frame);
  } else {
    StepMember(frame);
  }
}

ReadableMember ObjectReader::MemberNamed(const Shape& shape,
                                         const std::vector<ReadableMember>& shown,
                                         const std::string& name) {
  for (const ReadableMember& member : shown) {
    if (sab::EqualsIgnoringAsciiCase(member.name, name)) return member;
  }
  for (std::size_t i = 0; i < shown.size(); ++i) {
    if (sab::EqualsIgnoringAsciiCase(shape.members[i].name, name)) return shown[i];
  }
  for (const ReadableMember& member : shown) {
    if (member.kind == ReadableMember::Kind::kNamedValues) {
      return {ReadableMember::Kind::kNamedValue, name, {}, member.element, {}};
    }
  }
  std::vector<std::string> names;
  for (const ReadableMember& member : shown) names.push_back(member.name);
  throw Failure(shape.type.substr(shape.type.starts_with('I') ? 1 : 0) + " has no value named " +
                name + DidYouMean(name, names));
}

void ObjectReader::Read(IDispatch& object, std::string_view name,
                        const std::vector<std::string>& only, const Naming& naming) {
  const Shape& shape = ShapeOf(object);
  const bool is_whole = only.empty() && !naming;
  std::vector<ReadableMember> shown;
  if (!is_whole) shown = shape.members;
  if (naming) {
    for (ReadableMember& member : shown) member.name = naming(member.name);
  }
  std::vector<ReadableMember> selected;
  selected.reserve(only.size());
  for (const std::string& wanted : only) selected.push_back(MemberNamed(shape, shown, wanted));
  Enter(object, name, is_whole ? nullptr : only.empty() ? &shown : &selected);
  while (!frames_.empty()) Step();
}

std::vector<std::string> ReadTexts(IDispatch& object, std::string_view member) {
  const Value value = Call(object, member, DISPATCH_METHOD | DISPATCH_PROPERTYGET);
  const VARIANT& variant = value.Get();
  std::vector<std::string> texts;
  if ((variant.vt & VT_ARRAY) == 0) {
    texts.push_back(ToUtf8(variant.vt == VT_BSTR ? variant.bstrVal : nullptr));
    return texts;
  }
  for (const Value& element : value.Elements()) {
    if (element.Get().vt == VT_BSTR) texts.push_back(element.Text());
  }
  return texts;
}

}  // namespace sabxml::cli
