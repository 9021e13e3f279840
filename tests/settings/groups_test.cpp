// What holds for every settings group, checked over the key tables and the interface definitions.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "base/com_error.h"
#include "config/temporary_folder.h"
#include "config/wine.h"
#include "dispatch_tables.h"
#include "server/created_object.h"
#include "settings/settings_groups.h"
#include "settings/settings_object.h"
#include "support/late_value.h"

namespace sab::testing {
namespace {

constexpr char kNode[] = "/Settings/Group";
constexpr char kEmptyGroup[] = "<Settings>\n  <Group/>\n</Settings>\n";

const InterfaceInfo& InterfaceOf(std::string_view class_name) {
  const std::string name = "I" + std::string(class_name);
  for (const InterfaceInfo* info : TheLibrary().interfaces) {
    if (EqualsAscii(info->name, name)) return *info;
  }
  throw ComError(E_FAIL, name);
}

std::string NameOf(const OLECHAR* name) { return ToUtf8(name); }

bool CanSave(const SettingsGroup& group) {
  return group.class_name != "VeAutoUpdateAdminCfgParser";
}

std::vector<std::string> AllClasses() {
  std::vector<std::string> names;
  for (const SettingsGroup& group : SettingsGroups()) names.emplace_back(group.class_name);
  for (const std::string_view name : NamedValueClasses()) names.emplace_back(name);
  return names;
}

class SettingsGroupsTest : public ::testing::Test {
 protected:
  TemporaryFolder folder_;
  Text file_ = folder_.Name("t.xml");
};

TEST_F(SettingsGroupsTest, EveryPropertyHasItsKeyOrIsKnownToHaveNone) {
  // What is only in memory.
  const std::set<std::string> without_key = {
      "NEBPrefix",      "SearchFilePath",  "FontFilePath",
      "HatchPicPath",   "HelpFilePath",    "CfgFilePath",
      "LastLnTypePath", "WindowAreaColor", "CrossingAreaColor",
      "GripHotColor",   "GripHoverColor",  "PreviewEffect",
      "PreviewFilter",  "SelectionArea",   "SelectionAreaOpacity",
      "SelectFirst",    "PickDrag",        "SelectWindow",
      "PickStyle",      "GripOn",          "GripBlock",
      "GripTips"};
  for (const SettingsGroup& group : SettingsGroups()) {
    SCOPED_TRACE(group.class_name);
    std::set<std::string> properties;
    std::set<std::string> members;
    for (const MemberInfo& member : InterfaceOf(group.class_name).members) {
      members.insert(NameOf(member.name));
      if (member.kind == MemberKind::kPropertyPut) properties.insert(NameOf(member.name));
    }
    std::set<std::string_view> keys;
    for (const SettingsRow& row : group.rows()) {
      EXPECT_TRUE(keys.insert(row.key).second) << row.key << " stands there twice";
      EXPECT_TRUE(members.contains(std::string(row.property))) << row.property;
      properties.erase(std::string(row.property));
    }
    for (const std::string& name : properties) EXPECT_TRUE(without_key.contains(name)) << name;
  }
}

struct FreshRow {
  const char* class_name;
  std::size_t properties;  // with get and put
  const char* elements;
};

// The keys in the order of the file, with the values of an object that nobody has touched.
constexpr FreshRow kFresh[] = {
    {"VeDisplayCfgParser", 39,
     "ObscuredColor=0 ZoomFactor=0 DragMode=0 PtMode=0 PtSize=0 CursorSize=0 BigCursor=0 "
     "ShowViewFrm=0 CurCoordColor=0 ModelBkColor=0 LayoutBkColor=0 InCurCoordColor=0 "
     "HighLightColor=0 HighLightUseBkColor=0 CursorColor=0 MinTxtShowSize=0 UCSDispCtrl=0 "
     "UCSDispColor=0 LineWidthDispScale=0.000000 LWMmToPixels=0.000000 DisplayByLineWidth=0 "
     "GlobalLnTypeScale=0.000000 RubberLnColor=0 UCSIconStyle=0 UCSIconSize=0 UCSIconWidth=0 "
     "UserInputMark=0 HatchLineDensity=10000 AccelerateWhileZoom=-1 UndoDisplayOpt=0 "
     "SaveDisplayOpt=0 DefLineWidthDispScale=1.200000 DefLWMmToPixels=6.000000 XRefFadeVal=0 "
     "RefEditFadeVal=0 LayLockFadeVal=0 XRefFadeCtl=0 RefEditFadeCtl=0 LayLockFadeCtl=0"},
    {"VeTxtParser", 11,
     "DefChsFont=fangsong_GB2312 DefWestFont=fangsong_GB2312 TxtMirrorMode=0 InCodePage=936 "
     "OutCodePage=936 ExplodeByOneself=-1 IsUseEditBckClr=0 TxtEditBckClr=16777215 "
     "IsUseEditSelClr=0 TxtEditSelClr=7355920 DefTxtHei=3.500000"},
    {"VeSelectCfgParser", 34,
     "GripColor=0 PickBoxSize=0 PickBoxColor=0 GripSize=0 GripObjLimit=0 RKeyActionMode=0 "
     "SpaceKeyActiveCmd=0 CmdInteractionMode=0 CmdContinueMode=0 RKeyCmdMode=0 RKeyEditMode=0 "
     "RKeyAnnotateMode=0 SpaceKeyAcceMenuMode=0 AcceleratorEffect=0 StretchGripParseMode=0 "
     "SelectionPreview=0 SelectAllLayer=0 SelectAllLnType=0 SelectAllColor=0 IncludeTypes= "
     "ExcludeTypes= ExceptiveColors= IncludeTypeIDs= ExcludeTypeIDs= SndRKeyEditMode=0 "
     "PopupNoteWhenModifyLocalData=0 WheelZoomMode=0 GraphicDim=0"},
    {"VeFilePathCfgParser", 16,
     "AutoSaveFilePath= ShapeFilePath= FormulaCurPath= TmplFilePath= LibraryPath= LogFilePath= "
     "DesignCenterFavorite= XRefPath= FileSavePath="},
    {"VeSysParameterCfgParser", 42,
     "TempPrefix= CmdInputHistoryMax=0 MaxReal=0.000000 FilePolicy=0 FilePathNamePolicy=0 "
     "DefSaveFormat=0 GenBakupFile=0 UpdateView=0 DefChsFont= DefWestFont= DefFileName= SaveStep=0 "
     "UndoRedoTimes=0 MergeStyle=0 MergeBlock=0 MergeScale=0 AutoLayer=0 AutoNameBlock=0 "
     "SymbolOfDetailView=0 HideNewEntity=-1 MergeSameStyle=-1 RetainStyle{Layer= LineType= "
     "TextStyle= DimStyle= LeadLineStyle= GeoMetricalSteyle= SurfaceFinishStyle= "
     "WeldingSymbolStyle= DatumSymbolStyle= SectionLineStyle= itemNo.Style= BomStyle=} "
     "AllMatchRule= ShowCfgStyleAtStart=0 OLEExport=0 UseDefTitleTpl=0 UseDefDKLTpl=0 "
     "UseDefBKLTpl=0 DefTitleTpl= DefDKLTpl= DefBKLTpl= ParaTableNameStrategy=0 DefTitleName= "
     "DefDKLName= DefBKLName= AllAutoLayerRule= IsOleExpByOpClr=0 IsChangeImage=0 "
     "IsCheckDimDispData=-1 DefStandard=0 CurStandard=0 IsSymPrevDlgComBoReadOnly=0 "
     "ProductVisualStyles= WeldDialogStyle=3 ToleDialogStyle=3 PDFOSnapFlag=0"},
};

TEST_F(SettingsGroupsTest, FreshObjectsSaveTheirDefaultsInFileOrder) {
  for (const FreshRow& row : kFresh) {
    SCOPED_TRACE(row.class_name);
    const auto& members = InterfaceOf(row.class_name).members;
    EXPECT_EQ(row.properties, static_cast<std::size_t>(std::count_if(
                                  members.begin(), members.end(), [](const MemberInfo& member) {
                                    return member.kind == MemberKind::kPropertyPut;
                                  })));
    folder_.Write("t.xml", kEmptyGroup);
    SettingsObject object(row.class_name);
    object.Call("ClearAutoLayerPair", {});  // what it starts with has a test of its own
    ASSERT_EQ(S_OK, object.Save(file_, kNode));
    EXPECT_EQ(row.elements, ElementsOf(file_, kNode));
  }
}

// A value that every type of setting can hold, different each time.
std::string RandomText(SettingType type, std::mt19937& random) {
  const auto number = [&random](std::int64_t low, std::int64_t high) {
    return std::to_string(std::uniform_int_distribution<std::int64_t>(low, high)(random));
  };
  switch (type) {
    case SettingType::kText: {
      const char* const pieces[] = {"C:\\drawings", "图", "<&>\"'", "a  b", ";", "😀", "]]>", "é"};
      std::string text = "x";
      for (int i = 0; i < 4; ++i) text += pieces[random() % std::size(pieces)];
      return text + "y";
    }
    case SettingType::kFlag:
    case SettingType::kStrictFlag:
      return random() % 2 ? "-1" : "0";
    case SettingType::kShort:
    case SettingType::kWideShort:
      return number(-32768, 32767);
    case SettingType::kUnsignedShort:
      return number(0, 65535);
    case SettingType::kUnsigned:
      return number(0, 0xFFFFFFFF);
    case SettingType::kFloat:
      return number(-9999, 9999) + ".500000";
    case SettingType::kDouble:
      return number(-99999, 99999) + "." + number(100000, 999999);
    case SettingType::kTextList: {
      const std::string pieces[] = {"LINE;", "文字;", "a b;", "<&>;"};
      return pieces[random() % 4] + pieces[random() % 4];
    }
    case SettingType::kIntList:
      return number(INT32_MIN, INT32_MAX) + ';' + number(INT32_MIN, INT32_MAX) + ';';
    case SettingType::kUnsignedList:
      return number(0, INT32_MAX) + ';' + number(INT32_MIN, -1) + ';';  // as files have them
    default:
      return number(INT32_MIN, INT32_MAX);
  }
}

// The properties that rows of the table load and save, lists and structures left out.
std::size_t PlainProperties(const SettingsGroup& group) {
  const auto& members = InterfaceOf(group.class_name).members;
  const auto rows = group.rows();
  return static_cast<std::size_t>(std::count_if(rows.begin(), rows.end(), [&](const auto& row) {
    return std::any_of(members.begin(), members.end(), [&](const MemberInfo& member) {
      return member.kind == MemberKind::kPropertyPut && EqualsAscii(member.name, row.property);
    });
  }));
}

TEST_F(SettingsGroupsTest, EveryPropertyComesBackAsItWasSaved) {
  std::mt19937 random(20240611);
  for (const SettingsGroup& group : SettingsGroups()) {
    if (!CanSave(group)) continue;
    SCOPED_TRACE(group.class_name);
    for (int round = 0; round < 20; ++round) {
      SettingsObject saved{std::string(group.class_name)};
      SettingsObject loaded{std::string(group.class_name)};
      std::vector<std::pair<std::string, std::string>> expected;
      for (const SettingsRow& row : group.rows()) {
        const std::string property(row.property);
        const std::string before = loaded.Get(property);
        if (row.type == SettingType::kStructure ||
            saved.Put(property, RandomText(row.type, random)) != S_OK)
          continue;  // a list, or a flag that is set by a method
        const bool comes_back = row.use == SettingUse::kLoadedAndSaved;
        expected.emplace_back(property, comes_back ? saved.Get(property) : before);
      }
      EXPECT_EQ(PlainProperties(group), expected.size());
      folder_.Write("t.xml", kEmptyGroup);
      ASSERT_EQ(S_OK, saved.Save(file_, kNode));
      ASSERT_EQ(S_OK, loaded.Load(file_, kNode));
      for (const auto& [property, text] : expected)
        EXPECT_EQ(text, loaded.Get(property)) << property;
    }
  }
}

// Also those that only methods reach: lists, and flags with methods of their own.
TEST_F(SettingsGroupsTest, EveryKeyComesBackAsItWasSaved) {
  std::mt19937 random(7);
  for (const SettingsGroup& group : SettingsGroups()) {
    SCOPED_TRACE(group.class_name);
    for (int round = 0; round < 10; ++round) {
      const SettingsFields saved = group.make_fields();
      for (const SettingsRow& row : group.rows()) {
        if (row.parse) row.parse(saved.get(), FromUtf8(RandomText(row.type, random)));
      }
      folder_.Write("t.xml", kEmptyGroup);
      ConfigDocument document;
      ASSERT_TRUE(document.Load(file_));
      AppendSettings(group.rows(), saved.get(), document.Select(FromUtf8(kNode)));
      document.Save(file_);
      const SettingsFields loaded = group.make_fields();
      ASSERT_TRUE(document.Load(file_));
      LoadSettings(group.rows(), loaded.get(), document, FromUtf8(kNode));
      for (const SettingsRow& row : group.rows()) {
        if (!row.parse || row.use != SettingUse::kLoadedAndSaved) continue;
        EXPECT_EQ(ToUtf8(row.format(saved.get())), ToUtf8(row.format(loaded.get()))) << row.key;
      }
    }
  }
}

TEST_F(SettingsGroupsTest, OnlyTheseKeysGoOneWay) {
  std::string one_way;
  for (const SettingsGroup& group : SettingsGroups()) {
    if (!CanSave(group)) continue;
    for (const SettingsRow& row : group.rows()) {
      if (!row.IsLoaded()) one_way += "saved only: " + std::string(row.key) + "\n";
      if (!row.IsSaved()) one_way += "loaded only: " + std::string(row.key) + "\n";
    }
  }
  EXPECT_EQ(
      "saved only: TempPrefix\nsaved only: CmdInputHistoryMax\nsaved only: UndoRedoTimes\n"
      "loaded only: DefVisualStyleID\n",
      one_way);
}

TEST_F(SettingsGroupsTest, WhatEveryClassDoesWithFilesItCannotUse) {
  struct Row {
    const char* label;
    const char* bytes;  // null for no file
    const char* node_path;
    HRESULT load;
    HRESULT save;
  };
  const Row rows[] = {
      {"no file", nullptr, kNode, S_OK, S_OK},
      {"no node", "<Settings >\r\n<!-- - --><Other/></Settings>", kNode, S_OK, S_OK},
      {"not well-formed", "<Settings>\n<Group></Settings>", kNode, S_OK, kDocumentNotLoaded},
      {"malformed path", kEmptyGroup, "/Settings[[", E_FAIL, E_FAIL},
      {"malformed path and no file", nullptr, "/Settings[[", E_FAIL, E_FAIL},
  };
  for (const std::string& name : AllClasses()) {
    for (const Row& row : rows) {
      SCOPED_TRACE(name + ": " + row.label);
      const TemporaryFolder folder;
      if (row.bytes) folder.Write("t.xml", row.bytes);
      SettingsObject object(name);
      const bool can_save = name != "VeAutoUpdateAdminCfgParser";
      EXPECT_EQ(row.load, object.Load(folder.Name("t.xml"), row.node_path));
      EXPECT_EQ(can_save ? row.save : E_NOTIMPL, object.Save(folder.Name("t.xml"), row.node_path));
      if (row.bytes) {
        EXPECT_EQ(row.bytes, folder.Read("t.xml"));
      } else {
        EXPECT_TRUE(folder.Entries().empty());
      }
    }
  }
}

TEST_F(SettingsGroupsTest, ARefusedSaveSaysWhereTheFileIsWrong) {
  folder_.Write("t.xml", "<Settings>\n<Group></Settings>");
  const auto parser = Created<IVeDisplayCfgParser>(CLSID_VeDisplayCfgParser);
  ASSERT_EQ(kDocumentNotLoaded, parser->Save(Bstr(file_).Get(), Bstr(FromUtf8(kNode)).Get()));
  const std::string description = TakeErrorDescription();
  EXPECT_NE(std::string::npos, description.find("t.xml:2:")) << description;
}

TEST_F(SettingsGroupsTest, TheSecondSaveAddsAndTheFirstIsRead) {
  folder_.Write("t.xml", kEmptyGroup);
  SettingsObject object("VeDisplayCfgParser");
  for (const char* value : {"7", "8"}) {
    ASSERT_EQ(S_OK, object.Put("PtSize", value));
    ASSERT_EQ(S_OK, object.Save(file_, kNode));
  }
  const std::string saved = ElementsOf(file_, kNode);
  const std::size_t half = saved.size() / 2;
  EXPECT_NE(std::string::npos, saved.substr(0, half).find("PtSize=7"));
  EXPECT_NE(std::string::npos, saved.substr(half).find("PtSize=8"));
  ASSERT_EQ(S_OK, object.Load(file_, kNode));
  EXPECT_EQ("7", object.Get("PtSize"));
}

TEST_F(SettingsGroupsTest, ARepeatedNodeIsReadAsAWholeAndSavedToTheFirst) {
  folder_.Write("t.xml",
                "<Settings><Group><PtMode>1</PtMode></Group>"
                "<Group><PtMode>2</PtMode><PtSize>3</PtSize></Group></Settings>");
  SettingsObject object("VeDisplayCfgParser");
  ASSERT_EQ(S_OK, object.Load(file_, kNode));
  EXPECT_EQ("1", object.Get("PtMode"));
  EXPECT_EQ("3", object.Get("PtSize"));
  ASSERT_EQ(S_OK, object.Save(file_, kNode));
  EXPECT_NE(std::string::npos, ElementsOf(file_, "/Settings/Group[1]").find("PtSize=3"));
  EXPECT_EQ("PtMode=2 PtSize=3", ElementsOf(file_, "/Settings/Group[2]"));
}

std::string Utf16(const std::string& utf8) {
  std::string bytes = "\xFF\xFE";
  for (const OLECHAR unit : FromUtf8(utf8)) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

TEST_F(SettingsGroupsTest, FilesKeepTheirForm) {
  const std::string head = "<Settings>\r\n\t<!-- kept -->\r\n\t<Group a='1'>";
  const std::string tail = "</Group>\r\n\r\n\t<Other  />\r\n</Settings>\r\n";
  struct Row {
    const char* label;
    std::string head;
    std::string tail;
    std::string font;  // as the file spells it
    bool is_chinese;
  };
  const Row rows[] = {
      {"CRLF", head, tail, "\r\n\t\t<DefChsFont>仿宋</DefChsFont>", false},
      {"UTF-16", Utf16("<?xml version='1.0'?>" + head), Utf16(tail).substr(2),
       Utf16("<DefChsFont>仿宋</DefChsFont>").substr(2), false},
      {"GBK", "<?xml version='1.0' encoding='GBK'?>\r\n" + head, tail,
       "\r\n\t\t<DefChsFont>\xB7\xC2\xCB\xCE</DefChsFont>", true},
  };
  for (const Row& row : rows) {
    if (row.is_chinese && RunsUnderWine()) continue;  // its MSXML knows no Chinese encodings
    SCOPED_TRACE(row.label);
    folder_.Write("t.xml", row.head + row.tail);
    SettingsObject object("VeTxtParser");
    ASSERT_EQ(S_OK, object.Put("DefChsFont", "仿宋"));
    ASSERT_EQ(S_OK, object.Save(file_, kNode));
    const std::string saved = folder_.Read("t.xml");
    EXPECT_TRUE(saved.starts_with(row.head));
    EXPECT_TRUE(saved.ends_with(row.tail));
    EXPECT_NE(std::string::npos, saved.find(row.font));
    SettingsObject loaded("VeTxtParser");
    ASSERT_EQ(S_OK, loaded.Load(file_, kNode));
    EXPECT_EQ("仿宋", loaded.Get("DefChsFont"));
  }
}

struct ConversionRow {
  const char* class_name;
  const char* key;
  const char* property;
  const char* text;    // in the file
  const char* loaded;  // from the property
  const char* saved;   // null where that is no question
};

TEST_F(SettingsGroupsTest, TextsAreConvertedAsFarAsTheirTypeReaches) {
  constexpr char kDisplay[] = "VeDisplayCfgParser";
  constexpr char kSelect[] = "VeSelectCfgParser";
  constexpr char kSystem[] = "VeSysParameterCfgParser";
  constexpr char kText[] = "VeTxtParser";
  constexpr char kUpdate[] = "VeAutoUpdateAdminCfgParser";
  const ConversionRow rows[] = {
      {kDisplay, "ObscuredColor", "ObscuredColor", "-16777216", "4278190080.000000", "-16777216"},
      {kDisplay, "ObscuredColor", "ObscuredColor", "4278190080", "2147483647", "2147483647"},
      {kDisplay, "ZoomFactor", "ZoomFactor", "65541", "5", "65541"},
      {kDisplay, "ZoomFactor", "ZoomFactor", "-32769", "32767", "-32769"},
      {kDisplay, "MinTxtShowSize", "MinTxtShowSize", "65541", "5", "5"},
      {kDisplay, "MinTxtShowSize", "MinTxtShowSize", "32768", "-32768", "-32768"},
      {kDisplay, "UCSIconWidth", "UCSIconLnWidth", "99999999999", "2147483647", "2147483647"},
      {kDisplay, "UCSIconSize", "UCSIconSize", " \t12x", "12", "12"},
      {kDisplay, "BigCursor", "BigCursor", "1", "1", "1"},
      {kDisplay, "BigCursor", "BigCursor", "65535", "-1", "-1"},
      {kDisplay, "BigCursor", "BigCursor", "true", "0", "0"},
      {kDisplay, "GlobalLnTypeScale", "GlobalLnTypeScale", "0.1", "0.100000", "0.100000"},
      {kDisplay, "GlobalLnTypeScale", "GlobalLnTypeScale", "16777217", "16777216.000000",
       "16777216.000000"},
      {kDisplay, "LWMmToPixels", "LineWidthConvertScale", "1e-7", "0.000000", "0.000000"},
      {kDisplay, "LineWidthDispScale", "LineWidthDisplayScale", "2.5mm", "2.500000", "2.500000"},
      {kDisplay, "HatchLineDensity", "HatchLineDensity", "-2147483649", "-2147483648",
       "-2147483648"},
      {kSelect, "PickBoxSize", "PickBoxSize", "65535", "65535", "65535"},
      {kSelect, "PickBoxSize", "PickBoxSize", "-1", "65535", "65535"},
      {kSelect, "RKeyActionMode", "RKeyActionMode", "-1", "-1", "-1"},
      {kSelect, "GripObjLimit", "GripObjLimit", "-1", "4294967295.000000", "-1"},
      {kSelect, "SelectAllLayer", "IsSelectAll_Layer", "1", "1", "1"},
      {kSelect, "GraphicDim", "IsGraphicDim", "3", "3", "3"},
      {kSystem, "GenBakupFile", "GenBakupFile", "1", "1", "1"},
      {kSystem, "MergeSameStyle", "GetIsMergeSameStyle", "7", "-1", "-1"},
      {kSystem, "MergeSameStyle", "GetIsMergeSameStyle", "0", "0", "0"},
      {kSystem, "MergeSameStyle", "GetIsMergeSameStyle", "x", "0", "0"},
      {kSystem, "MaxReal", "MaxReal", "1e15", "1000000000000000.000000", "1000000000000000.000000"},
      {kSystem, "FilePathNamePolicy", "FilePathNamePolicy", "1", "1", "1"},
      {kSystem, "DefVisualStyleID", "DefVisualStyle", " {A} ", "{A}", nullptr},
      {kSystem, "TempPrefix", "TempPrefix", "lost", "", ""},
      {kText, "InCodePage", "InCodePage", "936abc", "936", "936"},
      {kText, "ExplodeByOneself", "IsExplodeByOneself", "1", "1", "1"},
      {kText, "TxtEditBckClr", "TxtEditBckClr", "-1", "4294967295.000000", "-1"},
      {kText, "DefTxtHei", "DefTxtHei", "0.0000006", "0.000001", "0.000001"},
      {kUpdate, "DisableHttp", "DisableHttp", "1", "0", nullptr},
      {kUpdate, "DisableHttp", "DisableHttp", "-1", "-1", nullptr},
      {kUpdate, "ReadOnly", "ReadOnly", "", "0", nullptr},
      {kUpdate, "Interval", "Interval", "INT_MAX", "2147483647", nullptr},
      {kUpdate, "Interval", "Interval", "int_max", "0", nullptr},
      {kUpdate, "Interval", "Interval", "30", "30", nullptr},
      {kUpdate, "Server", "Server", " s ", "s", nullptr},
  };
  for (const ConversionRow& row : rows) {
    SCOPED_TRACE(std::string(row.class_name) + " " + row.key + " = " + row.text);
    folder_.Write("t.xml", "<S><G><" + std::string(row.key) + ">" + row.text + "</" + row.key +
                               "></G><Saved/></S>");
    SettingsObject object(row.class_name);
    ASSERT_EQ(S_OK, object.Load(file_, "/S/G"));
    EXPECT_EQ(row.loaded, object.Get(row.property));
    if (!row.saved) continue;
    ASSERT_EQ(S_OK, object.Save(file_, "/S/Saved"));
    const std::string element = row.key + std::string("=") + row.saved + ' ';
    EXPECT_NE(std::string::npos, (ElementsOf(file_, "/S/Saved") + ' ').find(element)) << element;
  }
}

TEST_F(SettingsGroupsTest, AnEmptyNodePathMeansTheDocument) {
  folder_.Write("t.xml", "<Interval>5</Interval>");
  SettingsObject object("VeAutoUpdateAdminCfgParser");
  ASSERT_EQ(S_OK, object.Load(file_, ""));
  EXPECT_EQ("5", object.Get("Interval"));
}

TEST_F(SettingsGroupsTest, AMissingKeyLeavesAllButTheMergingOfStyles) {
  folder_.Write("t.xml", "<S><G><DefStandard>4</DefStandard></G></S>");
  SettingsObject object("VeSysParameterCfgParser");
  ASSERT_EQ(S_OK, object.Put("CurStandard", "9"));
  ASSERT_EQ(S_OK, object.Call("SetIsMergeSameStyle", {"0"}));
  ASSERT_EQ(S_OK, object.Load(file_, "/S/G"));
  EXPECT_EQ("4", object.Get("DefStandard"));
  EXPECT_EQ("9", object.Get("CurStandard"));
  EXPECT_EQ("-1", object.Get("GetIsMergeSameStyle"));
}

}  // namespace
}  // namespace sab::testing
