#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "formats/documents.h"

namespace sab::project {

/// A rule by number in the schema of its kind of document; kNoRule for none.
using RuleId = std::uint16_t;
inline constexpr RuleId kNoRule = 0;

/// What an element may hold by number; kNothing has no rules.
using ContentId = std::uint16_t;
inline constexpr ContentId kNothing = 0;

/// The format of one kind of document as tables: rules by number, and by the names of elements.
class Schema {
 public:
  /// Of a kind that has a form; lives as long as the program.
  static const Schema& Of(formats::Kind kind);

  const formats::Document& Form() const { return *form_; }
  /// Rules are numbered from 1; those of one content follow each other.
  RuleId RuleCount() const { return static_cast<RuleId>(rules_.size()); }
  const formats::Rule& At(RuleId rule) const { return *rules_[rule].rule; }
  /// What an element of this rule may hold.
  ContentId ContentOf(RuleId rule) const { return rules_[rule].content; }
  /// The content that has this rule.
  ContentId HomeOf(RuleId rule) const { return rules_[rule].home; }
  /// The place of a rule among those of its content.
  unsigned IndexOf(RuleId rule) const { return rule - contents_[rules_[rule].home].first; }

  ContentId RootContent() const { return 1; }
  ContentId ContentCount() const { return static_cast<ContentId>(contents_.size()); }
  RuleId FirstRule(ContentId content) const { return contents_[content].first; }
  unsigned CountOf(ContentId content) const { return contents_[content].count; }

  /// The rule for an element of a name in a content; that for any name where the name has none of
  /// its own.
  RuleId Find(ContentId content, std::string_view name) const;
  /// A rule of this name in any content, the outermost first.
  RuleId FindAnywhere(std::string_view name) const;
  /// Names of the rules of a content; of all contents.
  std::vector<std::string_view> NamesIn(ContentId content) const;
  std::vector<std::string_view> AllNames() const;

 private:
  struct Entry {
    const formats::Rule* rule;
    ContentId content;
    ContentId home;
  };
  struct Content {
    RuleId first = 0;
    std::uint8_t count = 0;
    RuleId any = kNoRule;                  // the rule for any name
    std::array<std::uint8_t, 64> slots{};  // index + 1 in the content by hash of the name
  };

  explicit Schema(const formats::Document& form);
  ContentId Add(std::span<const formats::Rule> rules);

  const formats::Document* form_;
  std::vector<Entry> rules_;
  std::vector<Content> contents_;
  std::vector<const formats::Rule*> keys_;  // of contents: where their rules begin
};

}  // namespace sab::project
