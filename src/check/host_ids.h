#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "formats/rule.h"

namespace sab::check {

/// Identifiers that the host itself defines, so that no file has to.
class HostIds {
 public:
  /// Takes the lines of a file: an identifier each, before or after it the kind that it is of
  /// ("command WK_HELP", "WK_HELP"); what follows # is a comment. A line of one word is an
  /// identifier, even if it is the name of a kind.
  /// @return what is not understood, "LINE: why"; empty for nothing. The other lines are taken
  std::string Add(std::string_view lines);

  bool Has(formats::Subject subject, std::string_view id) const;
  /// Those that may be of a kind; valid as long as nothing is added.
  std::vector<std::string_view> Known(formats::Subject subject) const;
  /// Those that are of a kind, not those that may be of any.
  std::vector<std::string> Of(formats::Subject subject) const;

 private:
  std::map<formats::Subject, std::set<std::string, std::less<>>> ids_;  // kNone for every kind
};

}  // namespace sab::check
