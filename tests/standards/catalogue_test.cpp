#include <gtest/gtest.h>

#include "config/temporary_folder.h"
#include "config/wine.h"
#include "server/created_object.h"
#include "standards/third_party_revision.h"
#include "support/dynamic_library.h"
#include "support/late_value.h"

namespace sab::testing {
namespace {

constexpr HRESULT kNoCatalogue = static_cast<HRESULT>(0x84000C05);
constexpr HRESULT kNotLoaded = static_cast<HRESULT>(0x84000C06);

std::string InBraces(REFCLSID clsid) {
  OLECHAR text[39];
  StringFromGUID2(clsid, text, 39);
  return ToUtf8(text);
}

std::string Element(const std::string& name, const std::string& content) {
  return "<" + name + ">" + content + "</" + name + ">";
}

std::string Standard(const std::string& attributes, const std::string& symbols = {}) {
  return Element("S", Element("Attributes", attributes) + Element("StandardSymbols", symbols));
}

std::string Catalogue(const std::string& standards) {
  return Element("NEBStandardConfigration", standards);
}

// The elements of a collection.
template <class Item, class Coll>
std::vector<ComPtr<Item>> ItemsOf(const ComPtr<Coll>& collection) {
  std::vector<ComPtr<Item>> items;
  LONG_PTR position = 0;
  EXPECT_EQ(S_OK, collection->GetHeadPosition(&position));
  while (position != 0) {
    if (FAILED(collection->GetNext(&position, items.emplace_back().Put()))) break;
  }
  return items;
}

std::vector<ComPtr<IVeStdSymRevParser>> RevisionsOf(IVeStdSymbolParser& symbol) {
  ComPtr<IVeStdSymRevParserColl> revisions;
  EXPECT_EQ(S_OK, symbol.GetRevParserColl(revisions.Put()));
  return ItemsOf<IVeStdSymRevParser>(revisions);
}

std::vector<ComPtr<IVeStdSymbolParser>> SymbolsOf(IVeStandardParser& standard) {
  ComPtr<IVeStdSymbolParserColl> symbols;
  EXPECT_EQ(S_OK, standard.GetSymbolParserColl(symbols.Put()));
  return ItemsOf<IVeStdSymbolParser>(symbols);
}

// "Name{symbol(revision)(revision) symbol}".
std::string Describe(IVeStandardParser& standard) {
  std::string symbols;
  for (const auto& symbol : SymbolsOf(standard)) {
    symbols += (symbols.empty() ? "" : " ") + TextOf(*symbol, &IVeStdSymbolParser::GetID);
    for (const auto& revision : RevisionsOf(*symbol)) {
      symbols += "(" + TextOf(*revision, &IVeStdSymRevParser::get_Revision) + ")";
    }
  }
  return TextOf(standard, &IVeStandardParser::get_Name) + "{" + symbols + "}";
}

class CatalogueTest : public ::testing::Test {
 protected:
  HRESULT Load(const std::string& xml) {
    folder_.Write("c.xml", xml);
    return parser_->Load(Bstr(folder_.Name("c.xml")).Get());
  }
  std::vector<ComPtr<IVeStandardParser>> Standards() const {
    ComPtr<IVeStandardParserColl> standards;
    EXPECT_EQ(S_OK, parser_->GetStandardParserColl(standards.Put()));
    return ItemsOf<IVeStandardParser>(standards);
  }
  std::string All() const {
    std::string all;
    for (const auto& standard : Standards()) all += Describe(*standard);
    return all;
  }

