#pragma once

#include <optional>
#include <ostream>
#include <string>

#include "check/finding.h"
#include "project/project.h"

namespace sabxml::cli {

/// What a check has found, for printing.
struct CheckResult {
  sab::check::Findings findings;
  std::size_t files = 0;
  std::size_t old = 0;  ///< findings that the baseline knows, which are not in the list
  std::optional<std::size_t> fixed;  ///< places that were changed, where that was wanted

  std::size_t Count(sab::check::Severity severity) const;
};

/// "FILE:LINE:COLUMN", or the path alone for a place without a line.
std::string PlaceIn(const std::string& path, sab::xml::Place place);

/// A line for each finding, further places indented below it, and a last line with counts.
void PrintText(const CheckResult& result, bool uses_colour, std::ostream& out);
void PrintJson(const CheckResult& result, std::ostream& out);
/// SARIF 2.1.0.
void PrintSarif(const CheckResult& result, std::ostream& out);

/// Rules in a table, and one with all that is said of it.
void PrintRules(bool as_json, std::ostream& out);
void PrintRule(const sab::check::RuleText& rule, bool as_json, std::ostream& out);

/// Tells which files a project read, and why.
void TraceFiles(const sab::project::Project& project);

}  // namespace sabxml::cli
