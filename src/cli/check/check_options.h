#pragma once

#include <string>
#include <vector>

#include "check/options.h"

namespace sabxml::cli {

/// The options of "sabxml check" as they are given.
struct CheckOptions : sab::check::Options {
  std::vector<std::string> files;
  std::string format = "text";
  std::string explained_rule;
  bool as_json = false;
  bool has_two_formats = false;
  bool writes_baseline = false;
  bool fixes = false;
  bool is_dry_run = false;
  bool lists_rules = false;
};

/// A command line that is not understood, or a file that cannot be read: the program then ends with
/// the exit code 2.
using Misunderstood = sab::check::OptionError;

/// Adds what the files named .sabxml-check say that are nearest to the files; what the command line
/// says of a rule counts more. Raises Misunderstood.
void AddConfiguredOptions(CheckOptions& options);

}  // namespace sabxml::cli
