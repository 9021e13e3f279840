#include "cli/host/readable_members.h"

#include <algorithm>
#include <string_view>

namespace sabxml::cli {
namespace {

const MemberDescription* Find(const std::vector<MemberDescription>& members,
                              const std::string& name) {
  const auto found =
      std::find_if(members.begin(), members.end(), [&name](const MemberDescription& member) {
        return member.name == name && member.kind != "put";
      });
  return found == members.end() ? nullptr : &*found;
}

std::string NameOfValue(const MemberDescription& member) {
  for (const std::string_view prefix : {"Get", "get_"}) {
    if (member.kind == "method" && member.name.starts_with(prefix)) {
      return member.name.substr(prefix.size());
    }
  }
  return member.name;
}

bool ReturnsValue(const MemberDescription& member, std::size_t inputs) {
  if (member.kind == "put" || member.InputCount() != inputs) return false;
  return !member.result.empty() || member.parameters.size() > inputs;
}

bool IsReadable(const MemberDescription& member) {
  const bool is_named_so = member.kind == "get" || member.name.starts_with("Get") ||
                           member.name.starts_with("get_") || member.name.starts_with("Is");
  return is_named_so && ReturnsValue(member, 0);
}

// A count may stand for a list, whose elements another method gives.
ReadableMember Readable(const MemberDescription& member,
                        const std::vector<MemberDescription>& members) {
  using Kind = ReadableMember::Kind;
  constexpr std::string_view kCount = "Count";
  ReadableMember readable{Kind::kValue, NameOfValue(member), member, {}, {}};
  if (!member.name.ends_with(kCount)) return readable;
  const std::string stem = member.name.substr(0, member.name.size() - kCount.size());
  const MemberDescription* const name = Find(members, stem + "Name");
  const MemberDescription* const by_name = Find(members, stem);
  if (name && by_name && ReturnsValue(*name, 1) && ReturnsValue(*by_name, 1)) {
    return {Kind::kNamedValues, stem + "s", member, *by_name, *name};
  }
  for (const std::string& candidate : {stem + "At", stem}) {
    const MemberDescription* const element = Find(members, candidate);
    if (!element || !ReturnsValue(*element, 1)) continue;
    readable.kind = Kind::kCountedList;
    readable.element = *element;
    readable.name.resize(readable.name.size() - kCount.size());
  }
  return readable;
}

}  // namespace

std::vector<ReadableMember> ReadableMembersOf(const std::vector<MemberDescription>& members) {
  std::vector<ReadableMember> readable;
  for (const MemberDescription& member : members) {
    if (IsReadable(member)) readable.push_back(Readable(member, members));
  }
  return readable;
}

std::vector<Value> Read(IDispatch& object, const MemberDescription& member,
                        std::vector<Value> inputs) {
  // Variables of the caller's, which the member fills, as scripts pass them.
  std::vector<Value> outputs(member.parameters.size() - member.InputCount());
  for (Value& output : outputs) inputs.push_back(Value::Reference(VT_VARIANT, output.Put()));
  const WORD flags = member.kind == "method" ? DISPATCH_METHOD : DISPATCH_PROPERTYGET;
  Value result = cli::Call(object, member.id, flags, inputs);
  return member.result.empty() ? outputs : std::vector<Value>{std::move(result)};
}

}  // namespace sabxml::cli
