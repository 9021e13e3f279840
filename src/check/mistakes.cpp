#include "check/mistakes.h"

#include <algorithm>

namespace sab::check {
namespace {

constexpr Severity kError = Severity::kError;
constexpr Severity kWarning = Severity::kWarning;
constexpr Severity kInfo = Severity::kInfo;

constexpr RuleText kRules[] = {
    {Mistake::kNotWellFormed, "not-well-formed", "document", kError,
     "The file is not well-formed XML",
     "The server refuses the whole file. Correct the place that is named; a mistake often begins "
     "some lines above it, where a tag or a quote is not closed."},
    {Mistake::kBadEncoding, "bad-encoding", "document", kError,
     "The bytes of the file are not those of its encoding",
     "The server refuses the whole file. Save it as UTF-8, or declare the encoding in which it is "
     "saved."},
    {Mistake::kWrongDocumentElement, "wrong-document-element", "document", kError,
     "The document element is not that of the kind of file that is expected here",
     "A file is recognised by its document element, letter case included. Correct its name, or "
     "name another file."},
    {Mistake::kForeignNamespace, "foreign-namespace", "document", kWarning,
     "An element that the server reads is in a namespace",
     "Elements are looked for in no namespace: one in a namespace is mostly passed over. Remove "
     "the prefix or the xmlns attribute."},
    {Mistake::kReplacementCharacter, "replacement-character", "document", kWarning,
     "A text has the replacement character U+FFFD",
     "It stands for a character that was lost when the file was converted. Write the character "
     "again."},

    {Mistake::kUnknownElement, "unknown-element", "structure", kError,
     "No element of this name is known",
     "The server passes over what it does not know, with all that is in it. Names count letter by "
     "letter, with their case."},
    {Mistake::kMisplacedElement, "misplaced-element", "structure", kWarning,
     "The element is known, but not in this place",
     "The server looks for an element in its place only. \"sabxml explain ELEMENT\" tells where it "
     "may be."},
    {Mistake::kUnexpectedAttribute, "unexpected-attribute", "structure", kWarning,
     "An attribute is never read", "Values are texts of elements. Write an element instead."},
    {Mistake::kStrayText, "stray-text", "structure", kWarning,
     "Text in an element that has only elements",
     "The text is not read. It is often the rest of a tag or of a comment."},
    {Mistake::kElementInValue, "element-in-value", "structure", kWarning,
     "An element in an element that has a text",
     "Texts of all elements inside are joined. A module path takes even a comment for a path."},
    {Mistake::kDuplicateValue, "duplicate-value", "structure", kWarning, "A value is given twice",
     "Only one of several counts: the first in descriptors and settings, the last in entries of "
     "lists and in user interfaces. Remove the others."},
    {Mistake::kDuplicateSection, "duplicate-section", "structure", kError,
     "A section is given twice and the second is lost",
     "Only the first is read. Move the entries of the second into it."},
    {Mistake::kRequiredMissing, "required-missing", "structure", kError,
     "An element that must be there is missing or empty",
     "The server stops reading at it, or the entry without it is of no use. Add the element with "
     "its text."},
    {Mistake::kEmptyValue, "empty-value", "structure", kWarning,
     "A value is empty that means something else than no value",
     "An empty number is 0 and an empty flag false. Give it a text, or leave the element out."},
    {Mistake::kIncompleteEntry, "incomplete-entry", "structure", kError,
     "An entry lacks a part, so the server drops it",
     "Entries without their parts are skipped silently. Add the part, or remove the entry."},
    {Mistake::kCommandAfterEntry, "command-after-entry", "structure", kError,
     "An entry of a command is before the name of the command",
     "A CommandUI is read from top to bottom: what is before its Command belongs to no command. "
     "Move Command to the top."},

    {Mistake::kBadFlag, "bad-flag", "values", kError, "A text that is no truth value here",
     "Each flag has its own texts for true and false; the message names them."},
    {Mistake::kBadNumber, "bad-number", "values", kError, "A text that is no number",
     "A number is read up to the first character that does not belong to it: 12px is 12 and abc "
     "is 0. Write digits only, without a unit."},
    {Mistake::kNumberOutOfRange, "number-out-of-range", "values", kError,
     "A number that does not fit its property",
     "The number is cut off, or has no meaning. The message names the range."},
    {Mistake::kBadGuid, "bad-guid", "values", kError, "A text that is no class identifier",
     "A class identifier has 32 hexadecimal digits in braces, in groups of 8, 4, 4, 4 and 12."},
    {Mistake::kPathNotRelative, "path-not-relative", "values", kWarning,
     "A path that starts at a root or a drive",
     "Paths are relative to the folder of the file that names them. An absolute one breaks on "
     "every other machine."},

    {Mistake::kUndefinedCommand, "undefined-command", "names", kWarning,
     "A command that no command file defines",
     "Correct the identifier, define the command, or list it with --host-ids where the host "
     "itself has it."},
    {Mistake::kUndefinedPanel, "undefined-panel", "names", kWarning,
     "A panel that the user interface does not define",
     "The default panel must be one of the environment's own user interface."},
    {Mistake::kUndefinedMenu, "undefined-menu", "names", kWarning,
     "A menu that the user interface does not define",
     "Correct the identifier, add the menu, or list it with --host-ids where the host makes it."},
    {Mistake::kUndefinedToolbar, "undefined-toolbar", "names", kWarning,
     "A toolbar or a window that the user interface does not define",
     "DropDown and LeftOf name toolbars and windows of the same file, or some of the host."},
    {Mistake::kUndefinedEnvironment, "undefined-environment", "names", kError,
     "An environment that no module of the template has",
     "A document cannot begin in it. Correct the identifier or add the environment to a module."},
    {Mistake::kUndefinedModule, "undefined-module", "names", kError,
     "A module that the template does not list",
     "A document cannot begin with it. Correct the identifier or list the module."},
    {Mistake::kUndefinedTemplate, "undefined-template", "names", kError,
     "A template that the application does not list",
     "Correct the identifier or list the template."},
    {Mistake::kCommandNotInEnvironment, "command-not-in-environment", "names", kInfo,
     "A command that exists, but not in the environment that uses it",
     "The button or menu item is dead in that environment. That is normal where environments "
     "share a user interface."},
    {Mistake::kDuplicateId, "duplicate-id", "names", kError,
     "An identifier is defined twice where a host looks for it",
     "The host finds only one of the two. Give one of them another identifier."},
    {Mistake::kNearMissId, "near-miss-id", "names", kWarning,
     "An identifier differs from a defined one in letter case, full-width letters or blanks",
     "Identifiers are compared letter by letter. Write both alike."},

    {Mistake::kAcceleratorConflict, "accelerator-conflict", "keys", kWarning,
     "Two commands have the same key", "Only one of them can be run with it."},
    {Mistake::kRibbonKeyConflict, "ribbon-key-conflict", "keys", kWarning,
     "Two tabs, or two commands of one tab, have the same ribbon key",
     "Only one of them can be chosen with it."},
    {Mistake::kMnemonicConflict, "mnemonic-conflict", "keys", kWarning,
     "Two items of one menu have the same letter after &",
     "The letter then only moves from one to the other. Choose another letter."},

    {Mistake::kFileNotFound, "file-not-found", "files", kError, "A path leads to no file",
     "The path is relative to the folder of the file that names it."},
    {Mistake::kFileNameCase, "file-name-case", "files", kWarning,
     "The letter case of a path is not that on disk",
     "The file is found on Windows and missing elsewhere."},
    {Mistake::kSameFileTwice, "same-file-twice", "files", kWarning,
     "A list names the same file twice", "Its content is there twice. Remove one of them."},
    {Mistake::kResourceNotFound, "resource-not-found", "files", kInfo,
     "A folder or file of resources is not found",
     "It may be part of the host's installation instead of the configuration."},
    {Mistake::kImageNotFound, "image-not-found", "files", kInfo, "A picture is not found",
     "It may be part of the host's resources. Where its folder exists, this is a warning."},

    {Mistake::kSettingsUnknownKey, "settings-unknown-key", "settings", kError,
     "The settings group has no such key",
     "The value is never read. \"sabxml settings list CLASS\" lists the keys."},
    {Mistake::kSettingsBadValue, "settings-bad-value", "settings", kError,
     "A value of the settings is not of its type",
     "Truth values are -1 and 0, numbers have no unit, colours are decimal numbers."},
    {Mistake::kSettingsOutOfRange, "settings-out-of-range", "settings", kError,
     "A number of the settings does not fit its property", "The message names the range."},
    {Mistake::kSettingsBadList, "settings-bad-list", "settings", kError,
     "A list of the settings is not written as one",
     "Semicolons separate the elements, none of which is empty. One after the last may be left "
     "out."},
    {Mistake::kSettingsBadStructure, "settings-bad-structure", "settings", kError,
     "A key of the settings has not the elements that it should have",
     "Values have no elements, and structures only those of their own."},
    {Mistake::kSettingsShadowedCopy, "settings-shadowed-copy", "settings", kWarning,
     "A key is there twice and the second is never read",
     "A load takes the first. \"sabxml settings compact\" leaves one of each."},
    {Mistake::kSettingsUnusedKey, "settings-unused-key", "settings", kWarning,
     "A key is saved by the server and never loaded", "Changing it has no effect."},

    {Mistake::kStandardDroppedRevision, "standard-dropped-revision", "catalogue", kError,
     "A revision has no class that reads it",
     "RevParserCLSID precedes the revisions that it is for; those without one are dropped."},
    {Mistake::kStandardBadValue, "standard-bad-value", "catalogue", kError,
     "A value of a standard is not of its type", "Numbers have no unit; flags are 1, -1 or 0."},
    {Mistake::kStandardSymbolId, "standard-symbol-id", "catalogue", kError,
     "The identifier of a symbol is missing, no number or used twice",
     "A symbol is found by its number in the standard."},
    {Mistake::kStandardStrayChild, "standard-stray-child", "catalogue", kWarning,
     "An element that counts as a standard or a symbol and is none",
     "Every element in the document element is a standard and every one in StandardSymbols a "
     "symbol, whatever its name."},

    {Mistake::kTemplateMarker, "template-marker", "text templates", kWarning,
     "A line looks like the start of a section and is none",
     "A marker is [name] from the first column on, with nothing after it. Write [[ for a line "
     "that shall begin with a bracket."},
    {Mistake::kTemplateUnknownSection, "template-unknown-section", "text templates", kInfo,
     "A section has a name that hosts do not look for by default",
     "A section may have any name, as long as the host knows it."},
    {Mistake::kTemplateDuplicateSection, "template-duplicate-section", "text templates", kWarning,
     "Two sections have one name", "A host finds only the first, whatever the letter case."},
    {Mistake::kTemplateBadBytes, "template-bad-bytes", "text templates", kWarning,
     "The file has bytes that its encoding does not have",
     "They become U+FFFD. Save the file as UTF-8."},
};

static_assert(std::ranges::is_sorted(kRules, {}, &RuleText::mistake));
static_assert(std::size(kRules) == static_cast<std::size_t>(Mistake::kTemplateBadBytes) + 1);

constexpr std::string_view kSeverities[] = {"none", "info", "warning", "error"};

}  // namespace

std::string_view NameOf(Severity severity) {
  return kSeverities[static_cast<std::size_t>(severity)];
}

std::optional<Severity> SeverityNamed(std::string_view name) {
  const auto found = std::ranges::find(kSeverities, name);
  if (found == std::end(kSeverities)) return std::nullopt;
  return static_cast<Severity>(found - std::begin(kSeverities));
}

std::span<const RuleText> Rules() { return kRules; }

const RuleText& RuleFor(Mistake mistake) { return kRules[static_cast<std::size_t>(mistake)]; }

const RuleText* RuleNamed(std::string_view id) {
  const auto found = std::ranges::find(kRules, id, &RuleText::id);
  return found == std::end(kRules) ? nullptr : found;
}

}  // namespace sab::check
