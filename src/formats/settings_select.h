#pragma once

#include "formats/settings_group.h"

namespace sab::formats {

// "Exculde" is how the interface spells it.
inline constexpr auto kSelectSettings = FirstCounts({
    Colour("GripColor", "Colour of grips"),
    UInt16("PickBoxSize", "Size of the pick box"),
    Colour("PickBoxColor", "Colour of the pick box"),
    UInt16("GripSize", "Size of grips"),
    Value<Type::kUInt32>("GripObjLimit",
                         "Number of selected objects above which grips are left out"),
    Int16("RKeyActionMode", "What the right button does"),
    Int16("SpaceKeyActiveCmd", "Which command the space bar runs"),
    Int16("CmdInteractionMode", "How commands ask"),
    Int16("CmdContinueMode", "How commands go on"),
    Int16("RKeyCmdMode", "What the right button does in a command"),
    Int16("RKeyEditMode", "What the right button does while editing"),
    Int16("RKeyAnnotateMode", "What the right button does while annotating"),
    Int16("SpaceKeyAcceMenuMode", "What the space bar does in a menu"),
    Int16("AcceleratorEffect", "What accelerators do"),
    Int16("StretchGripParseMode", "How grips that stretch are read"),
    UInt16("SelectionPreview", "When objects under the cursor are highlighted"),
    Flag("SelectAllLayer", "Whether all layers are selected").Of("SelectAll_Layer"),
    Flag("SelectAllLnType", "Whether all line types are selected").Of("SelectAll_LnType"),
    Flag("SelectAllColor", "Whether all colours are selected").Of("SelectAll_Color"),
    Value<Type::kTextList>("IncludeTypes", "Types that are selected").Of("AddIncludeType"),
    Value<Type::kTextList>("ExcludeTypes", "Types that are not selected").Of("AddExculdeType"),
    Value<Type::kUInt32List>("ExceptiveColors", "Colours that are not selected")
        .Of("AddExceptiveColor"),
    Value<Type::kInt32List>("IncludeTypeIDs", "Numbers of types that are selected")
        .Of("AddIncludeTypeID"),
    Value<Type::kInt32List>("ExcludeTypeIDs", "Numbers of types that are not selected")
        .Of("AddExculdeTypeID"),
    Int16("SndRKeyEditMode", "What the second right click does while editing"),
    Flag("PopupNoteWhenModifyLocalData", "Whether a change of local data is noted"),
    Int16("WheelZoomMode", "How the wheel zooms"),
    Int16("GraphicDim", "Whether dimensions are entered in the drawing").Of("IsGraphicDim"),
});

inline constexpr SettingsGroup kSelectGroup = {"VeSelectCfgParser", "selecting objects",
                                               kSelectSettings};

}  // namespace sab::formats
