// The lists of the settings groups: what their methods do, and how their files hold them.

#include <sabxml/retain_style.h>

#include <cstring>

#include "base/bstr.h"
#include "settings/settings_test.h"

namespace sab::testing {
namespace {

constexpr char kSystem[] = "VeSysParameterCfgParser";
constexpr char kSelect[] = "VeSelectCfgParser";
constexpr char kPaths[] = "VeFilePathCfgParser";
constexpr char kHistory[] = "BrowseHistory.xml";

class SettingsListsTest : public SettingsTest {
 protected:
  static void Do(const LateObject& object, const std::string& calls) {
    for (const std::string& call : Split(calls, '|')) {
      std::vector<std::string> words = Split(call, ' ');
      const std::string method = words[0];
      words.erase(words.begin());
      EXPECT_EQ(S_OK, object.Call(method, words)) << call;
    }
  }
  void LoadElements(const LateObject& object, const std::string& elements) const {
    Write("<S><G>" + elements + "</G></S>");
    EXPECT_EQ(S_OK, Load(object));
  }
};

// Words in calls are divided by blanks; an empty one at the end has a blank after it, too.
TEST_F(SettingsListsTest, WhatMethodsAndFilesMakeOfTheLists) {
  const std::string rules =
      "InsertMatchRule A x|InsertMatchRule A X|InsertMatchRule a x|InsertMatchRule A é|"
      "InsertMatchRule A É|InsertMatchRule A жук|InsertMatchRule A ЖУК|InsertMatchRule A  |"
      "InsertMatchRule A  |InsertMatchRule A e";
  const struct {
    const char* class_name;
    std::string calls;
    const char* loaded;  // afterwards, if not null
    const char* saved;
  } rows[] = {
      // Values are compared without case, keys exactly.
      {kSystem, rules, nullptr,
       " AllMatchRule{MatchRule{Key=A Value=x Value=é Value=жук Value= Value=e} "
       "MatchRule{Key=a Value=x}} "},
      {kSystem, rules + "|DelMatchRule A É|DelMatchRule B x|DelMatchRule a y|DelMatchRule a X",
       nullptr, " AllMatchRule{MatchRule{Key=A Value=x Value=жук Value= Value=e}} "},
      {kSystem, rules + "|RemoveAllMatchRule", nullptr, " AllMatchRule= "},
      {kSystem, "InsertMatchRule old o", "<Other/>", "{MatchRule{Key=old Value=o}} "},
      {kSystem, "InsertMatchRule old o",
       "<AllMatchRule><MatchRule><Value>1</Value><Other>o</Other><Key>k</Key><Value>2"
       "</Value></MatchRule><Matchrule><Key>no</Key></Matchrule>"
       "<MatchRule><Key>empty</Key></MatchRule></AllMatchRule>",
       " AllMatchRule{MatchRule{Key=k Value=1 Value=2} MatchRule{Key=empty}} "},
      // In the order of the bytes in memory: the first is the last of the first group's text.
      {kSystem,
       "ClearAutoLayerPair|AddAutoLayerPair {00000002-0000-0000-0000-000000000000} high|"
       "AddAutoLayerPair {FF000001-0000-0000-0000-000000000000} low|"
       "AddAutoLayerPair {FF000001-0000-0000-0000-000000000000} other",
       nullptr,
       " AllAutoLayerRule{AutoLayerRule{Key={FF000001-0000-0000-0000-000000000000} Value=low} "
       "AutoLayerRule{Key={00000002-0000-0000-0000-000000000000} Value=high}} "},
      {kSystem, "",
       "<AllAutoLayerRule><AutoLayerRule><Key>no identifier</Key><Value>v</Value></AutoLayerRule>"
       "<AutoLayerRule><Key>{00000002-0000-0000-0000-000000000000}</Key><Value>v</Value>"
       "</AutoLayerRule></AllAutoLayerRule>",
       " AllAutoLayerRule{AutoLayerRule{Key={00000002-0000-0000-0000-000000000000} Value=v}} "},
      // A missing key leaves all but the merging of styles.
      {kSystem, "SetIsMergeSameStyle 0|InsertMatchRule old o", "<Other/>", " MergeSameStyle=-1 "},
      // The last name counts; half pairs are not saved.
      {kSystem,
       "AddVisualStylePair 1 one|AddVisualStylePair 2  |AddVisualStylePair  none|"
       "AddVisualStylePair 3 three|AddVisualStylePair 1 uno",
       nullptr,
       " ProductVisualStyles{VisualStyle{StyleID=1 StyleName=uno} "
       "VisualStyle{StyleID=3 StyleName=three}} "},
      {kSystem, "AddVisualStylePair 1 one",
       "<ProductVisualStyles><VisualStyle><StyleID>2</StyleID><StyleName>two</StyleName>"
       "</VisualStyle></ProductVisualStyles>",
       " ProductVisualStyles{VisualStyle{StyleID=2 StyleName=two}} "},
      {kSelect,
       "AddIncludeType LINE|AddIncludeType ARC|AddIncludeType  |AddExculdeType 文字|"
       "AddExceptiveColor 4278190080|AddIncludeTypeID -3|AddExculdeTypeID 2147483647|"
       "SelectAll_LnType -1",
       nullptr,
       " SelectAllLayer=0 SelectAllLnType=-1 SelectAllColor=0 IncludeTypes=LINE;ARC;; "
       "ExcludeTypes=文字; ExceptiveColors=-16777216; IncludeTypeIDs=-3; "
       "ExcludeTypeIDs=2147483647; "},
      {kSelect, "AddIncludeType LINE|AddExculdeTypeID 9|AddIncludeTypeID 5",
       "<IncludeTypes>ARC;;文字</IncludeTypes><IncludeTypeIDs>;7;;x; 8</IncludeTypeIDs>",
       " IncludeTypes=ARC;文字; ExcludeTypes= ExceptiveColors= IncludeTypeIDs=7;0;8; "
       "ExcludeTypeIDs=9; "},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.saved);
    const LateObject object(row.class_name);
    Do(object, row.calls);
    if (row.loaded) LoadElements(object, row.loaded);
    EXPECT_NE(std::string::npos, Saved(object).find(row.saved)) << Elements();
  }
}

TEST_F(SettingsListsTest, EntriesAreReadByPositionAndNothingOutside) {
  const LateObject object(kSystem);
  const auto system = object.As<IVeSysParameterCfgParser>();
  const auto paths = LateObject(kPaths).As<IVeFilePathCfgParser>();
  Do(object, "InsertMatchRule k v|AddVisualStylePair id style");
  Do(LateObject(paths.As<IDispatch>()), "put_DCBrowseHistory old");
  Bstr texts[6];
  GUID id{};
  INT count = 0;
  GUID before{};
  for (INT i = 0; i < 28; ++i) {  // drafting starts with these, in the order of their bytes
    EXPECT_EQ(S_OK, system->GetAutoLayerPair(i, &id, texts[5].Put()));
    EXPECT_LT(std::memcmp(&before, &id, sizeof id), 0);
    before = id;
  }
  EXPECT_EQ(S_OK, system->get_MatchValueCount(0, &count));
  EXPECT_EQ(1, count);
  EXPECT_EQ(S_OK, system->get_MatchRuleAt(0, 0, texts[0].Put(), texts[1].Put()));
  EXPECT_EQ(S_OK, system->GetVisualStylePair(0, texts[2].Put(), texts[3].Put()));
  EXPECT_EQ(S_OK, paths->get_DCHistoryAt(0, texts[4].Put()));
  std::string all;
  for (const Bstr& text : texts) all += ToUtf8(text.View()) + ' ';
  EXPECT_EQ("k v id style old  ", all);

  OLECHAR mark[] = OLESTR("mark");
  BSTR first = mark;
  BSTR second = mark;
  for (const INT index : {-1, 1, 28, 2147483647}) {
    count = 77;
    EXPECT_EQ(E_INVALIDARG, system->get_MatchValueCount(index, &count));
    EXPECT_EQ(E_INVALIDARG, system->get_MatchRuleAt(index, 0, &first, &second));
    EXPECT_EQ(E_INVALIDARG, system->get_MatchRuleAt(0, index, &first, &second));
    EXPECT_EQ(E_INVALIDARG, system->GetAutoLayerPair(index == 1 ? 28 : index, &id, &second));
    EXPECT_EQ(E_INVALIDARG, system->GetVisualStylePair(index, &first, &second));
    EXPECT_EQ(E_INVALIDARG, paths->get_DCHistoryAt(index, &first));
    EXPECT_TRUE(count == 0 && first == mark && second == mark && id == before) << index;
  }
  EXPECT_EQ(E_POINTER, system->GetAutoLayerPair(0, nullptr, &second));
  EXPECT_EQ(mark, second);
}

TEST_F(SettingsListsTest, SelectionsAreArraysOfTheirType) {
  const LateObject select(kSelect);
  Do(select, "AddIncludeType LINE|AddIncludeTypeID 5|AddExceptiveColor 4278190080");
  const auto parser = select.As<IVeSelectCfgParser>();
  const struct {
    const char* name;
    HRESULT (STDMETHODCALLTYPE IVeSelectCfgParser::*getter)(SAFEARRAY**);
    VARTYPE type;
    const char* elements;
  } rows[] = {
      {"GetSelectIncludeTypes", &IVeSelectCfgParser::GetSelectIncludeTypes, VT_BSTR, "[LINE]"},
      {"GetSelectIncludeTypeIDs", &IVeSelectCfgParser::GetSelectIncludeTypeIDs, VT_INT, "[5]"},
      {"GetExceptiveColors", &IVeSelectCfgParser::GetExceptiveColors, VT_UI4, "[4278190080]"}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.elements, select.Get(row.name));
    SAFEARRAY* array = nullptr;
    VARTYPE type = VT_EMPTY;
    ASSERT_EQ(S_OK, (parser.Get()->*row.getter)(&array));
    EXPECT_EQ(S_OK, SafeArrayGetVartype(array, &type));
    EXPECT_EQ(row.type, type);
    EXPECT_EQ(S_OK, SafeArrayDestroy(array));
  }
}

