#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "formats/rule.h"

namespace sab::check {

// What a text is worth as a value of a type. Each gives what is wrong with it, or nothing.

struct Complaint {
  bool is_range = false;  ///< it is a number, but one that does not fit
  std::string message;
};

/// @param text not empty
std::optional<Complaint> AgainstWhole(const formats::Rule& rule, std::string_view text);
std::optional<Complaint> AgainstDecimal(const formats::Rule& rule, std::string_view text);
std::optional<Complaint> AgainstFlag(const formats::Rule& rule, std::string_view text);

/// Whether a text is a class identifier in braces.
bool IsGuid(std::string_view text);

}  // namespace sab::check
