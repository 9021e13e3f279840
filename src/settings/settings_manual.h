#pragma once

#include <string>

namespace sab {

/// The reference of all settings groups, printed from their key tables: Markdown, UTF-8. It is kept
/// as docs/settings.md.
std::string SettingsManual();

}  // namespace sab