std::string Retained(IVeSysParameterCfgParser& parser, INT type) {
  ULONG_PTR handle = 0;
  EXPECT_EQ(S_OK, parser.GetRetainStyleInfo(type, &handle));
  const auto& info = *reinterpret_cast<const VeRetainStyleInfo*>(handle);
  std::string names;
  for (ULONG i = 0; i < info.count; ++i) names += ToUtf8(Bstr::ViewOf(info.names[i])) + ";";
  return names;
}

TEST_F(SettingsListsTest, RetainedStylesAreReadInPlaceAndReplacedByCopy) {
  const LateObject object(kSystem);
  const auto system = object.As<IVeSysParameterCfgParser>();
  Bstr names[] = {Bstr(OLESTR("Thick")), Bstr(OLESTR("Thin"))};
  BSTR places[] = {names[0].Get(), names[1].Get()};
  const VeRetainStyleInfo info{2, places};
  const auto handle = reinterpret_cast<ULONG_PTR>(&info);
  EXPECT_EQ(S_OK, system->SetRetainStyleInfo(2, handle));
  ULONG_PTR own = 0;
  EXPECT_EQ(S_OK, system->GetRetainStyleInfo(2, &own));
  EXPECT_EQ(S_OK, system->SetRetainStyleInfo(2, own));  // its own list
  EXPECT_EQ("Thick;Thin;", Retained(*system, 2));
  EXPECT_EQ(E_POINTER, system->SetRetainStyleInfo(2, 0));
  // A script has no address of its own to give.
  EXPECT_EQ(S_OK, object.Call("SetRetainStyleInfo", {"11", std::to_string(own)}));
  EXPECT_EQ(E_INVALIDARG, object.Call("SetRetainStyleInfo", {"11", "1234"}));
  EXPECT_EQ(E_INVALIDARG, object.Call("SetRetainStyleInfo", {"11", std::to_string(handle)}));

  for (const INT type : {-1, 0, 13}) {
    ULONG_PTR untouched = 5;
    EXPECT_EQ(S_OK, system->GetRetainStyleInfo(type, &untouched));
    EXPECT_EQ(S_OK, system->SetRetainStyleInfo(type, 0));
    EXPECT_EQ(5U, untouched);
  }
  EXPECT_NE(std::string::npos,
            Saved(object).find(
                "RetainStyle{Layer= LineType{Value=Thick Value=Thin} TextStyle= DimStyle= "
                "LeadLineStyle= GeoMetricalSteyle= SurfaceFinishStyle= WeldingSymbolStyle= "
                "DatumSymbolStyle= SectionLineStyle= itemNo.Style{Value=Thick Value=Thin} "
                "BomStyle=} "));
  LoadElements(object,
               "<RetainStyle><LineType><Value>New</Value><Other>x</Other></LineType>"
               "<LineType><Value>second</Value></LineType><BomStyle/></RetainStyle>");
  EXPECT_EQ("New;", Retained(*system, 2));
  EXPECT_EQ("Thick;Thin;", Retained(*system, 11));
  EXPECT_EQ("", Retained(*system, 12));
}

