// Descriptors of all kinds: what they read, what they refuse, what they hand out.

#include <algorithm>

#include "base/com_error.h"
#include "framework/descriptor_test.h"
#include "generated/dispatch_tables.h"
#include "server/nullable_calls.h"

namespace sab::testing {
namespace {

constexpr HRESULT kInvalidApplication = static_cast<HRESULT>(0x84000C00);
constexpr HRESULT kInvalidTemplate = static_cast<HRESULT>(0x84000C01);
constexpr HRESULT kInvalidEnvironment = static_cast<HRESULT>(0x84000C02);
constexpr HRESULT kInvalidModule = static_cast<HRESULT>(0x84000C03);
constexpr HRESULT kInvalidCommand = static_cast<HRESULT>(0x84000C04);
constexpr HRESULT kInvalidUserInterface = static_cast<HRESULT>(0x84000C05);

struct Kind {
  const char* class_name;
  const char* root;
  const char* required;  // what every such file has to have
};

constexpr Kind kApp = {"VeAppParser", "Application",
                       "<AppTemplateID>T</AppTemplateID><ProductName>P</ProductName>"
                       "<CompanyName>C &amp; D</CompanyName>"};
constexpr Kind kTmpl = {"VeTmplParser", "Template",
                        "<Identify>T</Identify><Modules><Module>m</Module></Modules>"
                        "<DefEnvironment><Identify>E</Identify></DefEnvironment>"
                        "<DefModule><Identify>M</Identify></DefModule>"};
constexpr Kind kModule = {"VeModuleParser", "Module", "<Identify>I</Identify>"};
constexpr Kind kEnv = {"VeEnvParser", "Environment",
                       "<Identify>I</Identify><UIPath>u</UIPath><DefaultCmd>c</DefaultCmd>"};
constexpr Kind kCmd = {"VeCmdParser", "Cmd", "<Identify>F</Identify>"};
constexpr Kind kUi = {"VeUiParser", "UI", ""};

// A file with a content inside of some elements, and what is required behind it: of two elements of
// one name the first counts.
std::string DocumentOf(const Kind& kind, const std::string& around, const std::string& content) {
  return Nested(kind.root, (around.empty() ? content : Nested(around, content)) + kind.required);
}

// Every element that a kind of object reads, and where its text goes. The text of each is its own
// name, so that a value in the wrong place is seen. The path leads from the parser to the object:
// properties, and [0] for the first of a list; the parser's own texts have methods, "GetURL".
TEST_F(DescriptorTest, EveryElementFillsItsMember) {
  const struct {
    const Kind& kind;
    const char* around;  // the elements between the root and the object's own
    const char* path;
    const char* fields;  // "Element=Member", the same name where there is no =
  } rows[] = {
      {kApp, "", "",
       "Identify=AppID AppTemplateID=AppTmplID ProductName SubProductName CompanyName "
       "ProductEdition"},
      {kApp, "LocalAbout", "",
       "ProductPubName ProductPubVer ProductPubDate ProductPubBuild OnlineReport OnlineResource "
       "OnlineCon OnlineCloud DlgTitle Tel=TelNum E-mail=Email URL CopyrightFile LicenseFile "
       "LogoFile OnlineWhatsNew CloudSpaceWebSite CloudSpaceRigistWebSite=CloudSpaceRigisWeb "
       "CloudSpaceBuyOrderWebSite=CloudSpaceBuyOrderWeb ProductDownloadWebSite BuyOrderWebSite "
       "OnlineHelpWebSite"},
      {kTmpl, "", "", "Identify=TmplID DatabaseCLSID SessionCLSID"},
      {kTmpl, "Attribute", "",
       "Icon=IconPath ResPath DocClSID=DocCLSID WindowTitle DocName FileNewName FilterName "
       "FilterExt RegFileTypeId RegFileTypeName DllPath"},
      {kTmpl, "DefEnvironment", "", "Identify=DefaultEnv"},
      {kTmpl, "DefModule", "", "Identify=DefaultModule"},
      {kModule, "", "",
       "Identify=ModuleID TemplateID=TmplID Title=ModuleTitle Description "
       "UiStateObj=UiStateObjCLSID CLSID"},
      {kEnv, "", "", "Identify=EnvID UIPath=UiPath DefaultCmd DefaultPanel"},
      {kCmd, "", "", "Identify=CmdFileID"},
      {kUi, "MainButton", "MainButton",
       "Icon Command ImageSmall ImageLarge RecentDocDescription OptionCommand ExitCommand "
       "ResourcePath ScenicText"},
      {kUi, "RibbonBar/RibbonTab", "RibbonBar RibbonTabs [0]", "Identify Text Key"},
      {kUi, "ContextRibbonElement/RibbonTab", "ContextRibbonTabs [0]", "Identify Text Key"},
      {kUi, "RibbonBar/RibbonTab/RibbonPanel", "RibbonBar RibbonTabs [0] RibbonPanels [0]",
       "Identify Text ImageSmall ImageLarge ResourcePath LaunchButton"},
      {kUi, "ContextRibbonElement/RibbonPanel", "ContextRibbonPanels [0]", "Identify"},
      {kUi, "RibbonBar/RibbonTab/HiddenButtons", "RibbonBar RibbonTabs [0] HiddenButtons",
       "ImageSmall ImageLarge"},
      {kUi, "RibbonBar/RibbonTab/HiddenButtons/RibbonButton",
       "RibbonBar RibbonTabs [0] HiddenButtons HiddenButtons [0]", "Identify"},
      {kUi, "ContextRibbonElement/RibbonPanel/RibbonButton",
       "ContextRibbonPanels [0] RibbonButtons [0]",
       "Identify Command Text Object=ObjCLSID Menu=MenuID Option"},
      {kUi, "ContextRibbonElement/RibbonPanel/RibbonGroup/RibbonButton",
       "ContextRibbonPanels [0] RibbonButtons [0] GroupButtons [0]", "Identify"},
      {kUi, "QuickAccessTool/QATButton", "QuickAccessTool QATButtons [0]", "Command"},
      {kUi, "CaptionCustomButtons/RibbonButton", "CaptionCustomButtons [0]", "Command"},
      {kUi, "MainMenu", "MainMenu", "Text"},
      {kUi, "MainMenu/MenuItem", "MainMenu MenuItems [0]",
       "Identify Text Command Option Object=ObjCLSID"},
      {kUi, "ContextMenu/Popup/Popup/MenuItem", "ContextMenus [0] MenuItems [0] MenuItems [0]",
       "Identify"},
      {kUi, "ToolBars/ToolBar", "ToolBars [0]",
       "Identify Text LeftOf Dock BmpDef=Image BmpLarge=ImageLarge ResourcePath"},
      {kUi, "ToolBars/ToolBar/Button", "ToolBars [0] Buttons [0]",
       "Identify Command Object=ObjCLSID"},
      {kUi, "StatusBar", "StatusBar", "Image"},
      {kUi, "StatusBar/RibbonButton", "StatusBar Buttons [0]", "Identify"},
      {kUi, "CustomWnds/CustomWnd", "CustomWnds [0]",
       "Identify Text LeftOf Dock Object=ObjCLSID ICON=Icon ResourcePath Size"},
      {kUi, "CommandsUI/CommandUI/Accel", "Accels [0]", "Key Ctrl RibbonKey"},
      {kUi, "CommandsUI/CommandUI/Prompt", "Prompts [0]",
       "Command Text ToolTip Description ToolTipImage"},
      {kUi, "CommandsUI/CommandUI/Instruction", "Instructions [0]", "Ins=Instruction CommandPara"},
      {kUi, "CommandsUI/CommandUI/Image", "CommandImages [0]",
       "ImageSmall ImageLarge ImageType ResourcePath ImageDarkSmall ImageDarkLarge"},
      {kUi, "ToolAccels/AccelGroup", "ToolAccels [0]", "Identify"},
      {kUi, "ToolAccels/AccelGroup/Accel", "ToolAccels [0] Accels [0]",
       "Command Key Ctrl RibbonKey"},
      {kUi, "CommandSearch", "CommandSearch",
       "Text Key ToolTip Description SuppressDisabledCommands MaxResults SearchInHiddenCategories"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.kind.root) + " " + row.around);
    std::string content = "<Unknown/>";
    std::vector<std::pair<std::string, std::string>> expected;
    for (const std::string& field : Split(row.fields, ' ')) {
      const std::vector<std::string> names = Split(field, '=');
      content += Nested(names[0], names[0]);
      expected.emplace_back(names.back(), names[0]);
    }
    const LateObject parser = Put(row.kind.class_name, DocumentOf(row.kind, row.around, content));
    ASSERT_EQ(S_OK, Generate(parser, row.kind.class_name));
    const bool is_own = row.path[0] == '\0';
    const LateObject object = parser.Follow(is_own ? "" : "UI " + std::string(row.path));
    for (const auto& [member, text] : expected) {
      EXPECT_EQ(text, object.Get((is_own ? "Get" : "") + member)) << member;
    }
  }
}

// What was read before a failure stays. Each required element alone is tried with the command line.
TEST_F(DescriptorTest, WhatIsThereDecidesTheResult) {
  const std::string required = kApp.required;
  const std::string whole = "AppID=ID_APP_QUARN AppTmplID=T ProductName=P CompanyName=C & D";
  const std::string services = "<PreProcServices><Service>s</Service></PreProcServices>";
  const std::string part =
      "<Identify>T</Identify><DefEnvironment><Identify>E</Identify></DefEnvironment>";
  const std::string no_modules = part + "<DefModule><Identify>M</Identify></DefModule>" + services;
  const std::string env = "<Identify>I</Identify><UIPath>u</UIPath><DefaultCmd>c</DefaultCmd>";
  const struct {
    const Kind& kind;
    std::string content;
    HRESULT result;
    std::string says;  // of a failure
    std::string told;
  } rows[] = {
      {kApp, required, S_OK, "", whole},
      {kApp, "<Identify/>" + required, S_OK, "", whole},
      {kApp, "<Identify>I</Identify><AppTemplateID> </AppTemplateID>", kInvalidApplication,
       "Application/AppTemplateID is empty", "AppID=I"},
      {kApp, "<AppTemplateID>T</AppTemplateID><ProductName>P</ProductName>", kInvalidApplication,
       "Application/CompanyName is missing", "AppID=ID_APP_QUARN AppTmplID=T ProductName=P"},
      {kApp, required + "<Templates><Template><Path/></Template></Templates>", kInvalidTemplate,
       "Application/Templates", whole},

      {kTmpl, part + "<Modules><Module>m</Module></Modules>", kInvalidTemplate,
       "Template/DefModule/Identify is missing", "TmplID=T DefaultEnv=E"},
      {kTmpl, part + "<DefModule><Identify/></DefModule><Modules><Module>m</Module></Modules>",
       S_OK, "", "TmplID=T ModulePaths=[m] DefaultEnv=E"},
      {kTmpl, no_modules, kInvalidTemplate, "Template/Modules",
       "TmplID=T DefaultEnv=E DefaultModule=M"},
      {kTmpl, no_modules + "<Modules><Module/></Modules>", kInvalidTemplate, "Template/Modules",
       "TmplID=T DefaultEnv=E DefaultModule=M"},

      {kModule, "<Identify>I</Identify><Title>t</Title><Environments><Environment/></Environments>",
       kInvalidModule, "Module/Environments", "ModuleID=I ModuleTitle=t"},

      // Getters of an environment fail while their value is empty; the panel's fails without a
      // command.
      {kEnv, env, S_OK, "", "EnvID=I UiPath=u DefaultCmd=c"},
      {kEnv, "<Identify>I</Identify><UIPath>u</UIPath><DefaultPanel>p</DefaultPanel><DefaultCmd/>",
       kInvalidEnvironment, "Environment/DefaultCmd is empty",
       "EnvID=I UiPath=u DefaultCmd=(0x80004005) DefaultPanel=(0x80004005)"},
      {kEnv, env + "<Commands><Command/></Commands>", kInvalidEnvironment, "Environment/Commands",
       "EnvID=I UiPath=u DefaultCmd=c"},

      {kCmd, "<Identify/>", kInvalidCommand, "Cmd/Identify is empty", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.content);
    const LateObject parser = Put(row.kind.class_name, Nested(row.kind.root, row.content));
    std::string failure;
    EXPECT_EQ(row.result, Generate(parser, row.kind.class_name, &failure));
    EXPECT_EQ(SUCCEEDED(row.result), failure.empty()) << failure;
    EXPECT_NE(std::string::npos, failure.find(row.says)) << failure;
    EXPECT_EQ(FAILED(row.result), failure.find("descriptor.xml: ") != std::string::npos) << failure;
    const std::string own = "ConfigurationPath=" + parser.Get("ConfigurationPath");
    EXPECT_EQ(own + (row.told.empty() ? "" : " ") + row.told, parser.Told());
  }
  // A template that fails on an empty text keeps the one that it has.
  const LateObject parser = Put(kTmpl.class_name, DocumentOf(kTmpl, "", ""));
  ASSERT_EQ(S_OK, Generate(parser, kTmpl.class_name));
  folder_.Write("descriptor.xml", DocumentOf(kTmpl, "", "<Identify/>"));
  EXPECT_EQ(kInvalidTemplate, Generate(parser, kTmpl.class_name));
  EXPECT_EQ("T", parser.Get("GetTmplID"));
}

// In document order, complete entries only; a second run adds to them.
TEST_F(DescriptorTest, ListsAccumulate) {
  const std::string clsid = "<CLSID>{1B2F4A60-9D33-4C41-8F52-0A6E7D21C9B4}</CLSID>";
  const struct {
    const Kind& kind;
    std::string around;
    std::string content;
    const char* member;
    std::string elements;
  } rows[] = {
      {kApp, "Templates",
       "<Template><Path> a.xml </Path><path>no</path><Path>sub\\b.xml</Path></Template>"
       "<template><Path>no</Path></template><Template><Path></Path><Path>c.xml</Path></Template>",
       "GetTmplatePaths", "a.xml sub\\b.xml c.xml"},
      {kApp, "Configurations",
       "<Configuration><CLSID>abc</CLSID><Path>lost</Path></Configuration>"
       "<Configuration><Path>p</Path><LocalName>old</LocalName>" +
           clsid +
           "<LocalName>new</LocalName><PropertyPageCLSID>any text</PropertyPageCLSID>"
           "</Configuration><Configuration>" +
           clsid + "</Configuration><Configuration/><Other/>",
       "GetConfigurations",
       "{CLSID={1B2F4A60-9D33-4C41-8F52-0A6E7D21C9B4} Path=p PropertyPageCLSID=any text "
       "LocalName=new} {CLSID={1B2F4A60-9D33-4C41-8F52-0A6E7D21C9B4}}"},
      {kTmpl, "Modules", "<Module>a.xml</Module><module>no</module><Module> b.xml </Module>",
       "GetModulePaths", "a.xml b.xml"},
      {kTmpl, "PreProcServices", "<Service>not a class</Service><Other>no</Other><Service/>",
       "GetPreServiceCLSIDs", "not a class"},
      {kTmpl, "PostProcServices", "<Service>p</Service>", "GetPostServiceCLSIDs", "p"},
      {kTmpl, "OpenFileTypes",
       "<FileType><FilterName>Drawings</FilterName><FilterExt>*.d</FilterExt></FileType>"
       "<FileType><FilterName>Half</FilterName></FileType>",
       "GetOpenFileTypes", "{FilterName=Drawings FilterExt=*.d}"},
      {kTmpl, "EditObjMap",
       "<Item><EditObjCLSID>c</EditObjCLSID><DbObjIID>i</DbObjIID></Item>"
       "<Item><DbObjIID>i</DbObjIID><EditObjCLSID/></Item>",
       "GetEditObjs", "{DbObjIID=i EditObjCLSID=c}"},
      {kModule, "Environments",
       "<Environment><Path>a</Path><Path/><Path>b</Path></Environment>"
       "<Other><Path>no</Path></Other>",
       "GetEnvPaths", "a b"},
      {kEnv, "Commands",
       "<Command><Path>a</Path></Command><Command><Path>b</Path><Path>c</Path></Command>",
       "GetCmdPaths", "a b c"},
      {kCmd, "Commands",
       "<Group>Draw</Group>"
       "<Command><Identify>line</Identify><CLSID>c</CLSID><Priority>07</Priority>"
       "<LocalName>直线</LocalName><SystemCmd>True</SystemCmd><Property>p</Property>"
       "<AppMode>12abc</AppMode></Command>"
       "<Command><SystemCmd>1</SystemCmd><AppMode>abc</AppMode></Command>"
       "<Unknown/><group>no</group><Group>Edit</Group><Command/>",
       "GetCommands",
       "{IsGroup=-1 GroupName=Draw} {Identify=line CLSID=c Priority=07 LocalName=直线 "
       "SystemCommand=-1 CommandProperty=p AppMode=12} {} {IsGroup=-1 GroupName=Edit} {}"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.around);
    const LateObject parser =
        Put(row.kind.class_name, DocumentOf(row.kind, row.around, row.content));
    ASSERT_EQ(S_OK, Generate(parser, row.kind.class_name));
    EXPECT_EQ("[" + row.elements + "]", parser.Get(row.member));
    ASSERT_EQ(S_OK, Generate(parser, row.kind.class_name));
    EXPECT_EQ("[" + row.elements + " " + row.elements + "]", parser.Get(row.member));
  }
}

// What getters hand out before anything is read, and how they refuse a null place.
TEST_F(DescriptorTest, TextsThatAreUnsetAndPlacesThatAreNull) {
  const struct {
    const char* class_name;
    const char* unset;
    HRESULT without_place;  // of texts but one, and of a user interface
  } rows[] = {{"VeAppParser", "(null)", E_POINTER},
              {"VeTmplParser", "", E_FAIL},
              {"VeModuleParser", "", E_FAIL},
              {"VeEnvParser", "(0x80004005)", E_FAIL},
              {"VeCmdParser", "", E_FAIL},
              {"VeUiParser", "", E_FAIL},
              {"VeTxtTemplateFileParser", "(0x80070057)", E_POINTER}};
  for (const auto& row : rows) {
    const LateObject object(row.class_name);
    const InterfaceInfo& info =
        **std::ranges::find_if(TheLibrary().interfaces, [&](const InterfaceInfo* candidate) {
          return EqualsAscii(candidate->name, "I" + std::string(row.class_name));
        });
    ComPtr<IUnknown> own;
    EXPECT_EQ(S_OK, object.As<IDispatch>()->QueryInterface(*info.iid, own.PutVoid()));
    for (std::size_t i = 0; i < info.members.size(); ++i) {
      const MemberInfo& member = info.members[i];
      const std::string name = ToUtf8(member.name);
      SCOPED_TRACE(row.class_name + (" " + name));
      if (member.parameters.empty() || name == "ConfigurationPath") continue;
      if (!member.parameters.back().IsRetval()) continue;
      const ValueType& type = member.parameters.back().type;
      const bool is_text = type.type == VT_BSTR && !type.is_array;
      const std::vector<std::string> indexes(member.parameters.size() - 1, "9");
      if (is_text) {
        EXPECT_EQ(row.unset, object.Get(name, indexes));
      }
      std::vector<Slot> slots(member.parameters.size(), Slot{});
      slots.back().is_missing = true;
      const bool is_odd = (is_text && name != "GetCLSID") || name == "UI";
      EXPECT_EQ(is_odd ? row.without_place : E_POINTER,
                CallNullable(info, own.Get(), i, slots.data()));
    }
  }
  const LateObject without_panel = Put(kEnv.class_name, DocumentOf(kEnv, "", ""));
  ASSERT_EQ(S_OK, Generate(without_panel, kEnv.class_name));
  EXPECT_EQ("(null)", without_panel.Get("GetDefaultPanel"));
}

TEST_F(DescriptorTest, AFileThatCannotBeReadSaysWhy) {
  for (const Kind& kind : {kApp, kTmpl, kModule, kEnv, kCmd, kUi}) {
    const std::string name = kind.class_name;
    const LateObject parser = Put(name, "<A>\n<B>x</b>\n</A>");
    const auto expect = [&](const LateObject& object, const char* says) {
      std::string failure;
      EXPECT_EQ(kDocumentNotLoaded, Generate(object, name, &failure)) << name;
      EXPECT_NE(std::string::npos, failure.find(says)) << failure;
    };
    expect(LateObject(name), "put ConfigurationPath first");
    expect(parser, "descriptor.xml:2:");
    EXPECT_EQ(S_OK, parser.Put("ConfigurationPath", ToUtf8(folder_.Name("none.xml"))));
    expect(parser, "none.xml");
  }
  std::string failure;
  EXPECT_EQ(kInvalidUserInterface, Generate(Put("VeUiParser", "<ui/>"), "VeUiParser", &failure));
  EXPECT_NE("", failure);
}

}  // namespace
}  // namespace sab::testing
