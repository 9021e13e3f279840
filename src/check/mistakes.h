#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace sab::check {

enum class Severity : std::uint8_t { kNone, kInfo, kWarning, kError };

std::string_view NameOf(Severity severity);
/// By name, "none" included; nothing for another word.
std::optional<Severity> SeverityNamed(std::string_view name);

/// What an author can do wrong. The order is that of the table of rules.
enum class Mistake : std::uint8_t {
  kNotWellFormed,
  kBadEncoding,
  kWrongDocumentElement,
  kForeignNamespace,
  kReplacementCharacter,

  kUnknownElement,
  kMisplacedElement,
  kUnexpectedAttribute,
  kStrayText,
  kElementInValue,
  kDuplicateValue,
  kDuplicateSection,
  kRequiredMissing,
  kEmptyValue,
  kIncompleteEntry,
  kCommandAfterEntry,

  kBadFlag,
  kBadNumber,
  kNumberOutOfRange,
  kBadGuid,
  kPathNotRelative,

  kUndefinedCommand,
  kUndefinedPanel,
  kUndefinedMenu,
  kUndefinedToolbar,
  kUndefinedEnvironment,
  kUndefinedModule,
  kUndefinedTemplate,
  kCommandNotInEnvironment,
  kDuplicateId,
  kNearMissId,

  kAcceleratorConflict,
  kRibbonKeyConflict,
  kMnemonicConflict,

  kFileNotFound,
  kFileNameCase,
  kSameFileTwice,
  kResourceNotFound,
  kImageNotFound,

  kSettingsUnknownKey,
  kSettingsBadValue,
  kSettingsOutOfRange,
  kSettingsBadList,
  kSettingsBadStructure,
  kSettingsShadowedCopy,
  kSettingsUnusedKey,

  kStandardDroppedRevision,
  kStandardBadValue,
  kStandardSymbolId,
  kStandardStrayChild,

  kTemplateMarker,
  kTemplateUnknownSection,
  kTemplateDuplicateSection,
  kTemplateBadBytes,
};

/// A rule that a project is checked against: what breaks it is the mistake.
struct RuleText {
  Mistake mistake;
  std::string_view id;       ///< "unknown-element"
  std::string_view group;    ///< "structure"
  Severity severity;         ///< unless a person chooses another one
  std::string_view summary;  ///< one line without a full stop
  std::string_view help;     ///< why it matters and what to do: sentences
};

/// All rules in order of their mistakes.
std::span<const RuleText> Rules();
const RuleText& RuleFor(Mistake mistake);
/// By identifier; null for another text.
const RuleText* RuleNamed(std::string_view id);

}  // namespace sab::check
