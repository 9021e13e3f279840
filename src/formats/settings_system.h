#pragma once

#include "formats/settings_group.h"

namespace sab::formats {

inline constexpr Rule kRetainedStyleNames[] = {
    Text("Value", "Name of a style").Each(),
};

// "GeoMetricalSteyle" and "itemNo.Style" are how the files spell them.
inline constexpr auto kRetainedStyles = FirstCounts({
    Group("Layer", kRetainedStyleNames, "Layers"),
    Group("LineType", kRetainedStyleNames, "Line types"),
    Group("TextStyle", kRetainedStyleNames, "Styles of texts"),
    Group("DimStyle", kRetainedStyleNames, "Styles of dimensions"),
    Group("LeadLineStyle", kRetainedStyleNames, "Styles of leaders"),
    Group("GeoMetricalSteyle", kRetainedStyleNames, "Styles of geometrical tolerances"),
    Group("SurfaceFinishStyle", kRetainedStyleNames, "Styles of surface finish"),
    Group("WeldingSymbolStyle", kRetainedStyleNames, "Styles of welding symbols"),
    Group("DatumSymbolStyle", kRetainedStyleNames, "Styles of datum symbols"),
    Group("SectionLineStyle", kRetainedStyleNames, "Styles of section lines"),
    Group("itemNo.Style", kRetainedStyleNames, "Styles of item numbers"),
    Group("BomStyle", kRetainedStyleNames, "Styles of bills of materials"),
});

inline constexpr Rule kMatchRule[] = {
    Text("Key", "Key of the rule").Expected(),
    Text("Value", "A value that belongs to the key").Each(),
};
inline constexpr Rule kMatchRules[] = {
    Entry("MatchRule", kMatchRule, "Which values belong to a key"),
};

inline constexpr Rule kAutomaticLayer[] = {
    Guid("Key", "Class of an object").CompletesItem(),
    Text("Value", "Layer on which such objects are drawn"),
};
inline constexpr Rule kAutomaticLayers[] = {
    Entry("AutoLayerRule", kAutomaticLayer, "On which layer objects of a class are drawn"),
};

inline constexpr Rule kVisualStyle[] = {
    Text("StyleID", "Identifier of the style").Expected(),
    Text("StyleName", "Name of the style").Expected(),
};
inline constexpr Rule kVisualStyles[] = {
    Entry("VisualStyle", kVisualStyle, "A visual style"),
};

inline constexpr auto kSystemSettings = FirstCounts({
    Text("TempPrefix", "What names of temporary files begin with").OnlySaved(),
    Int16("CmdInputHistoryMax", "How many inputs are remembered").OnlySaved(),
    Double("MaxReal", "Greatest number that is accepted"),
    Int32("FilePolicy", "How files are opened"),
    Int32("FilePathNamePolicy", "What titles show: 0 the file name, 1 the whole path").From(0, 1),
    Int16("DefSaveFormat", "Format in which drawings are saved"),
    Flag("GenBakupFile", "Whether a save keeps the old file"),
    Flag("UpdateView", "Whether views are updated"),
    Text("DefChsFont", "Default font for Chinese"),
    Text("DefWestFont", "Default font for Western scripts"),
    Text("DefFileName", "What names of new drawings begin with"),
    Int16("SaveStep", "How often drawings are saved automatically"),
    Int16("UndoRedoTimes", "How many steps can be undone").OnlySaved(),
    Flag("MergeStyle", "Whether styles are merged"),
    Flag("MergeBlock", "Whether blocks are merged"),
    Flag("MergeScale", "Whether scales are merged"),
    Flag("AutoLayer", "Whether objects get their layers automatically"),
    Flag("AutoNameBlock", "Whether blocks get their names automatically"),
    Int32("SymbolOfDetailView", "Symbol of detail views"),
    Flag("HideNewEntity", "Whether new objects are hidden").Of("IsHideNewEntity"),
    Value<Type::kNonZero>("MergeSameStyle", "Whether styles of the same name are merged")
        .Of("SetIsMergeSameStyle")
        .WhenMissing("-1"),
    Group("RetainStyle", kRetainedStyles, "Styles that are kept").Of("SetRetainStyleInfo"),
    Group("AllMatchRule", kMatchRules, "Match rules").Of("InsertMatchRule"),
    Flag("ShowCfgStyleAtStart", "Whether the style is chosen at the start"),
    Int32("OLEExport", "How objects of other programs are exported"),
    Flag("UseDefTitleTpl", "Whether title blocks have a default template"),
    Flag("UseDefDKLTpl", "Whether the DKL table has a default template"),
    Flag("UseDefBKLTpl", "Whether the BKL table has a default template"),
    Text("DefTitleTpl", "Default template of title blocks"),
    Text("DefDKLTpl", "Default template of the DKL table"),
    Text("DefBKLTpl", "Default template of the BKL table"),
    Int32("ParaTableNameStrategy", "How tables of parameters are named"),
    Text("DefTitleName", "Default name of title blocks"),
    Text("DefDKLName", "Default name of the DKL table"),
    Text("DefBKLName", "Default name of the BKL table"),
    Group("AllAutoLayerRule", kAutomaticLayers, "Automatic layers").Of("AddAutoLayerPair"),
    Flag("IsOleExpByOpClr", "Whether objects of other programs keep their colours"),
    Flag("IsChangeImage", "Whether pictures are changed"),
    Flag("IsCheckDimDispData", "Whether dimensions are checked"),
    Int32("DefStandard", "Default standard"),
    Int32("CurStandard", "Current standard"),
    Flag("IsSymPrevDlgComBoReadOnly", "Whether the lists of the symbol dialog are read-only")
        .Of("SymPrevComboCtlProp"),
    Group("ProductVisualStyles", kVisualStyles, "Visual styles").Of("AddVisualStylePair"),
    Text("DefVisualStyleID", "Default visual style").Of("DefVisualStyle").OnlyLoaded(),
    Int16("WeldDialogStyle", "Style of the dialog for welds"),
    Int16("ToleDialogStyle", "Style of the dialog for tolerances"),
    Flag("PDFOSnapFlag", "Whether snapping works in PDF"),
});

inline constexpr SettingsGroup kSystemGroup = {"VeSysParameterCfgParser", "system parameters",
                                               kSystemSettings};

}  // namespace sab::formats
