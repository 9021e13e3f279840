#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "formats/type.h"

namespace sab::formats {

// What a file may hold, as data: one rule an element, in the order in which they are read, since a
// failure keeps what was read before it. Parsers bind their values to these rules by name; the
// documents and the command line are made from them, too. Nothing here needs a component or a file.

/// Which of several elements of one name counts.
enum class Count : unsigned char {
  kFirst,   ///< the first in document order that its path leads to
  kLast,    ///< each is taken as it comes, so the last stays
  kSticky,  ///< a flag that the right text changes; no other text changes it back
  kEach,    ///< every one is an entry of a list
  kMerged,  ///< the contents of all go into one object
};

/// Whether the element must be there.
enum class Need : unsigned char {
  kOptional,
  kPresent,              ///< it may be empty
  kNotEmpty,             ///< present, with a text or an entry; an empty text is stored nevertheless
  kFilled,               ///< present, with a text; an empty one is not stored
  kEntryIfPresent,       ///< it may be missing, but not be without an entry
  kCompletesItem,        ///< an entry without it, or with an empty one, is skipped
  kCompletesItemIfGuid,  ///< the same, and a text that is no class identifier does not count
};

/// What an identifier names.
enum class Subject : unsigned char {
  kNone,
  kApplication,
  kTemplate,
  kModule,
  kEnvironment,
  kCommand,
  kMenu,
  kToolbar,
  kPanel,
  kWindow,
  kSymbol,
  kTab,
  kButton,
  kKeyGroup,
  kCommandFile,
  kStandard,
};

/// Within what an identifier must be unique, since a host looks for it there.
enum class Scope : unsigned char {
  kProject,      ///< all documents of an application
  kEnvironment,  ///< all command files of an environment
  kFile,
  kParent,  ///< the element around the one that has the identifier
};
constexpr Scope ScopeOf(Subject subject) {
  switch (subject) {
    case Subject::kCommand:
    case Subject::kCommandFile:
      return Scope::kEnvironment;
    case Subject::kMenu:
    case Subject::kToolbar:
    case Subject::kPanel:
    case Subject::kWindow:
    case Subject::kTab:
    case Subject::kKeyGroup:
    case Subject::kStandard:
      return Scope::kFile;
    case Subject::kSymbol:
    case Subject::kButton:
      return Scope::kParent;
    default:
      return Scope::kProject;
  }
}

/// Whether identifiers of both are looked up together: what refers to a toolbar may mean a window,
/// and the other way round.
constexpr bool IsSameSubject(Subject a, Subject b) {
  const auto plain = [](Subject subject) {
    return subject == Subject::kWindow ? Subject::kToolbar : subject;
  };
  return plain(a) == plain(b);
}

/// What a subject is called: "command".
constexpr std::string_view NameOf(Subject subject) {
  constexpr std::string_view kNames[] = {
      "",       "application",   "template",     "module",  "environment", "command",
      "menu",   "toolbar",       "panel",        "window",  "symbol",      "tab",
      "button", "group of keys", "command file", "standard"};
  return kNames[static_cast<std::size_t>(subject)];
}

enum class Role : unsigned char {
  kNone,
  kDefines,   ///< its text is the identifier of a subject
  kRefersTo,  ///< its text is an identifier that is defined elsewhere
  kLeadsTo,   ///< its text is the path of another document
};

/// The kinds of documents.
enum class Kind : unsigned char {
  kNone,
  kApplication,
  kTemplate,
  kModule,
  kEnvironment,
  kCommands,
  kUserInterface,
  kCatalogue,
  kSettings,
  kBrowseHistory,
  kTextTemplate,
};

/// Which way a value of the settings goes.
enum class Use : unsigned char { kLoadedAndSaved, kOnlyLoaded, kOnlySaved };

/// Stands for an element whose name does not matter.
inline constexpr std::string_view kAnyName = "*";

/// One element: made by the functions below and changed by its own, each of which gives a copy.
struct Rule {
  std::string_view name;  ///< local name, as files spell it
  Type type = Type::kNone;
  std::string_view help;  ///< for the author of a file: one line without a full stop
  Count count = Count::kLast;
  Need need = Need::kOptional;
  Role role = Role::kNone;
  Subject subject = Subject::kNone;
  Kind leads_to = Kind::kNone;
  Use use = Use::kLoadedAndSaved;
  bool each_node_counts = false;       ///< every node in it is a text of its own
  bool matches_whole_name = false;     ///< a name with a prefix is another name
  std::uint32_t result = 0;            ///< of an unmet need; 0 for that of the document
  std::string_view member = {};        ///< where a class gives it, unless the name is the same
  std::string_view when_missing = {};  ///< taken for its text if the element is missing
  bool also_when_empty = false;        ///< when_missing also replaces an empty text
  std::string_view initial = {};       ///< value without the element, unless it is the usual one
  bool is_any_text = false;            ///< a text that its type does not expect is kept as well
  bool holds_for_following = false;    ///< for the entries between this one and the next
  bool is_expected = false;            ///< what lacks it is read, but of no use
  std::int64_t least = INT64_MIN;      ///< of a number, where the type allows more
  std::int64_t most = INT64_MAX;       ///< the same
  const Rule* content = nullptr;       ///< what it may hold
  std::size_t content_size = 0;