TEST_F(SettingsListsTest, TheBrowseHistoryIsWrittenAnewBesideTheFile) {
  const struct {
    const char* file;   // null for none
    const char* saved;  // after it was loaded and an entry was added
  } rows[] = {
      {nullptr, "DCHistory{History=old History=a&b History=old}"},
      {"<damaged", "DCHistory{History=old History=a&b History=old}"},
      {"<History/>", "DCHistory{History=old History=a&b History=old}"},
      {"<BrowseFileHistorys><DCHistory/></BrowseFileHistorys>",
       "DCHistory{History=a&b History=old}"},
      {"<BrowseFileHistorys><DCHistory><history>no</history><History>D:\\图库</History><p:History "
       "xmlns:p='u'>no</p:History></DCHistory></BrowseFileHistorys>",
       "DCHistory{History=D:\\图库 History=a&b History=old}"},
  };
  for (const auto& row : rows) {
    std::filesystem::remove(folder_.Path(kHistory));
    if (row.file) folder_.Write(kHistory, row.file);
    const LateObject paths(kPaths);
    Do(paths, "put_DCBrowseHistory gone|RemoveAllDCHistory|put_DCBrowseHistory old");
    LoadElements(paths, "");
    Do(paths, "put_DCBrowseHistory a&b|put_DCBrowseHistory old");
    Saved(paths);
    EXPECT_EQ(row.saved, ElementsOf(folder_.Name(kHistory), "/BrowseFileHistorys"));
    EXPECT_TRUE(folder_.Read(kHistory).starts_with("<?xml version='1.0' encoding='UTF-8'?>"));
    EXPECT_EQ(2U, folder_.Entries().size());
  }
}

TEST_F(SettingsListsTest, WithoutTheNodeOrTheFileTheHistoryIsWrittenNonetheless) {
  for (const bool has_file : {false, true}) {
    if (has_file) Write("<Other/>");
    folder_.Write(kHistory, "<old/>");
    ASSERT_EQ(S_OK, Save(LateObject(kPaths)));
    EXPECT_EQ(has_file ? "<Other/>" : "", folder_.Read("t.xml"));
    EXPECT_EQ("DCHistory=", ElementsOf(folder_.Name(kHistory), "/BrowseFileHistorys"));
    EXPECT_EQ(has_file ? 2U : 1U, folder_.Entries().size());
  }
}

}  // namespace
}  // namespace sab::testing
