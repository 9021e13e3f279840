#include <gtest/gtest.h>

#include <functional>

#include "config/temporary_folder.h"
#include "server/created_object.h"

namespace sab::testing {
namespace {

constexpr HRESULT kInvalidTemplate = static_cast<HRESULT>(0x84000C01);
constexpr HRESULT kInvalidEnvironment = static_cast<HRESULT>(0x84000C02);
constexpr HRESULT kInvalidModule = static_cast<HRESULT>(0x84000C03);
constexpr HRESULT kInvalidCommand = static_cast<HRESULT>(0x84000C04);
constexpr HRESULT kDocumentNotLoaded = static_cast<HRESULT>(0x84000C06);

std::string Element(const std::string& path, const std::string& text) {
  const std::size_t slash = path.find('/');
  const std::string name = path.substr(0, slash);
  const std::string inside =
      slash == std::string::npos ? text : Element(path.substr(slash + 1), text);
  return "<" + name + ">" + inside + "</" + name + ">";
}

// The strings of an array, each followed by a semicolon.
template <class Parser>
std::string PathsOf(Parser& parser, HRESULT (STDMETHODCALLTYPE Parser::*getter)(SAFEARRAY**)) {
  SAFEARRAY* array = nullptr;
  EXPECT_EQ(S_OK, (parser.*getter)(&array));
  LONG upper = -1;
  EXPECT_EQ(S_OK, SafeArrayGetUBound(array, 1, &upper));
  std::string joined;
  for (LONG i = 0; i <= upper; ++i) {
    Bstr text;
    EXPECT_EQ(S_OK, SafeArrayGetElement(array, &i, text.Put()));
    joined += ToUtf8(text.View()) + ";";
  }
  EXPECT_EQ(S_OK, SafeArrayDestroy(array));
  return joined;
}

// Visits the items of a collection and joins what is said of each.
template <class Item, class Coll>
std::string Join(Coll& collection, const std::function<std::string(Item&)>& describe) {
  std::string joined;
  LONG_PTR position = 0;
  EXPECT_EQ(S_OK, collection.GetHeadPosition(&position));
  while (position) {
    ComPtr<Item> item;
    EXPECT_EQ(S_OK, collection.GetNext(&position, item.Put()));
    joined += describe(*item) + ";";
  }
  return joined;
}

class DescriptorParsersTest : public ::testing::Test {
 protected:
  // A parser of the class, put to a file of this content.
  template <class Parser>
  ComPtr<Parser> Put(REFCLSID clsid, const std::string& document) {
    auto parser = Created<Parser>(clsid);
    folder_.Write("descriptor.xml", document);
    EXPECT_EQ(S_OK, parser->put_ConfigurationPath(Bstr(folder_.Name("descriptor.xml")).Get()));
    return parser;
  }
  ComPtr<IVeTmplParser> Template(const std::string& content) {
    return Put<IVeTmplParser>(CLSID_VeTmplParser, Element("Template", content));
  }
  ComPtr<IVeModuleParser> Module(const std::string& content) {
    return Put<IVeModuleParser>(CLSID_VeModuleParser, Element("Module", content));
  }
  ComPtr<IVeEnvParser> Environment(const std::string& content) {
    return Put<IVeEnvParser>(CLSID_VeEnvParser, Element("Environment", content));
  }
  ComPtr<IVeCmdParser> Commands(const std::string& content) {
    return Put<IVeCmdParser>(CLSID_VeCmdParser, Element("Cmd", content));
  }