  TemporaryFolder folder_;
  ComPtr<IVeStandardCfgParser> parser_ = Created<IVeStandardCfgParser>(CLSID_VeStandardCfgParser);
};

TEST_F(CatalogueTest, AttributesAreReadAsTheNumbersThatTheyAre) {
  const struct {
    const char* element;
    const char* text;
    const char* property;
    const char* value;
  } rows[] = {
      {"Name", " 国标 ", "Name", "国标"},
      {"DimStyleName", "d", "DimStyleName", "d"},
      {"TextStyleName", "t", "TextStyleName", "t"},
      {"TextHeight", "3.5mm", "TextHeight", "3.5"},
      {"ArrowSize", "1e-1", "ArrowSize", "0.1"},
      {"TextColor", "-7 red", "TextColor", "-7"},
      {"LeaderColor", "16777215", "LeaderColor", "16777215"},
      {"SymbolColor", "none", "SymbolColor", "0"},
      {"Perspective", "1", "Perspective", "1"},
      {"ArrowStyle", "3", "ArrowStyle", "3"},
      {"ListPoint", "2", "SymLoadPos", "2"},
      {"SymLoadPos", "2", "SymLoadPos", "0"},
      {"dimlink", "1", "DimLink", "0"},
      {"Unknown", "1", "Name", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.element);
    parser_ = Created<IVeStandardCfgParser>(CLSID_VeStandardCfgParser);
    ASSERT_EQ(S_OK, Load(Catalogue(Standard(Element(row.element, row.text)))));
    ASSERT_EQ(1U, Standards().size());
    EXPECT_EQ(row.value, LateValue::Of(Standards()[0].Get()).Get(row.property).Text());
  }
  ASSERT_EQ(S_OK, Load(Catalogue(Standard("<DimLink>1</DimLink><LeaderLink>-1</LeaderLink>"
                                          "<ManageObjAttribute>65538</ManageObjAttribute>"))));
  const auto standard = Standards().back();
  VARIANT_BOOL links[3] = {};
  EXPECT_EQ(S_OK, standard->get_DimLink(&links[0]));
  EXPECT_EQ(S_OK, standard->get_LeaderLink(&links[1]));
  EXPECT_EQ(S_OK, standard->get_ManageObjAttribute(&links[2]));
  EXPECT_EQ(1, links[0]);
  EXPECT_EQ(-1, links[1]);
  EXPECT_EQ(2, links[2]);
}

TEST_F(CatalogueTest, WhatIsNoCatalogueIsRefused) {
  const struct {
    const char* name;
    std::string xml;
    HRESULT result;
    const char* description;
    const char* standards;
  } rows[] = {
      {"spelt as in a dictionary", Element("NEBStandardConfiguration", Standard("")), kNoCatalogue,
       "c.xml: the document element must be <NEBStandardConfigration>", ""},
      {"in a namespace", "<NEBStandardConfigration xmlns='n'/>", kNoCatalogue, "c.xml: ", ""},
      {"not well-formed", "<NEBStandardConfigration>\n<a></b>", kNotLoaded, "c.xml", ""},
      {"empty", Catalogue(""), S_OK, "", ""},
      {"standards without anything", Catalogue("<!-- one --><S/>two<S><Other/></S>"), S_OK, "",
       "(null){}(null){}"},
      {"parts in a namespace",
       Catalogue("<S xmlns:n='n'><n:Attributes><Name>A</Name></n:Attributes>"
                 "<Attributes><n:Name>B</n:Name></Attributes></S>"),
       S_OK, "", "B{}"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    parser_ = Created<IVeStandardCfgParser>(CLSID_VeStandardCfgParser);
    EXPECT_EQ(row.result, Load(row.xml));
    EXPECT_NE(std::string::npos, TakeErrorDescription().find(row.description));
    EXPECT_EQ(row.standards, All());
  }
  EXPECT_EQ(kNotLoaded, parser_->Load(Bstr(folder_.Name("missing.xml")).Get()));
  EXPECT_NE(std::string::npos, TakeErrorDescription().find("missing.xml"));
  EXPECT_EQ(kNotLoaded, parser_->Load(nullptr));
}

TEST_F(CatalogueTest, ARevisionNeedsItsClassBeforeIt) {
  const std::string rough = Element("RevParserCLSID", InBraces(CLSID_VeStdRoughRevParser));
  const auto revision = [](const char* name) {
    return Element("Revision", Element("RevName", name));
  };
  const struct {
    const char* name;
    std::string symbol;
    const char* described;
  } rows[] = {
      {"in order", "<Identify>7</Identify>" + rough + revision("a") + revision("b"), "7(a)(b)"},
      {"before its class", revision("a") + rough + revision("b"), "(null)(b)"},
      {"no class", "<Identify>7</Identify>" + revision("a"), "7"},
      {"a class that nobody has",
       "<RevParserCLSID>{00000000-0000-0000-0000-00000000002A}</RevParserCLSID>" + revision("a") +
           rough + revision("b"),
       "(null)(b)"},
      {"a class of another kind",
       Element("RevParserCLSID", InBraces(CLSID_VePrsAccel)) + revision("a"), "(null)"},
      {"no class identifier", "<RevParserCLSID>rough</RevParserCLSID>" + revision("a"), "(null)"},
      {"other children", "<Other/>" + rough + "<x:Revision xmlns:x='x'/>", "(null)((null))"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    parser_ = Created<IVeStandardCfgParser>(CLSID_VeStandardCfgParser);
    ASSERT_EQ(S_OK, Load(Catalogue(Standard("", Element("Symbol", row.symbol)))));
    EXPECT_EQ("(null){" + std::string(row.described) + "}", All());
  }
}

TEST_F(CatalogueTest, EveryKindOfRevisionKeepsAllItsValues) {
  const CLSID* const kinds[] = {
      &CLSID_VeStdRoughRevParser,   &CLSID_VeStdGeoTolRevParser,     &CLSID_VeStdWeldRevParser,
      &CLSID_VeStdDatumRevParser,   &CLSID_VeStdCutsRevParser,       &CLSID_VeStdPartnoRevParser,
      &CLSID_VeStdBomRevParser,     &CLSID_VeStdDetailViewRevParser, &CLSID_VeStdDimLeaderRevParser,
      &CLSID_VeStdTaperRevParser,   &CLSID_VeStdHoleListRevParser,   &CLSID_VeStdDimRevParser,
      &CLSID_VeStdCenterLnRevParser};
  std::string symbols;
  for (const CLSID* kind : kinds) {
    symbols += Element("Symbol",
                       "<Identify>12x</Identify><CLSID>{host}</CLSID>" +
                           Element("RevParserCLSID", InBraces(*kind)) +
                           "<Revision><State> 1 </State><Rows><Row><A>a</A></Row><Row><A>b</A><A/>"
                           "</Row></Rows><RevName>r</RevName><RevName>s</RevName></Revision>");
  }
  ASSERT_EQ(S_OK, Load(Catalogue(Standard("<Name>N</Name>", symbols))));
  const auto read = SymbolsOf(*Standards()[0]);
  ASSERT_EQ(std::size(kinds), read.size());
  for (std::size_t i = 0; i < read.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ("{host}", TextOf(*read[i], &IVeStdSymbolParser::GetCLSID));
    EXPECT_EQ(InBraces(*kinds[i]), TextOf(*read[i], &IVeStdSymbolParser::GetRevParserCLSID));
    ASSERT_EQ(1U, RevisionsOf(*read[i]).size());
    const auto revision = RevisionsOf(*read[i])[0];
    LONG id = 0;
    EXPECT_EQ(S_OK, revision->GetAttachSymStdID(&id));
    EXPECT_EQ(12, id);
    EXPECT_EQ("N", TextOf(*revision, &IVeStdSymRevParser::GetAttachStdName));
    // The members of all kinds have the same places.
    const LateValue late = LateValue::Of(revision.Get());
    EXPECT_EQ("r", late.Get("Revision").Text());
    EXPECT_EQ("6", late.Get("ValueCount").Text());
  }
  const auto rough = RevisionsOf(*read[0])[0].As<IVeStdRoughRevParser>();
  ASSERT_TRUE(rough);
  std::string values;
  for (INT i = 0; i < 6; ++i) {
    Bstr name;
    Bstr value;
    ASSERT_EQ(S_OK, rough->get_ValueName(i, name.Put()));
    ASSERT_EQ(S_OK, rough->get_Value(name.Get(), value.Put()));
    values += ToUtf8(name.View()) + "=" + ToUtf8(value.View()) + " ";
  }
  EXPECT_EQ("State=1 Rows/Row/A=a Rows/Row[2]/A=b Rows/Row[2]/A[2]= RevName=r RevName[2]=s ",
            values);
  EXPECT_EQ(S_OK, rough->put_Value(Bstr(OLESTR("Rows/Row/A")).Get(), nullptr));
  EXPECT_EQ(E_INVALIDARG, rough->put_Value(nullptr, Bstr(OLESTR("v")).Get()));
}

TEST_F(CatalogueTest, PartsKnowTheNameThatTheirStandardHasNow) {
  ASSERT_EQ(S_OK,
            Load(Catalogue(Standard(
                "<Name>N</Name>",
                Element("Symbol", Element("RevParserCLSID", InBraces(CLSID_VeStdBomRevParser)) +
                                      "<Revision/>")))));
  auto standard = Standards()[0];
  const auto symbol = SymbolsOf(*standard)[0];
  const auto revision = RevisionsOf(*symbol)[0];
  const auto names = [&] {
    return TextOf(*symbol, &IVeStdSymbolParser::GetAttachStdName) + " " +
           TextOf(*revision, &IVeStdSymRevParser::GetAttachStdName);
  };
  EXPECT_EQ("N N", names());
  EXPECT_EQ(S_OK, standard->put_Name(Bstr(OLESTR("M")).Get()));
  EXPECT_EQ("M M", names());
  const auto other = Created<IVeStandardParser>(CLSID_VeStandardParser);
  EXPECT_EQ(S_OK, other->put_Name(Bstr(OLESTR("O")).Get()));
  EXPECT_EQ(S_OK, symbol->SetAttachStdInfo(other.Get()));
  EXPECT_EQ("O O", names());
  EXPECT_EQ(S_OK, symbol->SetAttachStdInfo(nullptr));
  EXPECT_EQ("(null) (null)", names());
  EXPECT_EQ(S_OK, symbol->SetAttachStdInfo(standard.Get()));
  standard.Reset();
  parser_.Reset();
  EXPECT_EQ("M M", names());  // though nothing else is left of it
  EXPECT_EQ(S_OK, revision->SetAttachSymStdInfo(nullptr));
  EXPECT_EQ("M (null)", names());
}

TEST_F(CatalogueTest, NothingIsLoadedFromNoNode) {
  EXPECT_EQ(kNoCatalogue, Created<IVeStandardParser>(CLSID_VeStandardParser)->Load(0));
  EXPECT_EQ(kNoCatalogue, Created<IVeStdSymbolParser>(CLSID_VeStdSymbolParser)->Load(0));
  EXPECT_EQ(kNoCatalogue, Created<IVeStdSymRevParser>(CLSID_VeStdCutsRevParser)->Load(0));
  EXPECT_NE(std::string::npos, TakeErrorDescription().find("VeStdCutsRevParser"));
}

// A class of a third party's in the registry, for as long as an instance lives.
class ThirdPartyRegistration {
 public:
  ThirdPartyRegistration() {
    HKEY key = nullptr;
    const Text server = key_ + OLESTR("\\InprocServer32");
    EXPECT_EQ(ERROR_SUCCESS,
              RegCreateKeyExW(HKEY_CLASSES_ROOT, server.c_str(), 0, nullptr,
                              REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, &key, nullptr));
    const Text path = FromUtf8(PathBesideTests("ThirdPartyRevision"));
    EXPECT_EQ(ERROR_SUCCESS,
              RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(path.c_str()),
                             static_cast<DWORD>((path.size() + 1) * sizeof(OLECHAR))));
    EXPECT_EQ(ERROR_SUCCESS, RegCloseKey(key));
  }
  ThirdPartyRegistration(const ThirdPartyRegistration&) = delete;
  ThirdPartyRegistration& operator=(const ThirdPartyRegistration&) = delete;
  ~ThirdPartyRegistration() { RegDeleteTreeW(HKEY_CLASSES_ROOT, key_.c_str()); }

 private:
  const Text key_ = FromUtf8("CLSID\\" + InBraces(kThirdPartyRevision));
};

TEST_F(CatalogueTest, ARevisionOfAThirdPartyReadsItsElementsItself) {
  const ThirdPartyRegistration registration;
  const std::string clsid = Element("RevParserCLSID", InBraces(kThirdPartyRevision));
  const std::string good =
      Standard("<Name>N</Name>",
               Element("Symbol", "<Identify>1</Identify>" + clsid +
                                     "<Revision>t<A> 字 </A><!-- c --><x:B xmlns:x='x'><C/>u</x:B>"
                                     "<D>1<E>2</E></D></Revision>"));
  ASSERT_EQ(S_OK, Load(Catalogue(good))) << TakeErrorDescription();
  EXPECT_EQ("N{1(N Revision{A=字 B{C=} D{E=2}})}", All());

  // What it refuses ends the loading; what was read before stays.
  parser_ = Created<IVeStandardCfgParser>(CLSID_VeStandardCfgParser);
  const std::string bad = Standard(
      "", Element("Symbol", "<Identify>9</Identify>" + clsid + "<Revision><Refuse/></Revision>"));
  EXPECT_EQ(E_ACCESSDENIED, Load(Catalogue(Standard("<Name>A</Name>") + bad + Standard(""))));
  const std::string description = TakeErrorDescription();
  EXPECT_EQ("A{}", All());
  for (const char* part : {"c.xml", "standard 2: symbol 1: revision of 9: ", "0x80070005"}) {
    EXPECT_NE(std::string::npos, description.find(part)) << description;
  }
}

TEST_F(CatalogueTest, SamplesAreRead) {
  const auto load = [this](const char* name) {
    parser_ = Created<IVeStandardCfgParser>(CLSID_VeStandardCfgParser);
    return parser_->Load(Bstr(FromUtf8(std::string(SAB_SAMPLES "/standards/") + name)).Get());
  };
  ASSERT_EQ(S_OK, load("catalogue.xml")) << TakeErrorDescription();
  EXPECT_EQ(
      "车间标准{101(2019) 102(2006)(1993) 103(2008) 104(车间明细表)}"
      "Fitters{201(1) 202(1) 203(A) 204(A) 205 206}",
      All());
  if (RunsUnderWine()) GTEST_SKIP() << "Wine's MSXML knows no GB2312";
  ASSERT_EQ(S_OK, load("sheet_metal.xml")) << TakeErrorDescription();
  EXPECT_EQ("钣金标准{301(件号) 302(引线) 303(中心线)}", All());
}

}  // namespace
}  // namespace sab::testing
