#pragma once

#include <cstdint>
#include <vector>

#include "project/schema.h"

namespace sab::check {

/// Rules of one content as bits by their places in it.
using RuleSet = std::uint64_t;

/// What a second element of one name does.
enum class Repetition : std::uint8_t {
  kAnother,  ///< it is another entry, or its content is joined with that of the first
  kFirstCounts,
  kLastCounts,
  kSticky,       ///< a flag that one right text decides
  kLost,         ///< a section of which only the first is read
  kNamesOthers,  ///< it holds for the entries that follow it
};

/// What a text must be.
enum class TextKind : std::uint8_t { kAny, kFlag, kWhole, kDecimal, kGuid, kPath, kImage };

/// What the checks ask of one rule of a schema, answered once.
struct RuleFacts {
  RuleSet bit = 0;
  Repetition repetition = Repetition::kAnother;
  TextKind text = TextKind::kAny;
  bool is_value = false;
  bool is_joined = false;  ///< several are one whole: their values are told apart from none
  bool is_entry = false;
  bool empty_is_wrong = false;
  bool is_command = false;  ///< refers to a command
};

/// The same of one content.
struct ContentFacts {
  RuleSet required = 0;    ///< must be there, or hold what must be there
  RuleSet completing = 0;  ///< an entry without one of them is dropped
  RuleSet expected = 0;    ///< an entry without one of them is of no use
  RuleSet naming = 0;      ///< names the entries that follow
  RuleSet command = 0;     ///< refers to a command
  RuleSet instead = 0;     ///< does without a command: a menu, an object, entries
  bool is_catalogue_symbol = false;
};

/// The facts of a schema.
class SchemaFacts {
 public:
  /// Lives as long as the program.
  static const SchemaFacts& Of(formats::Kind kind);

  const RuleFacts& OfRule(project::RuleId rule) const { return rules_[rule]; }
  const ContentFacts& OfContent(project::ContentId content) const { return contents_[content]; }

 private:
  explicit SchemaFacts(const project::Schema& schema);

  std::vector<RuleFacts> rules_;
  std::vector<ContentFacts> contents_;
};

}  // namespace sab::check