  TemporaryFolder folder_;
};

constexpr char kTemplateHead[] =
    "<Identify>T</Identify><DefEnvironment><Identify>E</Identify></DefEnvironment>"
    "<DefModule><Identify>M</Identify></DefModule>";
constexpr char kOneModule[] = "<Modules><Module>m.xml</Module></Modules>";

TEST_F(DescriptorParsersTest, EveryTemplateTextHasItsOwnElement) {
  const struct {
    const char* path;
    HRESULT (STDMETHODCALLTYPE IVeTmplParser::*get)(BSTR*);
  } rows[] = {
      {"Identify", &IVeTmplParser::GetTmplID},
      {"Attribute/Icon", &IVeTmplParser::GetIconPath},
      {"Attribute/ResPath", &IVeTmplParser::GetResPath},
      {"Attribute/DocClSID", &IVeTmplParser::GetDocCLSID},
      {"Attribute/WindowTitle", &IVeTmplParser::GetWindowTitle},
      {"Attribute/DocName", &IVeTmplParser::GetDocName},
      {"Attribute/FileNewName", &IVeTmplParser::GetFileNewName},
      {"Attribute/FilterName", &IVeTmplParser::GetFilterName},
      {"Attribute/FilterExt", &IVeTmplParser::GetFilterExt},
      {"Attribute/RegFileTypeId", &IVeTmplParser::GetRegFileTypeId},
      {"Attribute/RegFileTypeName", &IVeTmplParser::GetRegFileTypeName},
      {"Attribute/DllPath", &IVeTmplParser::GetDllPath},
      {"DatabaseCLSID", &IVeTmplParser::GetDatabaseCLSID},
      {"SessionCLSID", &IVeTmplParser::GetSessionCLSID},
      {"DefEnvironment/Identify", &IVeTmplParser::GetDefaultEnv},
      {"DefModule/Identify", &IVeTmplParser::GetDefaultModule},
  };
  std::string content = kOneModule;
  for (const auto& row : rows) content += Element(row.path, row.path);
  const auto parser = Template(content);
  for (const auto& row : rows) EXPECT_EQ("", TextOf(*parser, row.get)) << row.path;
  ASSERT_EQ(S_OK, parser->GenerateTmpl()) << TakeErrorDescription();
  for (const auto& row : rows) {
    EXPECT_EQ(row.path, TextOf(*parser, row.get));
    EXPECT_EQ(E_FAIL, (parser.Get()->*row.get)(nullptr)) << row.path;
  }
  EXPECT_EQ("", TextOf(*parser, &IVeTmplParser::GetTmplName));
}

TEST_F(DescriptorParsersTest, WhatIsMissingFromATemplateDecidesTheResult) {
  const std::string modules = kOneModule;
  const std::string services = "<PreProcServices><Service>s</Service></PreProcServices>";
  const struct {
    const char* name;
    std::string content;
    HRESULT result;
    const char* services;
  } rows[] = {
      {"only what is required", kTemplateHead + modules, S_OK, ""},
      {"no identifier", modules, kInvalidTemplate, ""},
      {"empty default environment",
       "<Identify>T</Identify><DefEnvironment><Identify/></DefEnvironment>" + modules,
       kInvalidTemplate, ""},
      {"no default module",
       "<Identify>T</Identify><DefEnvironment><Identify>E</Identify></DefEnvironment>" + modules,
       kInvalidTemplate, ""},
      {"empty default module",
       "<Identify>T</Identify><DefEnvironment><Identify>E</Identify></DefEnvironment>"
       "<DefModule><Identify/></DefModule>" +
           modules + services,
       S_OK, "s;"},
      {"no modules", kTemplateHead + services, kInvalidTemplate, ""},
      {"empty modules", kTemplateHead + services + "<Modules><Module/></Modules>", kInvalidTemplate,
       ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const auto parser = Template(row.content);
    EXPECT_EQ(row.result, parser->GenerateTmpl());
    EXPECT_EQ(SUCCEEDED(row.result), TakeErrorDescription().empty());
    EXPECT_EQ(row.services, PathsOf(*parser, &IVeTmplParser::GetPreServiceCLSIDs));
  }
}

TEST_F(DescriptorParsersTest, TemplateListsTakeCompleteEntriesAndAccumulate) {
  const auto parser = Template(
      std::string(kTemplateHead) +
      "<Modules><Module>a.xml</Module><module>no</module><Module> b.xml </Module></Modules>"
      "<PreProcServices><Service>not a class</Service><Other>no</Other><Service/></PreProcServices>"
      "<PostProcServices><Service>p</Service></PostProcServices>"
      "<OpenFileTypes>"
      "<FileType><FilterName>Drawings</FilterName><FilterExt>*.d</FilterExt></FileType>"
      "<FileType><FilterName>Half</FilterName></FileType>"
      "</OpenFileTypes>"
      "<EditObjMap>"
      "<Item><EditObjCLSID>c</EditObjCLSID><DbObjIID>i</DbObjIID></Item>"
      "<Item><DbObjIID>i</DbObjIID><EditObjCLSID/></Item>"
      "</EditObjMap>");
  std::string times;
  for (const char* run : {"first", "second"}) {
    SCOPED_TRACE(run);
    ASSERT_EQ(S_OK, parser->GenerateTmpl()) << TakeErrorDescription();
    const auto repeated = [&](const std::string& once) {
      return times.empty() ? once : once + once;
    };
    EXPECT_EQ(repeated("a.xml;b.xml;"), PathsOf(*parser, &IVeTmplParser::GetModulePaths));
    EXPECT_EQ(repeated("not a class;"), PathsOf(*parser, &IVeTmplParser::GetPreServiceCLSIDs));
    EXPECT_EQ(repeated("p;"), PathsOf(*parser, &IVeTmplParser::GetPostServiceCLSIDs));
    ComPtr<IVePrsOpenFileTypeColl> types;
    ASSERT_EQ(S_OK, parser->GetOpenFileTypes(types.Put()));
    EXPECT_EQ(repeated("Drawings=*.d;"), Join<IVePrsOpenFileType>(*types, [](auto& type) {
                return TextOf(type, &IVePrsOpenFileType::get_FilterName) + "=" +
                       TextOf(type, &IVePrsOpenFileType::get_FilterExt);
              }));
    ComPtr<IVePrsEditObjColl> objects;
    ASSERT_EQ(S_OK, parser->GetEditObjs(objects.Put()));
    EXPECT_EQ(repeated("i=c;"), Join<IVePrsEditObj>(*objects, [](auto& object) {
                return TextOf(object, &IVePrsEditObj::get_DbObjIID) + "=" +
                       TextOf(object, &IVePrsEditObj::get_EditObjCLSID);
              }));
    times += "x";
  }
}

TEST_F(DescriptorParsersTest, ModulesGiveTheirTextsPathsAndPages) {
  const struct {
    const char* name;
    const char* content;
    HRESULT result;
    const char* texts;
    const char* paths;
  } rows[] = {
      {"only an identifier", "<Identify>I</Identify>", S_OK, "I|||||", ""},
      {"everything",
       "<UiStateObj>u</UiStateObj><CLSID>c</CLSID><Description>d</Description><Title>t</Title>"
       "<TemplateID>p</TemplateID><Identify>I</Identify><Environments><Environment>"
       "<Path>a</Path><Path/><Path>b</Path></Environment><Other><Path>no</Path></Other>"
       "</Environments>",
       S_OK, "I|p|t|d|u|c", "a;b;"},
      {"no identifier", "<Title>t</Title>", kInvalidModule, "|||||", ""},
      {"empty identifier", "<Identify/><Title>t</Title>", kInvalidModule, "|||||", ""},
      {"an environment without a path",
       "<Identify>I</Identify><Title>t</Title><Environments><Environment/></Environments>",
       kInvalidModule, "I||t|||", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const auto parser = Module(row.content);
    EXPECT_EQ(row.result, parser->GenerateModule());
    const auto text = [&](auto getter) { return TextOf(*parser, getter); };
    EXPECT_EQ(row.texts, text(&IVeModuleParser::GetModuleID) + "|" +
                             text(&IVeModuleParser::GetTmplID) + "|" +
                             text(&IVeModuleParser::GetModuleTitle) + "|" +
                             text(&IVeModuleParser::GetDescription) + "|" +
                             text(&IVeModuleParser::GetUiStateObjCLSID) + "|" +
                             text(&IVeModuleParser::GetCLSID));
    EXPECT_EQ(row.paths, PathsOf(*parser, &IVeModuleParser::GetEnvPaths));
    ComPtr<IVePrsConfigColl> pages;
    EXPECT_EQ(S_OK, parser->GetConfigurations(pages.Put()));
    EXPECT_TRUE(pages);
  }
  EXPECT_EQ(E_POINTER, Module("<Identify>I</Identify>")->GetConfigurations(nullptr));
}

TEST_F(DescriptorParsersTest, EnvironmentGettersFailWhileTheirValueIsEmpty) {
  const struct {
    const char* name;
    const char* content;
    HRESULT result;
    const char* texts;  // identifier, user interface, command, panel
    const char* paths;
  } rows[] = {
      {"no panel", "<Identify>I</Identify><UIPath>u.xml</UIPath><DefaultCmd>c</DefaultCmd>", S_OK,
       "I u.xml c (null)", ""},
      {"everything",
       "<Identify>I</Identify><UIPath>u.xml</UIPath><DefaultCmd>c</DefaultCmd>"
       "<DefaultPanel>p</DefaultPanel><Commands><Command><Path>a</Path></Command>"
       "<Command><Path>b</Path><Path>c</Path></Command></Commands>",
       S_OK, "I u.xml c p", "a;b;c;"},
      {"empty command",
       "<Identify>I</Identify><UIPath>u</UIPath><DefaultPanel>p</DefaultPanel><DefaultCmd/>",
       kInvalidEnvironment, "I u (0x80004005) (0x80004005)", ""},
      {"no user interface", "<Identify>I</Identify><DefaultCmd>c</DefaultCmd>", kInvalidEnvironment,
       "I (0x80004005) (0x80004005) (0x80004005)", ""},
      {"commands without a path",
       "<Identify>I</Identify><UIPath>u</UIPath><DefaultCmd>c</DefaultCmd>"
       "<Commands><Command/></Commands>",
       kInvalidEnvironment, "I u c (null)", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const auto parser = Environment(row.content);
    EXPECT_EQ(row.result, parser->GenerateEnv());
    EXPECT_EQ(row.texts, TextOf(*parser, &IVeEnvParser::GetEnvID) + " " +
                             TextOf(*parser, &IVeEnvParser::GetUiPath) + " " +
                             TextOf(*parser, &IVeEnvParser::GetDefaultCmd) + " " +
                             TextOf(*parser, &IVeEnvParser::GetDefaultPanel));
    EXPECT_EQ(row.paths, PathsOf(*parser, &IVeEnvParser::GetCmdPaths));
  }
  // A failing getter leaves the place alone.
  BSTR untouched = reinterpret_cast<BSTR>(&untouched);
  EXPECT_EQ(E_FAIL, Environment("")->GetUiPath(&untouched));
  EXPECT_EQ(reinterpret_cast<BSTR>(&untouched), untouched);
  EXPECT_EQ(E_FAIL, Environment("")->GetDefaultPanel(nullptr));
}

TEST_F(DescriptorParsersTest, CommandsKeepTheirOrderAndTheirConversions) {
  const auto parser = Commands(
      "<Identify>F</Identify><Commands>"
      "<Group>Draw</Group>"
      "<Command><Identify>line</Identify><CLSID>c</CLSID><Priority>07</Priority>"
      "<LocalName>直线</LocalName><SystemCmd>True</SystemCmd><Property>p</Property>"
      "<AppMode>12abc</AppMode></Command>"
      "<Command><SystemCmd>1</SystemCmd><AppMode>abc</AppMode></Command>"
      "<Unknown/><group>no</group>"
      "<Group>Edit</Group><Command/>"
      "</Commands>");
  ASSERT_EQ(S_OK, parser->GenerateCmd()) << TakeErrorDescription();
  EXPECT_EQ("F", TextOf(*parser, &IVeCmdParser::GetCmdFileID));
  ComPtr<IVePrsCommandColl> commands;
  ASSERT_EQ(S_OK, parser->GetCommands(commands.Put()));
  const auto describe = [](IVePrsCommand& command) {
    VARIANT_BOOL is_group = 7;
    VARIANT_BOOL is_system = 7;
    int mode = 7;
    EXPECT_EQ(S_OK, command.get_IsGroup(&is_group));
    EXPECT_EQ(S_OK, command.get_SystemCommand(&is_system));
    EXPECT_EQ(S_OK, command.get_AppMode(&mode));
    std::string text =
        std::to_string(is_group) + "," + std::to_string(is_system) + "," + std::to_string(mode);
    for (const auto get : {&IVePrsCommand::get_GroupName, &IVePrsCommand::get_Identify,
                           &IVePrsCommand::get_CLSID, &IVePrsCommand::get_Priority,
                           &IVePrsCommand::get_LocalName, &IVePrsCommand::get_CommandProperty}) {
      const std::string value = TextOf(command, get);
      text += "," + (value == "(null)" ? "" : value);
    }
    return text;
  };
  EXPECT_EQ("-1,0,0,Draw,,,,,;0,-1,12,,line,c,07,直线,p;0,0,0,,,,,,;-1,0,0,Edit,,,,,;0,0,0,,,,,,;",
            Join<IVePrsCommand>(*commands, describe));
  EXPECT_EQ(kInvalidCommand, Commands("<Identify/>")->GenerateCmd());
  EXPECT_EQ(S_OK, Commands("<Identify>F</Identify>")->GenerateCmd());
}

TEST_F(DescriptorParsersTest, ANamelessOrMissingFileIsNotLoaded) {
  EXPECT_EQ(kDocumentNotLoaded, Created<IVeTmplParser>(CLSID_VeTmplParser)->GenerateTmpl());
  const auto parser = Created<IVeEnvParser>(CLSID_VeEnvParser);
  EXPECT_EQ(S_OK, parser->put_ConfigurationPath(Bstr(folder_.Name("none.xml")).Get()));
  EXPECT_EQ(kDocumentNotLoaded, parser->GenerateEnv());
  EXPECT_NE(std::string::npos, TakeErrorDescription().find("none.xml"));
}

}  // namespace
}  // namespace sab::testing
