#pragma once

#include "formats/settings_group.h"

namespace sab::formats {

// "IsIs" is how the interface spells it.
inline constexpr auto kTextSettings = FirstCounts({
    Text("DefChsFont", "Default font for Chinese"),
    Text("DefWestFont", "Default font for Western scripts"),
    Int32("TxtMirrorMode", "How texts are mirrored").Of("TextMirrorMode"),
    Int32("InCodePage", "Code page of texts that are read").From(0, 65535),
    Int32("OutCodePage", "Code page of texts that are written").From(0, 65535),
    Flag("ExplodeByOneself", "Whether the program explodes texts").Of("IsExplodeByOneself"),
    Flag("IsUseEditBckClr", "Whether the editor has a background of its own")
        .Of("IsIsUseEditBckClr"),
    Colour("TxtEditBckClr", "Background of the editor: 0x00BBGGRR"),
    Flag("IsUseEditSelClr", "Whether the editor has a selection of its own colour")
        .Of("IsIsUseEditSelClr"),
    Colour("TxtEditSelClr", "Colour of the editor's selection: 0x00BBGGRR"),
    Double("DefTxtHei", "Default height of texts"),
});

inline constexpr SettingsGroup kTextGroup = {"VeTxtParser", "text", kTextSettings};

}  // namespace sab::formats
