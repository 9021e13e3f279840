#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "check/host_ids.h"
#include "check/name_table.h"
#include "check/reporter.h"
#include "check/suppression.h"

namespace sab::check {

/// Identifiers of a project: each is defined once where a host looks for it, and what is used is
/// defined.
class Names {
 public:
  Names(Reporter& reporter, const HostIds& host_ids);

  void CheckDefinitions();
  void CheckReferences();

 private:
  using FileIndex = project::FileIndex;
  using Files = std::vector<FileIndex>;
  using References = std::vector<const project::Identifier*>;

  // The uses of names in a file, in the order of their first ones.
  class UsesByName {
   public:
    void Add(const project::Identifier* use) {
      const auto [place, is_new] = numbers_.try_emplace(use->text, uses_.size());
      if (is_new) uses_.emplace_back();
      uses_[place->second].push_back(use);
    }
    const std::vector<References>& All() const { return uses_; }

   private:
    std::unordered_map<std::string_view, std::size_t> numbers_;
    std::vector<References> uses_;
  };

  // The definitions of one subject in some files.
  struct Index {
    NameTable table;  // numbers of definitions
    std::vector<project::Occurrence> definitions;
    // Made when a name is not found.
    bool has_plain_names = false;
    struct NearName {
      std::uint32_t definition;
      bool is_only;  // no other spelling has the same plain name
    };
    std::map<std::string, NearName> by_plain_name;
    std::map<std::string, std::string_view> of_host;  // likewise
    std::vector<std::string_view> names;              // to suggest, each once or more

    bool Has(std::string_view text) const {
      return table.Find(NameTable::HashOf(text), [&](std::uint32_t number) {
        return definitions[number].identifier.text == text;
      }) != NameTable::kNone;
    }
  };

  void CheckDuplicates(const Files& files, std::initializer_list<formats::Scope> scopes);
  void CheckFile(FileIndex file);
  void CheckCommands(FileIndex file, const References& references);
  void ReportUndefined(FileIndex file, const UsesByName& undefined, formats::Subject subject,
                       Index& known, const std::string& broken);
  void ReportUndefined(FileIndex file, const References& uses, formats::Subject subject,
                       Index& known);

  bool IsInLostSection(FileIndex file, xml::NodeIndex node) const;
  References WithoutSuppressed(FileIndex file, const References& uses, formats::Subject subject);

  Files FilesBetween(FileIndex index, formats::Subject subject) const;
  std::string BrokenOf(const Files& files);
  void NoteUnchecked(FileIndex file, formats::Subject subject, std::string_view id,
                     const std::string& broken);

  Index& IndexOf(formats::Subject subject, const Files& files);
  Related PlaceOf(const project::Occurrence& occurrence, std::string message) const;
  std::string ListOf(const Files& files) const;

  Reporter& reporter_;
  const project::Project& project_;
  const HostIds& host_ids_;
  std::set<std::pair<FileIndex, std::size_t>> lost_sections_;  // where they start
  std::map<FileIndex, std::vector<Suppressed>> suppressed_;
  std::map<FileIndex, bool> broken_;
  std::size_t comparisons_ = 0;  // of names that are not defined with those that are
  std::map<std::pair<formats::Subject, Files>, std::unique_ptr<Index>> indexes_;
};

}  // namespace sab::check
