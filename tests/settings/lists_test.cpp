// The lists of the settings groups: what their methods do, and how their files hold them.

#include <gtest/gtest.h>
#include <sabxml/retain_style.h>

#include <cstring>

#include "base/com_error.h"
#include "config/temporary_folder.h"
#include "server/created_object.h"
#include "settings/settings_object.h"

namespace sab::testing {
namespace {

constexpr char kEmptyGroup[] = "<S>\n  <G/>\n</S>\n";

class SettingsListsTest : public ::testing::Test {
 protected:
  template <class Interface>
  void Save(const ComPtr<Interface>& parser) {
    folder_.Write("t.xml", kEmptyGroup);
    ASSERT_EQ(S_OK, parser->Save(name_.Get(), node_.Get()));
  }
  template <class Interface>
  void Load(const ComPtr<Interface>& parser, const std::string& elements) {
    folder_.Write("t.xml", "<S><G>" + elements + "</G></S>");
    ASSERT_EQ(S_OK, parser->Load(name_.Get(), node_.Get()));
  }
  std::string Elements() const { return ElementsOf(file_, "/S/G"); }

  TemporaryFolder folder_;
  Text file_ = folder_.Name("t.xml");
  Bstr name_{file_};
  Bstr node_{OLESTR("/S/G")};
};

Bstr B(const std::string& utf8) { return Bstr(FromUtf8(utf8)); }

ComPtr<IVeSysParameterCfgParser> System() {
  return Created<IVeSysParameterCfgParser>(CLSID_VeSysParameterCfgParser);
}

std::string Rules(IVeSysParameterCfgParser& parser) {
  std::string rules;
  INT keys = -1;
  EXPECT_EQ(S_OK, parser.get_MatchKeyCount(&keys));
  for (INT key = 0; key < keys; ++key) {
    INT values = -1;
    EXPECT_EQ(S_OK, parser.get_MatchValueCount(key, &values));
    for (INT value = 0; value < values; ++value) {
      Bstr key_text;
      Bstr value_text;
      EXPECT_EQ(S_OK, parser.get_MatchRuleAt(key, value, key_text.Put(), value_text.Put()));
      rules += ToUtf8(key_text.View()) + ":" + ToUtf8(value_text.View()) + " ";
    }
  }
  return rules;
}

TEST_F(SettingsListsTest, MatchRulesCompareValuesWithoutCaseAndKeysExactly) {
  struct Row {
    char operation;  // insert or delete
    const char* key;
    const char* value;
    const char* rules;
  };
  const Row rows[] = {
      {'i', "A", "x", "A:x "},
      {'i', "A", "X", "A:x "},
      {'i', "a", "x", "A:x a:x "},
      {'i', "A", "é", "A:x A:é a:x "},
      {'i', "A", "É", "A:x A:é a:x "},
      {'i', "A", "жук", "A:x A:é A:жук a:x "},
      {'i', "A", "ЖУК", "A:x A:é A:жук a:x "},
      {'i', "A", "e", "A:x A:é A:жук A:e a:x "},
      {'d', "A", "É", "A:x A:жук A:e a:x "},
      {'d', "B", "x", "A:x A:жук A:e a:x "},
      {'d', "a", "y", "A:x A:жук A:e a:x "},
      {'d', "a", "X", "A:x A:жук A:e "},
  };
  const auto parser = System();
  for (const Row& row : rows) {
    const auto change = row.operation == 'i' ? &IVeSysParameterCfgParser::InsertMatchRule
                                             : &IVeSysParameterCfgParser::DelMatchRule;
    EXPECT_EQ(S_OK, (parser.Get()->*change)(B(row.key).Get(), B(row.value).Get()));
    EXPECT_EQ(row.rules, Rules(*parser)) << row.operation << row.key << row.value;
  }
  Save(parser);
  EXPECT_NE(std::string::npos,
            Elements().find("AllMatchRule{MatchRule{Key=A Value=x Value=жук Value=e}} "));
  EXPECT_EQ(S_OK, parser->RemoveAllMatchRule());
  EXPECT_EQ("", Rules(*parser));
  ASSERT_EQ(S_OK, parser->Load(name_.Get(), node_.Get()));
  EXPECT_EQ("A:x A:жук A:e ", Rules(*parser));
}

TEST_F(SettingsListsTest, LoadingReplacesTheMatchRulesWhereTheKeyIsThere) {
  const auto parser = System();
  EXPECT_EQ(S_OK, parser->InsertMatchRule(B("old").Get(), B("o").Get()));
  Load(parser, "<Other/>");
  EXPECT_EQ("old:o ", Rules(*parser));
  Load(parser,
       "<AllMatchRule><MatchRule><Value>1</Value><Other>o</Other><Key>k</Key><Value>2</Value>"
       "</MatchRule><Matchrule><Key>no</Key></Matchrule><MatchRule><Key>empty</Key></MatchRule>"
       "</AllMatchRule>");
  EXPECT_EQ("k:1 k:2 ", Rules(*parser));
  INT keys = 0;
  EXPECT_EQ(S_OK, parser->get_MatchKeyCount(&keys));
  EXPECT_EQ(2, keys);
}

TEST_F(SettingsListsTest, PositionsOutsideAListAreRefusedAndNothingIsStored) {
  const auto parser = System();
  EXPECT_EQ(S_OK, parser->InsertMatchRule(B("k").Get(), B("v").Get()));
  const auto paths = Created<IVeFilePathCfgParser>(CLSID_VeFilePathCfgParser);
  OLECHAR mark[] = OLESTR("mark");
  for (const INT index : {-1, 1, 28, 2147483647}) {
    INT count = 77;
    BSTR first = mark;
    BSTR second = mark;
    GUID id = {7, 7, 7, {}};
    EXPECT_EQ(E_INVALIDARG, parser->get_MatchValueCount(index, &count));
    EXPECT_EQ(E_INVALIDARG, parser->get_MatchRuleAt(index, 0, &first, &second));
    EXPECT_EQ(E_INVALIDARG, parser->get_MatchRuleAt(0, index, &first, &second));
    EXPECT_EQ(E_INVALIDARG, parser->GetAutoLayerPair(index == 1 ? 28 : index, &id, &second));
    EXPECT_EQ(E_INVALIDARG, parser->GetVisualStylePair(index, &first, &second));
    EXPECT_EQ(E_INVALIDARG, paths->get_DCHistoryAt(index, &first));
    EXPECT_EQ(77, count);
    EXPECT_EQ(mark, first);
    EXPECT_EQ(mark, second);
    EXPECT_EQ(7U, id.Data1);
  }
  EXPECT_EQ(E_POINTER, parser->get_MatchRuleAt(0, 0, nullptr, nullptr));
  EXPECT_EQ(E_POINTER, parser->GetAutoLayerPair(0, nullptr, nullptr));
}

TEST_F(SettingsListsTest, DraftingStartsWithTwentyEightAutomaticLayersInByteOrder) {
  const auto parser = System();
  INT count = 0;
  EXPECT_EQ(S_OK, parser->GetAutoLayerPairCount(&count));
  ASSERT_EQ(28, count);
  GUID before{};
  for (INT i = 0; i < count; ++i) {
    GUID id{};
    Bstr layer;
    EXPECT_EQ(S_OK, parser->GetAutoLayerPair(i, &id, layer.Put()));
    EXPECT_LT(std::memcmp(&before, &id, sizeof id), 0);
    before = id;
  }
  // The first byte in memory is the last of the first group's text.
  EXPECT_EQ(S_OK, parser->ClearAutoLayerPair());
  const GUID low = {0xFF000001, 0, 0, {}};
  const GUID high = {0x00000002, 0, 0, {}};
  EXPECT_EQ(S_OK, parser->AddAutoLayerPair(high, B("high").Get()));
  EXPECT_EQ(S_OK, parser->AddAutoLayerPair(low, B("low").Get()));
  EXPECT_EQ(S_OK, parser->AddAutoLayerPair(low, B("other").Get()));
  Save(parser);
  EXPECT_NE(std::string::npos,
            Elements().find("AllAutoLayerRule{AutoLayerRule{Key={FF000001-0000-0000-0000-"
                            "000000000000} Value=low} AutoLayerRule{Key={00000002-0000-0000-0000-"
                            "000000000000} Value=high}} "));
  const auto other = System();
  ASSERT_EQ(S_OK, other->Load(name_.Get(), node_.Get()));
  EXPECT_EQ(S_OK, other->GetAutoLayerPairCount(&count));
  EXPECT_EQ(2, count);
  Load(other,
       "<AllAutoLayerRule><AutoLayerRule><Key>no identifier</Key><Value>v</Value>"
       "</AutoLayerRule></AllAutoLayerRule>");
  EXPECT_EQ(S_OK, other->GetAutoLayerPairCount(&count));
  EXPECT_EQ(0, count);
}

TEST_F(SettingsListsTest, VisualStylesKeepTheLastNameAndSaveNoHalfPairs) {
  const auto parser = System();
  const char* const pairs[][2] = {
      {"1", "one"}, {"2", ""}, {"", "none"}, {"3", "three"}, {"1", "uno"}};
  for (const auto& [id, name] : pairs)
    EXPECT_EQ(S_OK, parser->AddVisualStylePair(B(id).Get(), B(name).Get()));
  INT count = 0;
  EXPECT_EQ(S_OK, parser->GetVisualStylePairCount(&count));
  EXPECT_EQ(4, count);
  Save(parser);
  EXPECT_NE(std::string::npos,
            Elements().find("ProductVisualStyles{VisualStyle{StyleID=1 StyleName=uno} "
                            "VisualStyle{StyleID=3 StyleName=three}} WeldDialogStyle"));
  ASSERT_EQ(S_OK, parser->Load(name_.Get(), node_.Get()));
  EXPECT_EQ(S_OK, parser->GetVisualStylePairCount(&count));
  EXPECT_EQ(2, count);
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
  const auto parser = System();
  Bstr names[] = {B("Thick"), B("Thin")};
  BSTR places[] = {names[0].Get(), names[1].Get()};
  const VeRetainStyleInfo info{2, places};
  const auto handle = reinterpret_cast<ULONG_PTR>(&info);
  EXPECT_EQ(S_OK, parser->SetRetainStyleInfo(2, handle));
  EXPECT_EQ(S_OK, parser->SetRetainStyleInfo(11, handle));
  EXPECT_EQ("Thick;Thin;", Retained(*parser, 2));
  ULONG_PTR own = 0;
  EXPECT_EQ(S_OK, parser->GetRetainStyleInfo(2, &own));
  EXPECT_EQ(S_OK, parser->SetRetainStyleInfo(2, own));  // its own list
  EXPECT_EQ("Thick;Thin;", Retained(*parser, 2));
  EXPECT_EQ(E_POINTER, parser->SetRetainStyleInfo(2, 0));

  for (const INT type : {-1, 0, 13}) {
    ULONG_PTR untouched = 5;
    EXPECT_EQ(S_OK, parser->GetRetainStyleInfo(type, &untouched));
    EXPECT_EQ(S_OK, parser->SetRetainStyleInfo(type, 0));
    EXPECT_EQ(5U, untouched);
  }
  Save(parser);
  EXPECT_NE(std::string::npos,
            Elements().find("RetainStyle{Layer= LineType{Value=Thick Value=Thin} TextStyle="));
  EXPECT_NE(std::string::npos, Elements().find("itemNo.Style{Value=Thick Value=Thin} BomStyle="));
  Load(parser,
       "<RetainStyle><LineType><Value>New</Value><Other>x</Other></LineType>"
       "<LineType><Value>second</Value></LineType><BomStyle/></RetainStyle>");
  EXPECT_EQ("New;", Retained(*parser, 2));
  EXPECT_EQ("Thick;Thin;", Retained(*parser, 11));
  EXPECT_EQ("", Retained(*parser, 12));
}

template <class Element>
std::vector<Element> ElementsOfArray(SAFEARRAY* array, VARTYPE expected) {
  std::vector<Element> elements;
  VARTYPE type = VT_EMPTY;
  LONG lower = -1;
  LONG upper = -2;
  EXPECT_EQ(S_OK, SafeArrayGetVartype(array, &type));
  EXPECT_EQ(expected, type);
  EXPECT_EQ(S_OK, SafeArrayGetLBound(array, 1, &lower));
  EXPECT_EQ(0, lower);
  EXPECT_EQ(S_OK, SafeArrayGetUBound(array, 1, &upper));
  for (LONG i = 0; i <= upper; ++i) {
    Element element{};
    EXPECT_EQ(S_OK, SafeArrayGetElement(array, &i, &element));
    elements.push_back(element);
  }
  EXPECT_EQ(S_OK, SafeArrayDestroy(array));
  return elements;
}

TEST_F(SettingsListsTest, SelectionListsAreWrittenWithSemicolons) {
  const auto parser = Created<IVeSelectCfgParser>(CLSID_VeSelectCfgParser);
  for (const char* type : {"LINE", "ARC", ""})
    EXPECT_EQ(S_OK, parser->AddIncludeType(B(type).Get()));
  EXPECT_EQ(S_OK, parser->AddExculdeType(B("文字").Get()));
  EXPECT_EQ(S_OK, parser->AddExceptiveColor(0xFF000000));
  EXPECT_EQ(S_OK, parser->AddIncludeTypeID(-3));
  EXPECT_EQ(S_OK, parser->AddExculdeTypeID(2147483647));
  EXPECT_EQ(S_OK, parser->SelectAll_LnType(VARIANT_TRUE));
  EXPECT_EQ(S_OK, parser->put_WindowAreaColor(5));
  Save(parser);
  const std::string saved = Elements();
  EXPECT_NE(std::string::npos,
            saved.find("SelectAllLayer=0 SelectAllLnType=-1 SelectAllColor=0 "
                       "IncludeTypes=LINE;ARC;; ExcludeTypes=文字; ExceptiveColors=-16777216; "
                       "IncludeTypeIDs=-3; ExcludeTypeIDs=2147483647; "))
      << saved;
  EXPECT_EQ(std::string::npos, saved.find("WindowAreaColor"));

  const auto loaded = Created<IVeSelectCfgParser>(CLSID_VeSelectCfgParser);
  EXPECT_EQ(S_OK, loaded->AddIncludeType(B("gone").Get()));
  EXPECT_EQ(S_OK, loaded->AddExculdeTypeID(9));
  ASSERT_EQ(S_OK, loaded->Load(name_.Get(), node_.Get()));
  SAFEARRAY* array = nullptr;
  ASSERT_EQ(S_OK, loaded->GetSelectIncludeTypes(&array));
  const std::vector<BSTR> types = ElementsOfArray<BSTR>(array, VT_BSTR);
  ASSERT_EQ(2U, types.size());
  EXPECT_EQ("LINE", ToUtf8(Bstr::ViewOf(types[0])));
  for (BSTR type : types) SysFreeString(type);
  ASSERT_EQ(S_OK, loaded->GetExceptiveColors(&array));
  EXPECT_EQ(std::vector<ULONG>{0xFF000000}, ElementsOfArray<ULONG>(array, VT_UI4));
  ASSERT_EQ(S_OK, loaded->GetSelectExcludeTypeIDs(&array));
  EXPECT_EQ(std::vector<INT>{2147483647}, ElementsOfArray<INT>(array, VT_INT));
  EXPECT_EQ(E_POINTER, loaded->GetSelectExcludeTypes(nullptr));

  Load(loaded, "<IncludeTypeIDs>;7;;x; 8</IncludeTypeIDs>");
  ASSERT_EQ(S_OK, loaded->GetSelectIncludeTypeIDs(&array));
  EXPECT_EQ((std::vector<INT>{7, 0, 8}), ElementsOfArray<INT>(array, VT_INT));
  ASSERT_EQ(S_OK, loaded->GetSelectExcludeTypeIDs(&array));
  EXPECT_EQ(std::vector<INT>{2147483647}, ElementsOfArray<INT>(array, VT_INT));
}

std::string History(IVeFilePathCfgParser& parser) {
  std::string history;
  INT count = -1;
  EXPECT_EQ(S_OK, parser.get_DCHistoryCount(&count));
  for (INT i = 0; i < count; ++i) {
    Bstr entry;
    EXPECT_EQ(S_OK, parser.get_DCHistoryAt(i, entry.Put()));
    history += ToUtf8(entry.View()) + "|";
  }
  return history;
}

TEST_F(SettingsListsTest, TheBrowseHistoryIsWrittenAnewBesideTheFile) {
  const auto parser = Created<IVeFilePathCfgParser>(CLSID_VeFilePathCfgParser);
  for (const char* entry : {"D:\\图库", "a & b", "D:\\图库"})
    EXPECT_EQ(S_OK, parser->put_DCBrowseHistory(B(entry).Get()));
  EXPECT_EQ(S_OK, parser->put_FontFilePath(B("fonts").Get()));
  folder_.Write("BrowseHistory.xml", "<damaged");
  Save(parser);
  Save(parser);
  EXPECT_EQ(std::string::npos, Elements().find("fonts"));
  const std::string saved = folder_.Read("BrowseHistory.xml");
  EXPECT_TRUE(saved.starts_with("<?xml version='1.0' encoding='UTF-8'?>")) << saved;
  EXPECT_EQ("DCHistory{History=D:\\图库 History=a & b History=D:\\图库}",
            ElementsOf(folder_.Name("BrowseHistory.xml"), "/BrowseFileHistorys"));
  EXPECT_EQ(2U, folder_.Entries().size());

  struct Row {
    const char* label;
    const char* file;  // null for none
    const char* history;
  };
  const Row rows[] = {
      {"as saved", saved.c_str(), "D:\\图库|a & b|D:\\图库|"},
      {"none", nullptr, "old|"},
      {"damaged", "<BrowseFileHistorys>", "old|"},
      {"another root", "<History/>", "old|"},
      {"empty", "<BrowseFileHistorys><DCHistory/></BrowseFileHistorys>", ""},
      {"other children",
       "<BrowseFileHistorys><DCHistory><history>no</history><History>yes</History><p:History "
       "xmlns:p='u'>no</p:History></DCHistory></BrowseFileHistorys>",
       "yes|"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    std::filesystem::remove(folder_.Path("BrowseHistory.xml"));
    if (row.file) folder_.Write("BrowseHistory.xml", row.file);
    const auto loaded = Created<IVeFilePathCfgParser>(CLSID_VeFilePathCfgParser);
    EXPECT_EQ(S_OK, loaded->put_DCBrowseHistory(B("old").Get()));
    ASSERT_EQ(S_OK, loaded->Load(name_.Get(), node_.Get()));
    EXPECT_EQ(row.history, History(*loaded));
  }
}

TEST_F(SettingsListsTest, WithoutTheNodeTheHistoryIsWrittenNonetheless) {
  folder_.Write("t.xml", "<Other/>");
  const auto parser = Created<IVeFilePathCfgParser>(CLSID_VeFilePathCfgParser);
  ASSERT_EQ(S_OK, parser->Save(name_.Get(), node_.Get()));
  EXPECT_EQ("<Other/>", folder_.Read("t.xml"));
  EXPECT_EQ("DCHistory=", ElementsOf(folder_.Name("BrowseHistory.xml"), "/BrowseFileHistorys"));
  EXPECT_EQ(S_OK, parser->RemoveAllDCHistory());
  EXPECT_EQ("", History(*parser));
}

}  // namespace
}  // namespace sab::testing
