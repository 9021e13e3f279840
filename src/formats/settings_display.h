#pragma once

#include "formats/settings_group.h"

namespace sab::formats {

inline constexpr auto kDisplaySettings = FirstCounts({
    Colour("ObscuredColor", "Colour of what is obscured"),
    WideInt16("ZoomFactor", "Step of a zoom"),
    Flag("DragMode", "Whether objects are shown while they are dragged"),
    WideInt16("PtMode", "How points look"),
    WideInt16("PtSize", "Size of points"),
    WideInt16("CursorSize", "Size of the cursor"),
    Flag("BigCursor", "Whether the cursor's lines reach over the whole view"),
    Flag("ShowViewFrm", "Whether views have a frame"),
    Colour("CurCoordColor", "Colour of the current coordinate system"),
    Colour("ModelBkColor", "Background of the model"),
    Colour("LayoutBkColor", "Background of a layout"),
    Colour("InCurCoordColor", "Colour of coordinate systems that are not current"),
    Colour("HighLightColor", "Colour of what is highlighted"),
    Flag("HighLightUseBkColor", "Whether highlighting uses the background"),
    Colour("CursorColor", "Colour of the cursor"),
    Int16("MinTxtShowSize", "Size below which a text is not shown"),
    Int16("UCSDispCtrl", "Where the icon of the coordinate system is shown").Of("UCSDisplayCtrl"),
    Colour("UCSDispColor", "Colour of the icon of the coordinate system").Of("UCSDisplayColor"),
    Double("LineWidthDispScale", "Scale of line widths on the screen").Of("LineWidthDisplayScale"),
    Double("LWMmToPixels", "Pixels of a millimetre of line width").Of("LineWidthConvertScale"),
    Flag("DisplayByLineWidth", "Whether lines have their width").Of("IsDisplayByLineWidth"),
    Value<Type::kFloat>("GlobalLnTypeScale", "Scale of all line types"),
    Colour("RubberLnColor", "Colour of rubber-band lines"),
    Int32("UCSIconStyle", "Style of the icon of the coordinate system"),
    Int32("UCSIconSize", "Size of the icon of the coordinate system"),
    Int32("UCSIconWidth", "Line width of the icon").Of("UCSIconLnWidth"),
    Flag("UserInputMark", "Whether points that a user enters are marked"),
    Int32("HatchLineDensity", "How many lines a hatch may have"),
    Flag("AccelerateWhileZoom", "Whether zooming is accelerated"),
    Flag("UndoDisplayOpt", "Whether undoing takes views back"),
    Flag("SaveDisplayOpt", "Whether views are saved"),
    Double("DefLineWidthDispScale", "Default scale of line widths").Of("DefLineWidthDisplayScale"),
    Double("DefLWMmToPixels", "Default pixels of a millimetre").Of("DefLineWidthConvertScale"),
    WideInt16("XRefFadeVal", "How far external references fade"),
    WideInt16("RefEditFadeVal", "How far the rest fades while a reference is edited"),
    WideInt16("LayLockFadeVal", "How far locked layers fade"),
    Flag("XRefFadeCtl", "Whether external references fade"),
    Flag("RefEditFadeCtl", "Whether the rest fades while a reference is edited"),
    Flag("LayLockFadeCtl", "Whether locked layers fade"),
});

inline constexpr SettingsGroup kDisplayGroup = {"VeDisplayCfgParser", "screen display",
                                                kDisplaySettings};

}  // namespace sab::formats
