#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/host/automation.h"
#include "cli/host/type_description.h"

namespace sabxml::cli {

/// Something that an object gives without being changed by it: a property, a Get or Is method, or a
/// list that is read element by element.
struct ReadableMember {
  enum class Kind {
    kValue,        ///< one value, by one call without arguments
    kCountedList,  ///< a count, and a method that gives the values at an index
    kNamedValues,  ///< a count, names by index, and values by name
    kNamedValue,   ///< one of these, by the name of this member
  };

  Kind kind = Kind::kValue;
  std::string name;  ///< without Get or get_
  MemberDescription member;
  MemberDescription element;       ///< at an index, or by a name
  MemberDescription element_name;  ///< of a named value
};

std::vector<ReadableMember> ReadableMembersOf(const std::vector<MemberDescription>& members);

/// Calls a member with the arguments for its input parameters. Raises Failure.
/// @return its result, else its output parameters in their order
std::vector<Value> Read(IDispatch& object, const MemberDescription& member,
                        std::vector<Value> inputs = {});

}  // namespace sabxml::cli
