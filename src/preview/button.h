#pragma once

#include "preview/drawing.h"

namespace sab::preview {

/// How a ribbon button looks.
enum class Look {
  kRibbon,  ///< on a panel: large or small as it says
  kIcon,    ///< its picture alone
  kLine,    ///< picture and caption beside each other
};

/// Draws a button with all that it opens: its own buttons, or the menu that it names.
void DrawButton(Drawing& drawing, xml::NodeIndex node, Look look, Strips* strips,
                unsigned depth = 0);

/// Draws the entries of a panel, a group or a button: buttons, groups and separators in order.
void DrawButtons(Drawing& drawing, xml::NodeIndex parent, Look look, Strips* strips,
                 unsigned depth = 0);

}  // namespace sab::preview
