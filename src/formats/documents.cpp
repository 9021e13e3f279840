#include "formats/documents.h"

#include <algorithm>

#include "formats/application.h"
#include "formats/browse_history.h"
#include "formats/catalogue.h"
#include "formats/commands.h"
#include "formats/environment.h"
#include "formats/module.h"
#include "formats/settings_display.h"
#include "formats/settings_file_path.h"
#include "formats/settings_select.h"
#include "formats/settings_system.h"
#include "formats/settings_text.h"
#include "formats/settings_update.h"
#include "formats/template.h"
#include "formats/text_template.h"
#include "formats/user_interface.h"

namespace sab::formats {
namespace {

constexpr const Document* kDocuments[] = {
    &kApplicationDocument, &kTemplateDocument,      &kModuleDocument,
    &kEnvironmentDocument, &kCommandsDocument,      &kUserInterfaceDocument,
    &kCatalogueDocument,   &kBrowseHistoryDocument, &kTextTemplateDocument,
};

constexpr const SettingsGroup* kSettingsGroups[] = {
    &kSystemGroup, &kDisplayGroup, &kFilePathGroup, &kSelectGroup, &kTextGroup, &kUpdateGroup,
};

constexpr std::string_view kNamedValueClasses[] = {
    "VeDWGInterfaceCfgParser", "VeFileAttributeCfgParser", "VeProductCfgParser",
    "VeSmartPosCfgParser",     "VeSmartPosParaParser",     "VeProjectionCfgParser",
    "VeBomcfgParser",          "VeFileBaleCfgParser",      "VeStdMgrCfgParser",
    "VeCustomPTParser",
};

// What the data promises to those who read it, checked here since none of them could do without.
constexpr bool IsSound(const Rule& rule) {
  const bool is_container = rule.content_size > 0;
  return !rule.name.empty() && !rule.help.empty() && !rule.help.ends_with('.') &&
         (rule.role == Role::kLeadsTo) == (rule.leads_to != Kind::kNone) &&
         (rule.role == Role::kDefines || rule.role == Role::kRefersTo) ==
             (rule.subject != Subject::kNone) &&
         (rule.need != Need::kEntryIfPresent || is_container) &&
         (rule.type == Type::kNone || !is_container);
}

// An element may hold its own kind, so there is a deepest level; with UBSan, addresses cannot be
// compared at compile time.
constexpr bool AreSound(std::span<const Rule> rules, int levels = 8) {
  for (std::size_t i = 0; i < rules.size(); ++i) {
    if (!IsSound(rules[i])) return false;
    for (std::size_t j = 0; j < i; ++j) {
      if (rules[i].name == rules[j].name) return false;
    }
    if (levels > 0 && !AreSound(rules[i].Content(), levels - 1)) return false;
  }
  return true;
}

static_assert(std::ranges::all_of(kDocuments, [](const Document* document) {
  return AreSound(document->content);
}));
static_assert(std::ranges::all_of(kSettingsGroups, [](const SettingsGroup* group) {
  return AreSound(group->keys);
}));

}  // namespace

std::span<const Document* const> Documents() { return kDocuments; }

const Document* DocumentOfRoot(std::string_view root) {
  const auto found = std::ranges::find(kDocuments, root, &Document::root);
  return found != std::end(kDocuments) && !root.empty() ? *found : nullptr;
}

const Document& DocumentOfKind(Kind kind) {
  return **std::ranges::find(kDocuments, kind, &Document::kind);
}

std::span<const SettingsGroup* const> SettingsGroups() { return kSettingsGroups; }

std::span<const std::string_view> NamedValueClasses() { return kNamedValueClasses; }

}  // namespace sab::formats
