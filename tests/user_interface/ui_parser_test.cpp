// What the elements of a user-interface file say beyond plain texts.

#include "framework/descriptor_test.h"

namespace sab::testing {
namespace {

class UiParserTest : public DescriptorTest {
 protected:
  // The root that a file of this content gives.
  LateObject Generated(const std::string& content) const {
    const LateObject parser = Put("VeUiParser", "<UI>" + content + "</UI>");
    EXPECT_EQ(S_OK, Generate(parser, "VeUiParser"));
    return parser.Follow("UI");
  }
};

TEST_F(UiParserTest, FlagsAndNumbersHaveARuleEach) {
  constexpr char kButton[] = "StatusBar/RibbonButton";
  constexpr char kFirstButton[] = "StatusBar Buttons [0]";
  constexpr char kPanel[] = "ContextRibbonElement/RibbonPanel";
  constexpr char kFirstOfPanel[] = "ContextRibbonPanels [0] RibbonButtons [0]";
  const struct {
    const char* around;
    const char* content;
    const char* path;
    const char* values;
  } rows[] = {
      {kButton, "", kFirstButton, "IsLargeImage=0 IsVisible=-1 Width=0 AppMode=-1"},
      {kButton, "<LargeImage>1</LargeImage>", kFirstButton, "IsLargeImage=-1"},
      {kButton, "<LargeImage>true</LargeImage>", kFirstButton, "IsLargeImage=0"},
      {kButton, "<IsVisible>false</IsVisible>", kFirstButton, "IsVisible=-1"},
      {kButton, "<IsVisible>0</IsVisible>", kFirstButton, "IsVisible=0"},
      {kButton, "<Width>120px</Width>", kFirstButton, "Width=120"},
      {kButton, "<AppMode>abc</AppMode>", kFirstButton, "AppMode=0"},
      {kPanel, "<RibbonGroup/>", kFirstOfPanel, "IsGroup=-1"},
      {kPanel, "<RibbonButton/>", kFirstOfPanel, "IsGroup=0 IsSeparator=0"},
      {kPanel, "<Separator><Text>t</Text></Separator>", kFirstOfPanel,
       "IsSeparator=-1 Text=(null)"},
      {"MainMenu", "<Popup/>", "MainMenu MenuItems [0]", "IsPopup=-1"},
      {"MainMenu", "<MenuItem/>", "MainMenu MenuItems [0]", "IsPopup=0"},
      {"ToolBars/ToolBar", "<AppMode>5</AppMode>", "ToolBars [0]", "AppMode=-1"},
      {"ToolBars/ToolBar", "<DropDown> T2 </DropDown>", "ToolBars [0] Buttons [0]",
       "IsDropDown=-1 SubToolBarID=T2"},
      {"CustomWnds/CustomWnd", "<Icon>i</Icon>", "CustomWnds [0]", "Icon=(null)"},
      {"IMenu", "<Has>1</Has>", "", "HasIMenu=-1"},
      {"IMenu", "<Has>true</Has>", "", "HasIMenu=0"},
      {"IMenu", "<Has>1</Has><Has>0</Has>", "", "HasIMenu=0"},
      {"RibbonMinimizeButton", "<Enable>1</Enable>", "", "RibbonMinimizeButton=-1"},
      {"CommandSearch", "<Enable>TrUe</Enable>", "CommandSearch", "Enable=-1 Width=-1"},
      {"CommandSearch", "<Enable>1</Enable>", "CommandSearch", "Enable=-1"},
      {"CommandSearch", "<Enable>1</Enable><Enable>yes</Enable>", "CommandSearch", "Enable=0"},
      {"CommandSearch", "<MaxResults>08</MaxResults>", "CommandSearch", "MaxResults=08"},
      {"CommandsUI",
       "<CommandUI><Command>c</Command></CommandUI>"
       "<CommandUI><Accel/><Command>d</Command></CommandUI>",
       "Accels [0]", "Command=(null)"},
      {"CommandsUI/CommandUI", "<Command>c</Command><Prompt/>", "Prompts [0]", "Command=c"},
      {"CommandsUI/CommandUI", "<Instruction><Instruction>i</Instruction></Instruction>",
       "Instructions [0]", "Instruction=(null)"},
  };
  for (const auto& row : rows) {
    const LateObject object = Generated(Nested(row.around, row.content)).Follow(row.path);
    for (const std::string& value : Split(row.values, ' ')) {
      const std::string name = Split(value, '=')[0];
      EXPECT_EQ(value, name + "=" + object.Get(name)) << row.around << row.content;
    }
  }
}

TEST_F(UiParserTest, AnEmptyFileGivesEmptyObjectsAndASecondRunAdds) {
  const LateObject ui = Generated("<!-- nothing --><Other/>text");
  for (const char* name :
       {"ContextMenus", "ToolBars", "CustomWnds", "Accels", "ToolAccels", "Prompts", "Instructions",
        "ContextRibbonTabs", "ContextRibbonPanels", "CommandImages", "CaptionCustomButtons"}) {
    EXPECT_EQ("[]", ui.Get(name)) << name;
  }
  const LateObject parser = Put("VeUiParser",
                                "<UI><ContextMenu><MenuItem/><Popup/></ContextMenu>"
                                "<ToolBars><ToolBar/></ToolBars><ToolBars><ToolBar/></ToolBars>"
                                "</UI>");
  const LateObject root = parser.Follow("UI");
  for (const char* runs : {"1", "2"}) {
    EXPECT_EQ(S_OK, Generate(parser, "VeUiParser"));
    EXPECT_EQ(runs, root.Follow("ContextMenus").Get("Count"));
    EXPECT_EQ(std::to_string(2 * std::stoi(runs)), root.Follow("ToolBars").Get("Count"));
  }
}

}  // namespace
}  // namespace sab::testing
