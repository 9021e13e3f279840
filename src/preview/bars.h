#pragma once

#include "preview/drawing.h"

namespace sab::preview {

/// Draws toolbars and windows around the drawing area, each at the edge to which it is docked.
void DrawWorkArea(Drawing& drawing);

/// Draws the status bar.
void DrawStatusBar(Drawing& drawing);

}  // namespace sab::preview
