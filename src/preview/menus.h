#pragma once

#include "preview/drawing.h"

namespace sab::preview {

/// Draws the main menu and the context menus of a view, every menu opened.
void DrawMenus(Drawing& drawing);

/// Draws the items of a menu once more, where a button opens it.
void DrawMenuCopy(Drawing& drawing, xml::NodeIndex menu);

}  // namespace sab::preview
