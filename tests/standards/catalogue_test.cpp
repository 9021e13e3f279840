#include "config/temporary_folder.h"
#include "server/created_object.h"
#include "standards/third_party_revision.h"
#include "support/dynamic_library.h"
#include "support/elements.h"
#include "support/late_object.h"

namespace sab::testing {
namespace {

constexpr HRESULT kNoCatalogue = static_cast<HRESULT>(0x84000C05);
constexpr HRESULT kNotLoaded = static_cast<HRESULT>(0x84000C06);

std::string InBraces(REFCLSID clsid) {
  OLECHAR text[39];
  StringFromGUID2(clsid, text, 39);
  return ToUtf8(text);
}

std::string RevisionClass(REFCLSID clsid) { return Nested("RevParserCLSID", InBraces(clsid)); }

std::string Standard(const std::string& attributes, const std::string& symbols = {}) {
  return Nested("S", Nested("Attributes", attributes) + Nested("StandardSymbols", symbols));
}

std::string Catalogue(const std::string& standards) {
  return Nested("NEBStandardConfigration", standards);
}

// All that a catalogue parser has: "Name{symbol(revision)(revision) symbol}" for each standard.
std::string Described(const LateObject& parser) {
  std::string all;
  for (const LateObject& standard : parser.Follow("GetStandardParserColl").Elements()) {
    std::string symbols;
    for (const LateObject& symbol : standard.Follow("GetSymbolParserColl").Elements()) {
      if (!symbols.empty()) symbols += ' ';
      symbols += symbol.Get("GetID");
      for (const LateObject& revision : symbol.Follow("GetRevParserColl").Elements()) {
        const auto own = revision.As<IVeStdSymRevParser>();  // some cannot be bound late
        symbols += "(" + TextOf(*own, &IVeStdSymRevParser::get_Revision) + ")";
      }
    }
    all += standard.Get("Name") + "{" + symbols + "}";
  }
  return all;
}

class CatalogueTest : public ::testing::Test {
 protected:
  // Every load is that of a new parser.
  HRESULT Load(const std::string& xml, std::string* failure = nullptr) {
    folder_.Write("c.xml", xml);
    return LoadFile(ToUtf8(folder_.Name("c.xml")), failure);
  }
  HRESULT LoadFile(const std::string& name, std::string* failure = nullptr) {
    parser_ = LateObject("VeStandardCfgParser");
    return parser_.Call("Load", {name}, failure);
  }
  std::vector<LateObject> Standards() const {
    return parser_.Follow("GetStandardParserColl").Elements();
  }

