#pragma once

#include <map>
#include <string>
#include <vector>

#include "check/check.h"

namespace sabxml::cli {

/// The options of "sabxml check" as they are given.
struct CheckOptions {
  std::vector<std::string> files;
  std::vector<std::string> settings;    ///< CLASS:NODEPATH
  std::vector<std::string> disabled;    ///< identifiers of rules
  std::vector<std::string> severities;  ///< RULE=LEVEL
  std::vector<std::string> host_ids;    ///< files
  std::string fail_on = "error";
  std::string baseline;
  std::string format = "text";
  std::string explained_rule;
  bool as_json = false;
  bool writes_baseline = false;
  bool fixes = false;
  bool is_dry_run = false;
  bool lists_rules = false;
};

/// A command line that is not understood, or a file that cannot be read: the program then ends with
/// the exit code 2.
class Misunderstood : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Adds what the files named .sabxml-check say that are nearest to the files: an option a line, as
/// on the command line, with or without its dashes. Paths in it are relative to its folder; what
/// the command line says of a rule counts more. Raises Misunderstood.
void AddConfiguredOptions(CheckOptions& options);

/// Options with their meaning. Raises Misunderstood for an unknown rule, level or class, and for a
/// file of identifiers that cannot be read.
sab::check::Choices ChoicesOf(const CheckOptions& options);

}  // namespace sabxml::cli
