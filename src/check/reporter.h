#pragma once

#include <initializer_list>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "check/finding.h"

namespace sab::check {

/// What of a finding is not its place.
struct Words {
  std::string message;
  std::string suggestion = {};
  std::vector<Related> related = {};
  std::optional<Fix> fix = std::nullopt;
  std::vector<std::string> paths = {};
};

/// Collects findings while a project is looked at, with their lines and columns.
class Reporter {
 public:
  /// @param project lives longer
  explicit Reporter(const project::Project& project) : project_(project) {}

  /// A mistake at a place of a file.
  void Add(Mistake mistake, project::FileIndex file, project::Span span, Words words);
  /// The same with another severity than usual.
  void Add(Mistake mistake, Severity severity, project::FileIndex file, project::Span span,
           Words words);
  /// A mistake of a file as a whole, or at a place that the reader names.
  void AddAt(Mistake mistake, project::FileIndex file, xml::Place place, Words words);
  /// One of an earlier check.
  void AddAgain(Finding finding) { findings_.list.push_back(std::move(finding)); }
  /// What was not checked, and why; each text once.
  void Note(const std::string& text);

  /// Whether something was found in a file that may keep definitions from it or from what it leads
  /// to.
  bool MayLackDefinitions(project::FileIndex file) const;

  Location At(project::FileIndex file, project::Span span) const;

  const project::Project& GetProject() const { return project_; }
  /// What was found so far.
  std::span<const Finding> All() const { return findings_.list; }
  /// All findings in order, none twice.
  Findings Take();

 private:
  const project::Project& project_;
  Findings findings_;
  std::set<std::string> noted_;
};

/// "WK_LINE" in quotes, shortened where it is long.
std::string Quoted(std::string_view text);
/// <Name>
std::string Tag(std::string_view name);
/// "1 panel", "2 panels".
std::string Counted(std::size_t count, std::string_view what);

}  // namespace sab::check
