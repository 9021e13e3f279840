#pragma once

#include "preview/drawing.h"

namespace sab::preview {

/// Draws as tables what belongs to commands: keys, prompts, instructions and pictures.
void DrawTables(Drawing& drawing);

}  // namespace sab::preview