  constexpr std::span<const Rule> Content() const { return {content, content_size}; }
  constexpr bool IsList() const { return count == Count::kEach; }
  constexpr bool IsRequired() const {
    return need == Need::kPresent || need == Need::kNotEmpty || need == Need::kFilled;
  }
  constexpr bool IsForItem() const {
    return need == Need::kCompletesItem || need == Need::kCompletesItemIfGuid;
  }

  /// A copy that has another value there.
  template <class Value>
  constexpr Rule With(Value Rule::*part, Value value) const {
    Rule rule = *this;
    rule.*part = value;
    return rule;
  }

  constexpr Rule Present() const { return With(&Rule::need, Need::kPresent); }
  constexpr Rule Required() const { return With(&Rule::need, Need::kNotEmpty); }
  constexpr Rule Filled() const { return With(&Rule::need, Need::kFilled); }
  constexpr Rule EntryIfPresent(std::uint32_t failure = 0) const {
    return With(&Rule::need, Need::kEntryIfPresent).With(&Rule::result, failure);
  }
  constexpr Rule CompletesItem() const { return With(&Rule::need, Need::kCompletesItem); }
  constexpr Rule CompletesItemIfGuid() const {
    return With(&Rule::need, Need::kCompletesItemIfGuid);
  }
  constexpr Rule Sticky() const { return With(&Rule::count, Count::kSticky); }
  constexpr Rule Each() const { return With(&Rule::count, Count::kEach); }
  constexpr Rule EachNodeCounts() const { return With(&Rule::each_node_counts, true); }
  constexpr Rule MatchingWholeName() const { return With(&Rule::matches_whole_name, true); }
  constexpr Rule Defines(Subject what) const {
    return With(&Rule::role, Role::kDefines).With(&Rule::subject, what);
  }
  constexpr Rule RefersTo(Subject what) const {
    return With(&Rule::role, Role::kRefersTo).With(&Rule::subject, what);
  }
  /// @param getter method of the parser that gives the paths
  constexpr Rule LeadsTo(Kind kind, std::string_view getter) const {
    return With(&Rule::role, Role::kLeadsTo).With(&Rule::leads_to, kind).Of(getter);
  }
  constexpr Rule OrAnyText() const { return With(&Rule::is_any_text, true); }
  constexpr Rule HoldsForWhatFollows() const { return With(&Rule::holds_for_following, true); }
  constexpr Rule Expected() const { return With(&Rule::is_expected, true); }
  constexpr Rule From(std::int64_t lowest, std::int64_t highest = INT64_MAX) const {
    return With(&Rule::least, lowest).With(&Rule::most, highest);
  }
  constexpr Rule Of(std::string_view name_of_member) const {
    return With(&Rule::member, name_of_member);
  }
  constexpr Rule WhenMissing(std::string_view text) const {
    return With(&Rule::when_missing, text);
  }
  constexpr Rule WhenEmpty(std::string_view text) const {
    return WhenMissing(text).With(&Rule::also_when_empty, true);
  }
  constexpr Rule Initially(std::string_view value) const { return With(&Rule::initial, value); }
  constexpr Rule OnlyLoaded() const { return With(&Rule::use, Use::kOnlyLoaded); }
  constexpr Rule OnlySaved() const { return With(&Rule::use, Use::kOnlySaved); }
};

/// The value where the element is missing; empty for a text.
constexpr std::string_view DefaultOf(const Rule& rule) {
  if (!rule.when_missing.empty()) return rule.when_missing;
  if (!rule.initial.empty()) return rule.initial;
  if (rule.type == Type::kNotZero) return "true";
  if (IsTruth(rule.type)) return "false";
  return IsWhole(rule.type) || IsDecimal(rule.type) ? "0" : "";
}

/// The same rules for elements that are found by their paths: the first of each counts.
template <std::size_t kCount>
constexpr std::array<Rule, kCount> FirstCounts(const Rule (&rules)[kCount]) {
  std::array<Rule, kCount> by_path;
  for (std::size_t i = 0; i < kCount; ++i) {
    by_path[i] =
        rules[i].count == Count::kLast ? rules[i].With(&Rule::count, Count::kFirst) : rules[i];
  }
  return by_path;
}

/// An element with a text.
template <Type kType>
constexpr Rule Value(std::string_view name, std::string_view help) {
  return {name, kType, help};
}
inline constexpr auto& Text = Value<Type::kText>;
inline constexpr auto& Guid = Value<Type::kGuid>;
inline constexpr auto& Path = Value<Type::kPath>;
inline constexpr auto& Url = Value<Type::kUrl>;
inline constexpr auto& Image = Value<Type::kImage>;
inline constexpr auto& Key = Value<Type::kKey>;
inline constexpr auto& Flag = Value<Type::kFlag>;
inline constexpr auto& Int16 = Value<Type::kInt16>;
inline constexpr auto& UInt16 = Value<Type::kUInt16>;
inline constexpr auto& WideInt16 = Value<Type::kWideInt16>;
inline constexpr auto& Int32 = Value<Type::kInt32>;
inline constexpr auto& Colour = Value<Type::kColour>;
inline constexpr auto& Double = Value<Type::kDouble>;

/// A mark: an element of which nothing is read but that it is there.
constexpr Rule Mark(std::string_view name, std::string_view help) {
  return Value<Type::kNone>(name, help).Each();
}

/// An element with elements: the first of its name, an entry of a list, or part of one whole.
constexpr Rule Holding(std::string_view name, std::span<const Rule> content, std::string_view help,
                       Count count) {
  Rule rule = Value<Type::kNone>(name, help).With(&Rule::count, count);
  rule.content = content.data();
  rule.content_size = content.size();
  return rule;
}
constexpr Rule Group(std::string_view name, std::span<const Rule> content, std::string_view help) {
  return Holding(name, content, help, Count::kFirst);
}
constexpr Rule Entry(std::string_view name, std::span<const Rule> content, std::string_view help) {
  return Holding(name, content, help, Count::kEach);
}
constexpr Rule Part(std::string_view name, std::span<const Rule> content, std::string_view help) {
  return Holding(name, content, help, Count::kMerged);
}

/// The rule that a path of names leads to, "LocalAbout/Tel"; null for none.
constexpr const Rule* RuleAt(std::span<const Rule> rules, std::string_view path) {
  const std::string_view name = path.substr(0, path.find('/'));
  for (const Rule& rule : rules) {
    if (rule.name != name) continue;
    return name == path ? &rule : RuleAt(rule.Content(), path.substr(name.size() + 1));
  }
  return nullptr;
}

/// Visits rules with all that they hold, in order; what holds its own kind is entered once.
template <class Visit>
constexpr void ForEachRule(std::span<const Rule> rules, const Visit& visit) {
  for (const Rule& rule : rules) {
    visit(rule);
    if (rule.content != rules.data()) ForEachRule(rule.Content(), visit);
  }
}

/// A kind of document.
struct Document {
  Kind kind;
  std::string_view root;        ///< name of the document element; empty where there is none
  std::string_view about;       ///< "user interface"
  std::string_view class_name;  ///< of the parser
  std::string_view method;      ///< of the parser, which reads the file
  std::uint32_t result = 0;     ///< of an unmet need, and of another document element
  std::span<const Rule> content;
  std::string_view help;
};

constexpr const Rule* RuleAt(const Document& document, std::string_view path) {
  return RuleAt(document.content, path);
}

}  // namespace sab::formats
