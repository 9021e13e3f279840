// The lists of the settings groups: what their methods do, and how their files hold them.

#include <sabxml/retain_style.h>

#include <cstring>
#include <functional>

#include "base/bstr.h"
#include "settings/settings_test.h"

namespace sab::testing {
namespace {

using System = IVeSysParameterCfgParser;
using FilePaths = IVeFilePathCfgParser;

class SettingsListsTest : public SettingsTest {
 protected:
  void LoadElements(const LateObject& object, const std::string& elements) const {
    Write("<S><G>" + elements + "</G></S>");
    EXPECT_EQ(S_OK, Load(object));
  }
  void ExpectSaved(const LateObject& object, const std::string& elements) const {
    EXPECT_NE(std::string::npos, Saved(object).find(elements)) << Elements();
  }

  LateObject object_{"VeSysParameterCfgParser"};
  ComPtr<System> system_ = object_.As<System>();
};

Bstr B(const std::string& utf8) { return Bstr(FromUtf8(utf8)); }

// The entries of a list, a blank behind each.
template <class Interface>
std::string ListOf(Interface& parser, HRESULT (STDMETHODCALLTYPE Interface::*count_of)(INT*),
                   const std::function<std::string(INT)>& entry) {
  std::string all;
  INT count = -1;
  EXPECT_EQ(S_OK, (parser.*count_of)(&count));
  for (INT i = 0; i < count; ++i) all += entry(i) + " ";
  return all;
}

std::string Rules(System& parser) {
  std::string rules;
  ListOf(parser, &System::get_MatchKeyCount, [&](INT key) {
    INT values = -1;
    EXPECT_EQ(S_OK, parser.get_MatchValueCount(key, &values));
    for (INT value = 0; value < values; ++value) {
      Bstr texts[2];
      EXPECT_EQ(S_OK, parser.get_MatchRuleAt(key, value, texts[0].Put(), texts[1].Put()));
      rules += ToUtf8(texts[0].View()) + ":" + ToUtf8(texts[1].View()) + " ";
    }
    return std::string();
  });
  return rules;
}

std::string Layers(System& parser) {
  return ListOf(parser, &System::GetAutoLayerPairCount, [&](INT i) {
    GUID id{};
    Bstr layer;
    EXPECT_EQ(S_OK, parser.GetAutoLayerPair(i, &id, layer.Put()));
    return std::to_string(id.Data1) + ":" + ToUtf8(layer.View());
  });
}

std::string Styles(System& parser) {
  return ListOf(parser, &System::GetVisualStylePairCount, [&](INT i) {
    Bstr texts[2];
    EXPECT_EQ(S_OK, parser.GetVisualStylePair(i, texts[0].Put(), texts[1].Put()));
    return ToUtf8(texts[0].View()) + ":" + ToUtf8(texts[1].View());
  });
}

std::string History(const LateObject& object) {
  const auto parser = object.As<FilePaths>();
  return ListOf(*parser.Get(), &FilePaths::get_DCHistoryCount, [&](INT i) {
    Bstr entry;
    EXPECT_EQ(S_OK, parser->get_DCHistoryAt(i, entry.Put()));
    return ToUtf8(entry.View()) + "|";
  });
}

TEST_F(SettingsListsTest, MatchRulesCompareValuesWithoutCaseAndKeysExactly) {
  const struct {
    const char* method;
    const char* key;
    const char* value;
    const char* rules;
  } rows[] = {
      {"InsertMatchRule", "A", "x", "A:x "},
      {"InsertMatchRule", "A", "X", "A:x "},
      {"InsertMatchRule", "a", "x", "A:x a:x "},
      {"InsertMatchRule", "A", "é", "A:x A:é a:x "},
      {"InsertMatchRule", "A", "É", "A:x A:é a:x "},
      {"InsertMatchRule", "A", "жук", "A:x A:é A:жук a:x "},
      {"InsertMatchRule", "A", "ЖУК", "A:x A:é A:жук a:x "},
      {"InsertMatchRule", "A", "e", "A:x A:é A:жук A:e a:x "},
      {"DelMatchRule", "A", "É", "A:x A:жук A:e a:x "},
      {"DelMatchRule", "B", "x", "A:x A:жук A:e a:x "},
      {"DelMatchRule", "a", "y", "A:x A:жук A:e a:x "},
      {"DelMatchRule", "a", "X", "A:x A:жук A:e "},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(S_OK, object_.Call(row.method, {row.key, row.value}));
    EXPECT_EQ(row.rules, Rules(*system_)) << row.method << row.key << row.value;
  }
  // No text is the empty text.
  EXPECT_EQ(S_OK, system_->InsertMatchRule(B("A").Get(), nullptr));
  EXPECT_EQ(S_OK, system_->InsertMatchRule(B("A").Get(), B("").Get()));
  EXPECT_EQ("A:x A:жук A:e A: ", Rules(*system_));
  EXPECT_EQ(S_OK, system_->DelMatchRule(B("A").Get(), nullptr));
  ExpectSaved(object_, "AllMatchRule{MatchRule{Key=A Value=x Value=жук Value=e}} ");
  EXPECT_EQ(S_OK, object_.Call("RemoveAllMatchRule"));
  EXPECT_EQ("", Rules(*system_));
  ASSERT_EQ(S_OK, Load(object_));
  EXPECT_EQ("A:x A:жук A:e ", Rules(*system_));
}

TEST_F(SettingsListsTest, LoadingReplacesTheMatchRulesWhereTheKeyIsThere) {
  EXPECT_EQ(S_OK, object_.Call("InsertMatchRule", {"old", "o"}));
  LoadElements(object_, "<Other/>");
  EXPECT_EQ("old:o ", Rules(*system_));
  LoadElements(object_,
               "<AllMatchRule><MatchRule><Value>1</Value><Other>o</Other><Key>k</Key><Value>2"
               "</Value></MatchRule><Matchrule><Key>no</Key></Matchrule>"
               "<MatchRule><Key>empty</Key></MatchRule></AllMatchRule>");
  EXPECT_EQ("k:1 k:2 ", Rules(*system_));
  INT keys = 0;
  EXPECT_EQ(S_OK, system_->get_MatchKeyCount(&keys));
  EXPECT_EQ(2, keys);
}

TEST_F(SettingsListsTest, PositionsOutsideAListAreRefusedAndNothingIsStored) {
  EXPECT_EQ(S_OK, object_.Call("InsertMatchRule", {"k", "v"}));
  const auto paths = LateObject("VeFilePathCfgParser").As<FilePaths>();
  OLECHAR mark[] = OLESTR("mark");
  for (const INT index : {-1, 1, 28, 2147483647}) {
    INT count = 77;
    BSTR first = mark;
    BSTR second = mark;
    GUID id = {7, 7, 7, {}};
    EXPECT_EQ(E_INVALIDARG, system_->get_MatchValueCount(index, &count));
    EXPECT_EQ(E_INVALIDARG, system_->get_MatchRuleAt(index, 0, &first, &second));
    EXPECT_EQ(E_INVALIDARG, system_->get_MatchRuleAt(0, index, &first, &second));
    EXPECT_EQ(E_INVALIDARG, system_->GetAutoLayerPair(index == 1 ? 28 : index, &id, &second));
    EXPECT_EQ(E_INVALIDARG, system_->GetVisualStylePair(index, &first, &second));
    EXPECT_EQ(E_INVALIDARG, paths->get_DCHistoryAt(index, &first));
    EXPECT_TRUE(count == 0 && first == mark && second == mark && id.Data1 == 7) << index;
  }
  BSTR layer = mark;
  EXPECT_EQ(E_POINTER, system_->get_MatchRuleAt(0, 0, nullptr, nullptr));
  EXPECT_EQ(E_POINTER, system_->GetAutoLayerPair(0, nullptr, &layer));
  EXPECT_EQ(mark, layer);
}

TEST_F(SettingsListsTest, DraftingStartsWithTwentyEightAutomaticLayersInByteOrder) {
  GUID before{};
  for (INT i = 0; i < 28; ++i) {
    GUID id{};
    Bstr layer;
    ASSERT_EQ(S_OK, system_->GetAutoLayerPair(i, &id, layer.Put()));
    EXPECT_LT(std::memcmp(&before, &id, sizeof id), 0);
    before = id;
  }
  // The first byte in memory is the last of the first group's text.
  EXPECT_EQ(S_OK, system_->ClearAutoLayerPair());
  const GUID low = {0xFF000001, 0, 0, {}};
  const GUID high = {0x00000002, 0, 0, {}};
  EXPECT_EQ(S_OK, system_->AddAutoLayerPair(high, B("high").Get()));
  EXPECT_EQ(S_OK, system_->AddAutoLayerPair(low, B("low").Get()));
  EXPECT_EQ(S_OK, system_->AddAutoLayerPair(low, B("other").Get()));
  ExpectSaved(object_,
              "AllAutoLayerRule{AutoLayerRule{Key={FF000001-0000-0000-0000-000000000000} "
              "Value=low} AutoLayerRule{Key={00000002-0000-0000-0000-000000000000} Value=high}} ");
  const LateObject other("VeSysParameterCfgParser");
  ASSERT_EQ(S_OK, Load(other));
  EXPECT_EQ("4278190081:low 2:high ", Layers(*other.As<System>()));
  LoadElements(other,
               "<AllAutoLayerRule><AutoLayerRule><Key>no identifier</Key><Value>v</Value>"
               "</AutoLayerRule></AllAutoLayerRule>");
  EXPECT_EQ("", Layers(*other.As<System>()));
}

TEST_F(SettingsListsTest, VisualStylesKeepTheLastNameAndSaveNoHalfPairs) {
  const char* const pairs[][2] = {
      {"1", "one"}, {"2", ""}, {"", "none"}, {"3", "three"}, {"1", "uno"}};
  for (const auto& [id, name] : pairs)
    EXPECT_EQ(S_OK, object_.Call("AddVisualStylePair", {id, name}));
  EXPECT_EQ("1:uno 2: :none 3:three ", Styles(*system_));
  ExpectSaved(object_,
              "ProductVisualStyles{VisualStyle{StyleID=1 StyleName=uno} "
              "VisualStyle{StyleID=3 StyleName=three}} WeldDialogStyle");
  ASSERT_EQ(S_OK, Load(object_));
  EXPECT_EQ("1:uno 3:three ", Styles(*system_));
}

std::string Retained(System& parser, INT type) {
  ULONG_PTR handle = 0;
  EXPECT_EQ(S_OK, parser.GetRetainStyleInfo(type, &handle));
  const auto& info = *reinterpret_cast<const VeRetainStyleInfo*>(handle);
  std::string names;
  for (ULONG i = 0; i < info.count; ++i) names += ToUtf8(Bstr::ViewOf(info.names[i])) + ";";
  return names;
}

TEST_F(SettingsListsTest, RetainedStylesAreReadInPlaceAndReplacedByCopy) {
  Bstr names[] = {B("Thick"), B("Thin")};
  BSTR places[] = {names[0].Get(), names[1].Get()};
  const VeRetainStyleInfo info{2, places};
  const auto handle = reinterpret_cast<ULONG_PTR>(&info);
  EXPECT_EQ(S_OK, system_->SetRetainStyleInfo(2, handle));
  EXPECT_EQ("Thick;Thin;", Retained(*system_, 2));
  ULONG_PTR own = 0;
  EXPECT_EQ(S_OK, system_->GetRetainStyleInfo(2, &own));
  EXPECT_EQ(S_OK, system_->SetRetainStyleInfo(2, own));  // its own list
  EXPECT_EQ("Thick;Thin;", Retained(*system_, 2));
  EXPECT_EQ(E_POINTER, system_->SetRetainStyleInfo(2, 0));
  // A script has no address of its own to give.
  EXPECT_EQ(S_OK, object_.Call("SetRetainStyleInfo", {"11", std::to_string(own)}));
  EXPECT_EQ(E_INVALIDARG, object_.Call("SetRetainStyleInfo", {"11", "1234"}));
  EXPECT_EQ(E_INVALIDARG, object_.Call("SetRetainStyleInfo", {"11", std::to_string(handle)}));

  for (const INT type : {-1, 0, 13}) {
    ULONG_PTR untouched = 5;
    EXPECT_EQ(S_OK, system_->GetRetainStyleInfo(type, &untouched));
    EXPECT_EQ(S_OK, system_->SetRetainStyleInfo(type, 0));
    EXPECT_EQ(5U, untouched);
  }
  ExpectSaved(object_,
              "RetainStyle{Layer= LineType{Value=Thick Value=Thin} TextStyle= DimStyle= "
              "LeadLineStyle= GeoMetricalSteyle= SurfaceFinishStyle= WeldingSymbolStyle= "
              "DatumSymbolStyle= SectionLineStyle= itemNo.Style{Value=Thick Value=Thin} "
              "BomStyle=} ");
  LoadElements(object_,
               "<RetainStyle><LineType><Value>New</Value><Other>x</Other></LineType>"
               "<LineType><Value>second</Value></LineType><BomStyle/></RetainStyle>");
  EXPECT_EQ("New;", Retained(*system_, 2));
  EXPECT_EQ("Thick;Thin;", Retained(*system_, 11));
  EXPECT_EQ("", Retained(*system_, 12));
}

TEST_F(SettingsListsTest, SelectionListsAreWrittenWithSemicolons) {
  const LateObject select("VeSelectCfgParser");
  const char* const calls[][2] = {{"AddIncludeType", "LINE"},
                                  {"AddIncludeType", "ARC"},
                                  {"AddIncludeType", ""},
                                  {"AddExculdeType", "文字"},
                                  {"AddExceptiveColor", "4278190080"},
                                  {"AddIncludeTypeID", "-3"},
                                  {"AddExculdeTypeID", "2147483647"},
                                  {"SelectAll_LnType", "-1"}};
  for (const auto& [method, argument] : calls)
    EXPECT_EQ(S_OK, select.Call(method, {argument})) << method;
  EXPECT_EQ(S_OK, select.Put("WindowAreaColor", "5"));
  ExpectSaved(select,
              "SelectAllLayer=0 SelectAllLnType=-1 SelectAllColor=0 IncludeTypes=LINE;ARC;; "
              "ExcludeTypes=文字; ExceptiveColors=-16777216; IncludeTypeIDs=-3; "
              "ExcludeTypeIDs=2147483647; ");
  EXPECT_EQ(std::string::npos, Elements().find("WindowAreaColor"));

  const LateObject loaded("VeSelectCfgParser");
  EXPECT_EQ(S_OK, loaded.Call("AddIncludeType", {"gone"}));
  EXPECT_EQ(S_OK, loaded.Call("AddExculdeTypeID", {"9"}));
  ASSERT_EQ(S_OK, Load(loaded));
  EXPECT_EQ("[LINE ARC]", loaded.Get("GetSelectIncludeTypes"));
  EXPECT_EQ("[文字]", loaded.Get("GetSelectExcludeTypes"));
  EXPECT_EQ("[4278190080]", loaded.Get("GetExceptiveColors"));
  EXPECT_EQ("[2147483647]", loaded.Get("GetSelectExcludeTypeIDs"));
  LoadElements(loaded, "<IncludeTypeIDs>;7;;x; 8</IncludeTypeIDs>");
  EXPECT_EQ("[7 0 8]", loaded.Get("GetSelectIncludeTypeIDs"));
  EXPECT_EQ("[2147483647]", loaded.Get("GetSelectExcludeTypeIDs"));

  const auto parser = loaded.As<IVeSelectCfgParser>();
  for (const auto& [getter, expected] :
       {std::pair(&IVeSelectCfgParser::GetSelectIncludeTypes, VT_BSTR),
        {&IVeSelectCfgParser::GetSelectIncludeTypeIDs, VT_INT},
        {&IVeSelectCfgParser::GetExceptiveColors, VT_UI4}}) {
    SAFEARRAY* array = nullptr;
    VARTYPE type = VT_EMPTY;
    ASSERT_EQ(S_OK, (parser.Get()->*getter)(&array));
    EXPECT_EQ(S_OK, SafeArrayGetVartype(array, &type));
    EXPECT_EQ(expected, type);
    EXPECT_EQ(S_OK, SafeArrayDestroy(array));
  }
}

TEST_F(SettingsListsTest, TheBrowseHistoryIsWrittenAnewBesideTheFile) {
  const LateObject paths("VeFilePathCfgParser");
  for (const char* entry : {"D:\\图库", "a & b", "D:\\图库"})
    EXPECT_EQ(S_OK, paths.Call("put_DCBrowseHistory", {entry}));
  EXPECT_EQ(S_OK, paths.Put("FontFilePath", "fonts"));
  folder_.Write("BrowseHistory.xml", "<damaged");
  Saved(paths);
  EXPECT_EQ(std::string::npos, Saved(paths).find("fonts"));
  const std::string saved = folder_.Read("BrowseHistory.xml");
  EXPECT_TRUE(saved.starts_with("<?xml version='1.0' encoding='UTF-8'?>")) << saved;
  EXPECT_EQ("DCHistory{History=D:\\图库 History=a & b History=D:\\图库}",
            ElementsOf(folder_.Name("BrowseHistory.xml"), "/BrowseFileHistorys"));
  EXPECT_EQ(2U, folder_.Entries().size());

  const struct {
    const char* file;  // null for none
    const char* history;
  } rows[] = {
      {saved.c_str(), "D:\\图库| a & b| D:\\图库| "},
      {nullptr, "old| "},
      {"<BrowseFileHistorys>", "old| "},
      {"<History/>", "old| "},
      {"<BrowseFileHistorys><DCHistory/></BrowseFileHistorys>", ""},
      {"<BrowseFileHistorys><DCHistory><history>no</history><History>yes</History><p:History "
       "xmlns:p='u'>no</p:History></DCHistory></BrowseFileHistorys>",
       "yes| "},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.file ? row.file : "none");
    std::filesystem::remove(folder_.Path("BrowseHistory.xml"));
    if (row.file) folder_.Write("BrowseHistory.xml", row.file);
    const LateObject loaded("VeFilePathCfgParser");
    EXPECT_EQ(S_OK, loaded.Call("put_DCBrowseHistory", {"old"}));
    ASSERT_EQ(S_OK, Load(loaded));
    EXPECT_EQ(row.history, History(loaded));
    EXPECT_EQ(S_OK, loaded.Call("RemoveAllDCHistory"));
    EXPECT_EQ("", History(loaded));
  }
}

TEST_F(SettingsListsTest, WithoutTheNodeOrTheFileTheHistoryIsWrittenNonetheless) {
  for (const bool has_file : {false, true}) {
    if (has_file) Write("<Other/>");
    folder_.Write("BrowseHistory.xml", "<old/>");
    ASSERT_EQ(S_OK, Save(LateObject("VeFilePathCfgParser")));
    EXPECT_EQ(has_file ? "<Other/>" : "", folder_.Read("t.xml"));
    EXPECT_EQ("DCHistory=", ElementsOf(folder_.Name("BrowseHistory.xml"), "/BrowseFileHistorys"));
    EXPECT_EQ(has_file ? 2U : 1U, folder_.Entries().size());
  }
}

}  // namespace
}  // namespace sab::testing
