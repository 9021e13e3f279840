#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "check/check.h"

namespace sab::check {

/// What a person chose, as texts: on a command line or in a file named .sabxml-check.
struct Options {
  std::vector<std::string> settings;    ///< CLASS:NODEPATH
  std::vector<std::string> disabled;    ///< identifiers of rules
  std::vector<std::string> severities;  ///< RULE=LEVEL
  std::vector<std::string> host_ids;    ///< files
  std::string fail_on = "error";
  std::string baseline;
  std::map<std::string, std::string> places;  ///< "FILE:LINE" of values that a file has
};

/// Options that are not understood, or a file of theirs that cannot be read.
class OptionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The file .sabxml-check that is nearest to a file: in its folder, or in one around it. Empty
/// where there is none.
std::string OptionFileFor(const std::string& file);

/// Adds what a file .sabxml-check says: an option a line, as on the command line, with or without
/// its dashes. Paths in it are relative to its folder. Raises OptionError.
void AddOptionFile(Options& options, const std::string& path);

/// Does something with the value of an option. An OptionError then names the file and the line
/// where the value comes from one.
template <class Action>
auto WithPlace(const Options& options, const std::string& value, const Action& action) {
  try {
    return action();
  } catch (const OptionError& error) {
    const auto place = options.places.find(value);
    if (place == options.places.end()) throw;
    throw OptionError(place->second + ": " + error.what());
  }
}

/// Options with their meaning. Raises OptionError for an unknown rule, level or class, and for a
/// file of identifiers that cannot be read or is not understood.
Choices ChoicesOf(const Options& options);

/// A rule by its identifier. Raises OptionError.
const RuleText& CheckedRule(const std::string& id);

}  // namespace sab::check
