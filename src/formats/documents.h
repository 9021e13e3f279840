#pragma once

#include "formats/settings_group.h"

namespace sab::formats {

/// Every kind of document that has a form of its own; settings have groups instead.
std::span<const Document* const> Documents();

/// The document whose document element has this name; null for another.
const Document* DocumentOfRoot(std::string_view root);
/// The document of a kind that has a form of its own.
const Document& DocumentOfKind(Kind kind);

/// The groups whose keys are fixed.
std::span<const SettingsGroup* const> SettingsGroups();
/// Classes of the groups whose keys are those of their files: see kNamedValues.
std::span<const std::string_view> NamedValueClasses();

}  // namespace sab::formats