  TemporaryFolder folder_;
  LateObject parser_{"VeStandardCfgParser"};
};

TEST_F(CatalogueTest, AttributesAreReadAsTheNumbersThatTheyAre) {
  const struct {
    const char* attributes;
    const char* told;
  } rows[] = {
      {"Name= 国标 |DimStyleName=d|TextStyleName=t|TextHeight=3.5mm|ArrowSize=1e-1|TextColor=-7 "
       "red|"
       "LeaderColor=16777215|SymbolColor=5|Perspective=1|ArrowStyle=3|ListPoint=2|DimLink=1|"
       "LeaderLink=-1|ManageObjAttribute=65538",
       "Name=国标 DimLink=1 LeaderLink=-1 DimStyleName=d TextStyleName=t TextHeight=3.500000 "
       "TextColor=-7 ArrowStyle=3 ArrowSize=0.100000 LeaderColor=16777215 SymLoadPos=2 "
       "SymbolColor=5 ManageObjAttribute=2 Perspective=1"},
      {"SymbolColor=none|SymLoadPos=2|dimlink=1|Unknown=1", ""},
  };
  for (const auto& row : rows) {
    std::string attributes;
    for (const std::string& attribute : Split(row.attributes, '|')) {
      const std::vector<std::string> parts = Split(attribute, '=');
      attributes += Nested(parts[0], parts[1]);
    }
    ASSERT_EQ(S_OK, Load(Catalogue(Standard(attributes))));
    EXPECT_EQ("[{" + std::string(row.told) + "}]", parser_.Get("GetStandardParserColl"));
  }
}

TEST_F(CatalogueTest, WhatIsNoCatalogueIsRefused) {
  const struct {
    const char* name;
    std::string xml;
    HRESULT result;
    const char* description;
    const char* standards;
  } rows[] = {
      {"spelt as in a dictionary", Nested("NEBStandardConfiguration", Standard("")), kNoCatalogue,
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
    std::string failure;
    EXPECT_EQ(row.result, Load(row.xml, &failure));
    EXPECT_NE(std::string::npos, failure.find(row.description)) << failure;
    EXPECT_EQ(row.standards, Described(parser_));
  }
  std::string failure;
  EXPECT_EQ(kNotLoaded, LoadFile("missing.xml", &failure));
  EXPECT_NE(std::string::npos, failure.find("missing.xml"));
  EXPECT_EQ(kNotLoaded, LoadFile(""));
}

TEST_F(CatalogueTest, ARevisionNeedsItsClassBeforeIt) {
  const std::string rough = RevisionClass(CLSID_VeStdRoughRevParser);
  const auto revision = [](const char* name) {
    return Nested("Revision", Nested("RevName", name));
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
      {"a class of another kind", RevisionClass(CLSID_VePrsAccel) + revision("a"), "(null)"},
      {"no class identifier", "<RevParserCLSID>rough</RevParserCLSID>" + revision("a"), "(null)"},
      {"other children", "<Other/>" + rough + "<x:Revision xmlns:x='x'/>", "(null)((null))"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    ASSERT_EQ(S_OK, Load(Catalogue(Standard("", Nested("Symbol", row.symbol)))));
    EXPECT_EQ("(null){" + std::string(row.described) + "}", Described(parser_));
  }
}

TEST_F(CatalogueTest, EveryKindOfRevisionKeepsAllItsValues) {
  const std::vector<std::string> kinds = Split(
      "Rough GeoTol Weld Datum Cuts Partno Bom DetailView DimLeader Taper HoleList Dim CenterLn",
      ' ');
  const auto class_of = [](const std::string& kind) {
    return RegisteredClassId("VeStd" + kind + "RevParser");
  };
  std::string symbols;
  for (const std::string& kind : kinds) {
    symbols += Nested(
        "Symbol", "<Identify>12x</Identify><CLSID>{host}</CLSID>" + RevisionClass(class_of(kind)) +
                      "<Revision><State> 1 </State><Rows><Row><A>a</A></Row><Row><A>b</A><A/>"
                      "</Row></Rows><RevName>r</RevName><RevName>s</RevName></Revision>");
  }
  ASSERT_EQ(S_OK, Load(Catalogue(Standard("<Name>N</Name>", symbols))));
  const auto read = Standards()[0].Follow("GetSymbolParserColl").Elements();
  ASSERT_EQ(kinds.size(), read.size());
  for (std::size_t i = 0; i < read.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ("{host}", read[i].Get("GetCLSID"));
    EXPECT_EQ(InBraces(class_of(kinds[i])), read[i].Get("GetRevParserCLSID"));
    const auto revisions = read[i].Follow("GetRevParserColl").Elements();
    ASSERT_EQ(1U, revisions.size());
    // The members of all kinds have the same places.
    const auto revision = revisions[0].As<IVeStdSymRevParser>();
    LONG id = 0;
    EXPECT_EQ(S_OK, revision->GetAttachSymStdID(&id));
    EXPECT_EQ(12, id);
    EXPECT_EQ("N", TextOf(*revision, &IVeStdSymRevParser::GetAttachStdName));
    EXPECT_EQ("r", revisions[0].Get("Revision"));
    std::string values;
    for (int place = 0; place < std::stoi(revisions[0].Get("ValueCount")); ++place) {
      const std::string name = revisions[0].Get("ValueName", {std::to_string(place)});
      values += name + "=" + revisions[0].Get("Value", {name}) + " ";
    }
    EXPECT_EQ("State=1 Rows/Row/A=a Rows/Row[2]/A=b Rows/Row[2]/A[2]= RevName=r RevName[2]=s ",
              values);
  }
  const auto rough = read[0].Follow("GetRevParserColl").Elements()[0].As<IVeStdRoughRevParser>();
  ASSERT_TRUE(rough);
  EXPECT_EQ(S_OK, rough->put_Value(Bstr(OLESTR("Rows/Row/A")).Get(), nullptr));
  EXPECT_EQ(E_INVALIDARG, rough->put_Value(nullptr, Bstr(OLESTR("v")).Get()));
}

TEST_F(CatalogueTest, PartsKnowTheNameThatTheirStandardHasNow) {
  ASSERT_EQ(S_OK, Load(Catalogue(Standard(
                      "<Name>N</Name>",
                      Nested("Symbol", RevisionClass(CLSID_VeStdBomRevParser) + "<Revision/>")))));
  auto standard = Standards()[0].As<IVeStandardParser>();
  const LateObject late_symbol =
      LateObject(standard.As<IDispatch>()).Follow("GetSymbolParserColl [0]");
  const auto symbol = late_symbol.As<IVeStdSymbolParser>();
  const auto revision = late_symbol.Follow("GetRevParserColl [0]").As<IVeStdSymRevParser>();
  const auto names = [&] {
    return TextOf(*symbol, &IVeStdSymbolParser::GetAttachStdName) + " " +
           TextOf(*revision, &IVeStdSymRevParser::GetAttachStdName);
  };
  EXPECT_EQ("N N", names());
  EXPECT_EQ(S_OK, standard->put_Name(Bstr(OLESTR("M")).Get()));
  EXPECT_EQ("M M", names());
  const auto other = LateObject("VeStandardParser").As<IVeStandardParser>();
  EXPECT_EQ(S_OK, other->put_Name(Bstr(OLESTR("O")).Get()));
  EXPECT_EQ(S_OK, symbol->SetAttachStdInfo(other.Get()));
  EXPECT_EQ("O O", names());
  EXPECT_EQ(S_OK, symbol->SetAttachStdInfo(nullptr));
  EXPECT_EQ("(null) (null)", names());
  EXPECT_EQ(S_OK, symbol->SetAttachStdInfo(standard.Get()));
  standard.Reset();
  parser_ = LateObject("VeStandardCfgParser");
  EXPECT_EQ("M M", names());  // though nothing else is left of it
  EXPECT_EQ(S_OK, revision->SetAttachSymStdInfo(nullptr));
  EXPECT_EQ("M (null)", names());
}

TEST_F(CatalogueTest, NothingIsLoadedFromNoNodeAndFromANumber) {
  for (const char* name : {"VeStandardParser", "VeStdSymbolParser", "VeStdCutsRevParser"}) {
    std::string failure;
    EXPECT_EQ(kNoCatalogue, LateObject(name).Call("Load", {"0"}, &failure));
    EXPECT_NE(std::string::npos, failure.find(name)) << failure;
    EXPECT_EQ(E_INVALIDARG, LateObject(name).Call("Load", {"1234"}));
  }
  const auto standard = LateObject("VeStandardParser").As<IVeStandardParser>();
  for (const ULONG_PTR number : {1234U, 4096U}) EXPECT_EQ(E_INVALIDARG, standard->Load(number));
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
  const std::string clsid = RevisionClass(kThirdPartyRevision);
  const std::string good = Standard(
      "<Name>N</Name>",
      Nested("Symbol", "<Identify>1</Identify>" + clsid +
                           "<Revision>t<A> \xD7\xD6 </A><!-- c --><x:B xmlns:x='x'><C/>u</x:B>"
                           "<D>1<E>2</E></D></Revision>"));
  ASSERT_EQ(S_OK, Load("<?xml version='1.0' encoding='GBK'?>" + Catalogue(good)));
  EXPECT_EQ("N{1(N Revision{A=字 B{C=} D{E=2}})}", Described(parser_));

  // It may hand elements on, as long as its own call runs.
  ASSERT_EQ(
      S_OK,
      Load(Catalogue(Standard("", Nested("Symbol", clsid + "<Revision><Forward><RevName>r"
                                                           "</RevName></Forward></Revision>")))));
  const auto own = Standards()[0]
                       .Follow("GetSymbolParserColl [0] GetRevParserColl")
                       .As<IVeStdSymRevParserColl>();
  ComPtr<IVeStdSymRevParser> revision;
  ASSERT_EQ(S_OK, own->GetHead(revision.Put()));
  const auto told = Split(TextOf(*revision, &IVeStdSymRevParser::get_Revision), ' ');
  ASSERT_EQ(2U, told.size());
  EXPECT_EQ("r", told[0]);
  EXPECT_EQ(E_INVALIDARG, LateObject("VeStdBomRevParser").Call("Load", {told[1]}));

  // What it refuses ends the loading; what was read before stays.
  const std::string bad = Standard(
      "", Nested("Symbol", "<Identify>9</Identify>" + clsid + "<Revision><Refuse/></Revision>"));
  std::string failure;
  EXPECT_EQ(E_ACCESSDENIED,
            Load(Catalogue(Standard("<Name>A</Name>") + bad + Standard("")), &failure));
  EXPECT_EQ("A{}", Described(parser_));
  for (const char* part : {"c.xml", "standard 2: symbol 1: revision of 9: ", "0x80070005"}) {
    EXPECT_NE(std::string::npos, failure.find(part)) << failure;
  }
}

}  // namespace
}  // namespace sab::testing
