#include <gtest/gtest.h>

#include <functional>

#include "config/temporary_folder.h"
#include "server/created_object.h"
#include "support/late_value.h"

namespace sab::testing {
namespace {

constexpr HRESULT kInvalidUserInterface = static_cast<HRESULT>(0x84000C05);
constexpr HRESULT kDocumentNotLoaded = static_cast<HRESULT>(0x84000C06);

class UiParserTest : public ::testing::Test {
 protected:
  ComPtr<IVeUiParser> Put(const std::string& document) {
    auto parser = Created<IVeUiParser>(CLSID_VeUiParser);
    folder_.Write("ui.xml", document);
    EXPECT_EQ(S_OK, parser->put_ConfigurationPath(Bstr(folder_.Name("ui.xml")).Get()));
    return parser;
  }
  // The root that a file of this content gives.
  ComPtr<IVePrsUI> Generate(const std::string& content) {
    const auto parser = Put("<UI>" + content + "</UI>");
    EXPECT_EQ(S_OK, parser->GenerateUI()) << TakeErrorDescription();
    ComPtr<IVePrsUI> ui;
    EXPECT_EQ(S_OK, parser->get_UI(ui.Put()));
    return ui;
  }

  TemporaryFolder folder_;
};

// Every element that a kind of object reads, and where its text goes. The text of each is its own
// name, so that a value in the wrong place is seen. The path leads from the root to the object:
// properties, and [0] for the first of a list.
TEST_F(UiParserTest, EveryElementFillsItsProperty) {
  const struct {
    const char* kind;
    const char* around;  // the elements around the object's own
    const char* path;
    const char* fields;  // "Element=Property", the same name where there is no =
  } rows[] = {
      {"main button", "MainButton", "MainButton",
       "Icon Command ImageSmall ImageLarge RecentDocDescription OptionCommand ExitCommand "
       "ResourcePath ScenicText"},
      {"tab", "RibbonBar/RibbonTab", "RibbonBar RibbonTabs [0]", "Identify Text Key"},
      {"context tab", "ContextRibbonElement/RibbonTab", "ContextRibbonTabs [0]",
       "Identify Text Key"},
      {"panel", "RibbonBar/RibbonTab/RibbonPanel", "RibbonBar RibbonTabs [0] RibbonPanels [0]",
       "Identify Text ImageSmall ImageLarge ResourcePath LaunchButton"},
      {"context panel", "ContextRibbonElement/RibbonPanel", "ContextRibbonPanels [0]", "Identify"},
      {"hidden buttons", "RibbonBar/RibbonTab/HiddenButtons",
       "RibbonBar RibbonTabs [0] HiddenButtons", "ImageSmall ImageLarge"},
      {"hidden button", "RibbonBar/RibbonTab/HiddenButtons/RibbonButton",
       "RibbonBar RibbonTabs [0] HiddenButtons HiddenButtons [0]", "Identify"},
      {"ribbon button", "ContextRibbonElement/RibbonPanel/RibbonButton",
       "ContextRibbonPanels [0] RibbonButtons [0]",
       "Identify Command Text Object=ObjCLSID Menu=MenuID Option"},
      {"nested button", "ContextRibbonElement/RibbonPanel/RibbonGroup/RibbonButton",
       "ContextRibbonPanels [0] RibbonButtons [0] GroupButtons [0]", "Identify"},
      {"quick access", "QuickAccessTool/QATButton", "QuickAccessTool QATButtons [0]", "Command"},
      {"caption", "CaptionCustomButtons/RibbonButton", "CaptionCustomButtons [0]", "Command"},
      {"main menu", "MainMenu", "MainMenu", "Text"},
      {"menu item", "MainMenu/MenuItem", "MainMenu MenuItems [0]",
       "Identify Text Command Option Object=ObjCLSID"},
      {"nested item", "ContextMenu/Popup/Popup/MenuItem",
       "ContextMenus [0] MenuItems [0] MenuItems [0]", "Identify"},
      {"toolbar", "ToolBars/ToolBar", "ToolBars [0]",
       "Identify Text LeftOf Dock BmpDef=Image BmpLarge=ImageLarge ResourcePath"},
      {"toolbar button", "ToolBars/ToolBar/Button", "ToolBars [0] Buttons [0]",
       "Identify Command Object=ObjCLSID"},
      {"status bar", "StatusBar", "StatusBar", "Image"},
      {"status button", "StatusBar/RibbonButton", "StatusBar Buttons [0]", "Identify"},
      {"custom window", "CustomWnds/CustomWnd", "CustomWnds [0]",
       "Identify Text LeftOf Dock Object=ObjCLSID ICON=Icon ResourcePath Size"},
      {"accelerator", "CommandsUI/CommandUI/Accel", "Accels [0]", "Key Ctrl RibbonKey"},
      {"prompt", "CommandsUI/CommandUI/Prompt", "Prompts [0]",
       "Command Text ToolTip Description ToolTipImage"},
      {"instruction", "CommandsUI/CommandUI/Instruction", "Instructions [0]",
       "Ins=Instruction CommandPara"},
      {"image", "CommandsUI/CommandUI/Image", "CommandImages [0]",
       "ImageSmall ImageLarge ImageType ResourcePath ImageDarkSmall ImageDarkLarge"},
      {"accelerator group", "ToolAccels/AccelGroup", "ToolAccels [0]", "Identify"},
      {"grouped accelerator", "ToolAccels/AccelGroup/Accel", "ToolAccels [0] Accels [0]",
       "Command Key Ctrl RibbonKey"},
      {"command search", "CommandSearch", "CommandSearch",
       "Text Key ToolTip Description SuppressDisabledCommands MaxResults SearchInHiddenCategories"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.kind);
    std::string content;
    std::vector<std::pair<std::string, std::string>> expected;
    for (const std::string& field : Split(row.fields, ' ')) {
      const std::vector<std::string> names = Split(field, '=');
      content += "<" + names[0] + ">" + names[0] + "</" + names[0] + ">";
      expected.emplace_back(names.back(), names[0]);
    }
    const std::vector<std::string> around = Split(row.around, '/');
    for (auto name = around.rbegin(); name != around.rend(); ++name) {
      content = "<" + *name + "><Unknown/>" + content + "</" + *name + ">";
    }
    const auto ui = Generate(content);
    const LateValue object = LateValue::Of(ui.Get()).Follow(row.path);
    for (const auto& [property, text] : expected) {
      EXPECT_EQ(text, object.Get(property).Text()) << property;
    }
  }
}

TEST_F(UiParserTest, FlagsAndNumbersHaveARuleEach) {
  const struct {
    const char* content;
    const char* path;
    const char* property;
    const char* value;
  } rows[] = {
      {"<StatusBar><RibbonButton/></StatusBar>", "StatusBar Buttons [0]", "IsLargeImage", "0"},
      {"<StatusBar><RibbonButton><LargeImage>1</LargeImage></RibbonButton></StatusBar>",
       "StatusBar Buttons [0]", "IsLargeImage", "-1"},
      {"<StatusBar><RibbonButton><LargeImage>true</LargeImage></RibbonButton></StatusBar>",
       "StatusBar Buttons [0]", "IsLargeImage", "0"},
      {"<StatusBar><RibbonButton><IsVisible>false</IsVisible></RibbonButton></StatusBar>",
       "StatusBar Buttons [0]", "IsVisible", "-1"},
      {"<StatusBar><RibbonButton><IsVisible>0</IsVisible></RibbonButton></StatusBar>",
       "StatusBar Buttons [0]", "IsVisible", "0"},
      {"<StatusBar><RibbonButton><Width>120px</Width></RibbonButton></StatusBar>",
       "StatusBar Buttons [0]", "Width", "120"},
      {"<StatusBar><RibbonButton/></StatusBar>", "StatusBar Buttons [0]", "AppMode", "-1"},
      {"<StatusBar><RibbonButton><AppMode>abc</AppMode></RibbonButton></StatusBar>",
       "StatusBar Buttons [0]", "AppMode", "0"},
      {"<ContextRibbonElement><RibbonPanel><RibbonGroup/></RibbonPanel></ContextRibbonElement>",
       "ContextRibbonPanels [0] RibbonButtons [0]", "IsGroup", "-1"},
      {"<ContextRibbonElement><RibbonPanel><RibbonButton/></RibbonPanel></ContextRibbonElement>",
       "ContextRibbonPanels [0] RibbonButtons [0]", "IsGroup", "0"},
      {"<ContextRibbonElement><RibbonPanel><Separator><Text>t</Text></Separator></RibbonPanel>"
       "</ContextRibbonElement>",
       "ContextRibbonPanels [0] RibbonButtons [0]", "IsSeparator", "-1"},
      {"<MainMenu><Popup/></MainMenu>", "MainMenu MenuItems [0]", "IsPopup", "-1"},
      {"<MainMenu><MenuItem/></MainMenu>", "MainMenu MenuItems [0]", "IsPopup", "0"},
      {"<ToolBars><ToolBar><AppMode>5</AppMode></ToolBar></ToolBars>", "ToolBars [0]", "AppMode",
       "-1"},
      {"<ToolBars><ToolBar><DropDown> T2 </DropDown></ToolBar></ToolBars>",
       "ToolBars [0] Buttons [0]", "IsDropDown", "-1"},
      {"<ToolBars><ToolBar><DropDown> T2 </DropDown></ToolBar></ToolBars>",
       "ToolBars [0] Buttons [0]", "SubToolBarID", "T2"},
      {"<CustomWnds><CustomWnd><Icon>i</Icon></CustomWnd></CustomWnds>", "CustomWnds [0]", "Icon",
       ""},
      {"<IMenu><Has>1</Has></IMenu>", "", "HasIMenu", "-1"},
      {"<IMenu><Has>true</Has></IMenu>", "", "HasIMenu", "0"},
      {"<IMenu><Has>1</Has><Has>0</Has></IMenu>", "", "HasIMenu", "0"},
      {"<RibbonMinimizeButton><Enable>1</Enable></RibbonMinimizeButton>", "",
       "RibbonMinimizeButton", "-1"},
      {"<CommandSearch><Enable>TrUe</Enable></CommandSearch>", "CommandSearch", "Enable", "-1"},
      {"<CommandSearch><Enable>1</Enable></CommandSearch>", "CommandSearch", "Enable", "-1"},
      {"<CommandSearch><Enable>1</Enable><Enable>yes</Enable></CommandSearch>", "CommandSearch",
       "Enable", "0"},
      {"<CommandSearch/>", "CommandSearch", "Width", "-1"},
      {"<CommandSearch><MaxResults>08</MaxResults></CommandSearch>", "CommandSearch", "MaxResults",
       "08"},
      {"<CommandsUI><CommandUI><Command>c</Command></CommandUI>"
       "<CommandUI><Accel/><Command>d</Command></CommandUI></CommandsUI>",
       "Accels [0]", "Command", ""},
      {"<CommandsUI><CommandUI><Command>c</Command><Prompt/></CommandUI></CommandsUI>",
       "Prompts [0]", "Command", "c"},
      {"<CommandsUI><CommandUI><Instruction><Instruction>i</Instruction></Instruction></CommandUI>"
       "</CommandsUI>",
       "Instructions [0]", "Instruction", ""},
  };
  for (const auto& row : rows) {
    const auto ui = Generate(row.content);
    EXPECT_EQ(row.value, LateValue::Of(ui.Get()).Follow(row.path).Get(row.property).Text())
        << row.content;
  }
}

TEST_F(UiParserTest, AnEmptyFileGivesEmptyObjectsAndASecondRunAdds) {
  const auto ui = Generate("<!-- nothing --><Other/>text");
  for (const char* name :
       {"ContextMenus", "ToolBars", "CustomWnds", "Accels", "ToolAccels", "Prompts", "Instructions",
        "ContextRibbonTabs", "ContextRibbonPanels", "CommandImages", "CaptionCustomButtons"}) {
    EXPECT_EQ(0, LateValue::Of(ui.Get()).Get(name).Count()) << name;
  }
  const auto parser =
      Put("<UI><ContextMenu><MenuItem/><Popup/></ContextMenu>"
          "<ToolBars><ToolBar/></ToolBars><ToolBars><ToolBar/></ToolBars></UI>");
  ComPtr<IVePrsUI> root;
  ASSERT_EQ(S_OK, parser->get_UI(root.Put()));
  for (const int runs : {1, 2}) {
    EXPECT_EQ(S_OK, parser->GenerateUI());
    EXPECT_EQ(runs, LateValue::Of(root.Get()).Get("ContextMenus").Count());
    EXPECT_EQ(2 * runs, LateValue::Of(root.Get()).Get("ToolBars").Count());
  }
}

TEST_F(UiParserTest, WhatIsNoUserInterfaceIsRefused) {
  EXPECT_EQ(kInvalidUserInterface, Put("<ui/>")->GenerateUI());
  EXPECT_NE("", TakeErrorDescription());
  EXPECT_EQ(kDocumentNotLoaded, Put("<UI>")->GenerateUI());
  EXPECT_EQ(kDocumentNotLoaded, Created<IVeUiParser>(CLSID_VeUiParser)->GenerateUI());
  EXPECT_EQ(E_FAIL, Put("<UI/>")->get_UI(nullptr));
  EXPECT_EQ(E_POINTER, Generate("")->get_CommandSearch(nullptr));
  EXPECT_EQ(E_POINTER, Generate("")->get_CaptionCustomButtons(nullptr));
}

}  // namespace
}  // namespace sab::testing
