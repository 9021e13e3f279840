#pragma once

#include <string_view>

#include "preview/drawing.h"

namespace sab::preview {

/// Draws the caption of the window: quick access tools, title, command search, own buttons.
/// @param title of the window
void DrawCaption(Drawing& drawing, std::string_view title);

/// Draws the button of the application, the tabs and what is on them.
/// @param default_panel panel whose tab is chosen at first; may be empty
void DrawRibbon(Drawing& drawing, std::string_view default_panel);

}  // namespace sab::preview
