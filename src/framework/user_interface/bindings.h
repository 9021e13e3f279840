#pragma once

#include <SabXmlParser.h>

#include "formats/user_interface.h"
#include "framework/make.h"
#include "framework/user_interface/element_objects.h"
#include "generated/coclasses.h"

// Where the elements of a user-interface file go, and which objects they make. Values go straight
// into objects of our own classes, and through the setters into those of a host.

namespace sab {

// --- ribbon ---

using RibbonGroup = New<coclass::VePrsRibbonButton, Raised<&IVePrsRibbonButton::put_IsGroup>>;
using RibbonSeparator =
    New<coclass::VePrsRibbonButton, Raised<&IVePrsRibbonButton::put_IsSeparator>>;

struct RibbonButton
    : Bound<formats::kRibbonButton, Bind<"Identify", &IVePrsRibbonButton::put_Identify>,
            Bind<"Command", &IVePrsRibbonButton::put_Command>,
            Bind<"Text", &IVePrsRibbonButton::put_Text>,
            Bind<"LargeImage", &IVePrsRibbonButton::put_IsLargeImage>,
            Bind<"IsVisible", &IVePrsRibbonButton::put_IsVisible>,
            Bind<"Object", &IVePrsRibbonButton::put_ObjCLSID>,
            Bind<"Menu", &IVePrsRibbonButton::put_MenuID>,
            Bind<"Width", &IVePrsRibbonButton::put_Width>,
            Bind<"Option", &IVePrsRibbonButton::put_Option>,
            Bind<"AppMode", &IVePrsRibbonButton::put_AppMode>,
            Each<"RibbonButton", New<coclass::VePrsRibbonButton>,
                 &IVePrsRibbonButton::get_GroupButtons, RibbonButton>,
            Each<"Separator", RibbonSeparator, &IVePrsRibbonButton::get_GroupButtons>> {};

struct RibbonPanel
    : Bound<formats::kRibbonPanel, Bind<"Identify", &IVePrsRibbonPanel::put_Identify>,
            Bind<"Text", &IVePrsRibbonPanel::put_Text>,
            Bind<"ImageSmall", &IVePrsRibbonPanel::put_ImageSmall>,
            Bind<"ImageLarge", &IVePrsRibbonPanel::put_ImageLarge>,
            Bind<"ResourcePath", &IVePrsRibbonPanel::put_ResourcePath>,
            Bind<"AppMode", &IVePrsRibbonPanel::put_AppMode>,
            Bind<"LaunchButton", &IVePrsRibbonPanel::put_LaunchButton>,
            Each<"RibbonGroup", RibbonGroup, &IVePrsRibbonPanel::get_RibbonButtons, RibbonButton>,
            Each<"RibbonButton", New<coclass::VePrsRibbonButton>,
                 &IVePrsRibbonPanel::get_RibbonButtons, RibbonButton>,
            Each<"Separator", RibbonSeparator, &IVePrsRibbonPanel::get_RibbonButtons>> {};

struct RibbonTab
    : Bound<formats::kRibbonTab, Bind<"Identify", &IVePrsRibbonTab::put_Identify>,
            Bind<"Text", &IVePrsRibbonTab::put_Text>, Bind<"Key", &IVePrsRibbonTab::put_Key>,
            Bind<"AppMode", &IVePrsRibbonTab::put_AppMode>,
            Each<"RibbonPanel", New<coclass::VePrsRibbonPanel>, &IVePrsRibbonTab::get_RibbonPanels,
                 RibbonPanel>,
            Into<"HiddenButtons", &IVePrsRibbonTab::get_HiddenButtons,
                 Bind<"ImageSmall", &IVePrsHiddenButtons::put_ImageSmall>,
                 Bind<"ImageLarge", &IVePrsHiddenButtons::put_ImageLarge>,
                 Each<"RibbonButton", New<coclass::VePrsRibbonButton>,
                      &IVePrsHiddenButtons::get_HiddenButtons, RibbonButton>>> {};

// --- menus and toolbars ---

using Popup = New<coclass::VePrsMenuItem, Raised<&IVePrsMenuItem::put_IsPopup>>;
using MenuSeparator = New<coclass::VePrsMenuItem, Raised<&IVePrsMenuItem::put_IsSeparator>>;

struct MenuItem
    : Bound<formats::kMenuItem, Bind<"Identify", &IVePrsMenuItem::put_Identify>,
            Bind<"Text", &IVePrsMenuItem::put_Text>, Bind<"Command", &IVePrsMenuItem::put_Command>,
            Bind<"Option", &IVePrsMenuItem::put_Option>,
            Bind<"Object", &IVePrsMenuItem::put_ObjCLSID>,
            Bind<"AppMode", &IVePrsMenuItem::put_AppMode>,
            Each<"Popup", Popup, &IVePrsMenuItem::get_MenuItems, MenuItem>,
            Each<"MenuItem", New<coclass::VePrsMenuItem>, &IVePrsMenuItem::get_MenuItems, MenuItem>,
            Each<"Separator", MenuSeparator, &IVePrsMenuItem::get_MenuItems>> {};

/// Names the toolbar that it shows by its whole text.
using DropDown = New<coclass::VePrsToolBarButton, OwnText<&IVePrsToolBarButton::put_SubToolBarID>,
                     Raised<&IVePrsToolBarButton::put_IsDropDown>>;

struct ToolBar
    : Bound<formats::kToolBar, Bind<"Identify", &IVePrsToolBar::put_Identify>,
            Bind<"Text", &IVePrsToolBar::put_Text>, Bind<"LeftOf", &IVePrsToolBar::put_LeftOf>,
            Bind<"Dock", &IVePrsToolBar::put_Dock>, Bind<"BmpDef", &IVePrsToolBar::put_Image>,
            Bind<"BmpLarge", &IVePrsToolBar::put_ImageLarge>,
            Bind<"ResourcePath", &IVePrsToolBar::put_ResourcePath>,
            Each<"Button", New<coclass::VePrsToolBarButton>, &IVePrsToolBar::get_Buttons,
                 Bind<"Identify", &IVePrsToolBarButton::put_Identify>,
                 Bind<"Command", &IVePrsToolBarButton::put_Command>,
                 Bind<"Object", &IVePrsToolBarButton::put_ObjCLSID>,
                 Bind<"AppMode", &IVePrsToolBarButton::put_AppMode>>,
            Each<"Separator",
                 New<coclass::VePrsToolBarButton, Raised<&IVePrsToolBarButton::put_IsSeparator>>,
                 &IVePrsToolBar::get_Buttons>,
            Each<"DropDown", DropDown, &IVePrsToolBar::get_Buttons>> {};

// --- commands ---

struct CommandUI
    : Bound<
          formats::kCommandUI, Carry<"Command">,
          Each<"Accel", New<coclass::VePrsAccel, Carried<&IVePrsAccel::put_Command>>,
               &IVePrsUI::get_Accels, Bind<"Key", &IVePrsAccel::put_Key>,
               Bind<"Ctrl", &IVePrsAccel::put_Ctrl>,
               Bind<"RibbonKey", &IVePrsAccel::put_RibbonKey>>,
          Each<"Prompt", New<coclass::VePrsPrompt, Carried<&IVePrsPrompt::put_Command>>,
               &IVePrsUI::get_Prompts, Bind<"Command", &IVePrsPrompt::put_Command>,
               Bind<"Text", &IVePrsPrompt::put_Text>, Bind<"ToolTip", &IVePrsPrompt::put_ToolTip>,
               Bind<"Description", &IVePrsPrompt::put_Description>,
               Bind<"ToolTipImage", &IVePrsPrompt::put_ToolTipImage>>,
          Each<"Instruction",
               New<coclass::VePrsInstruction, Carried<&IVePrsInstruction::put_Command>>,
               &IVePrsUI::get_Instructions, Bind<"Ins", &IVePrsInstruction::put_Instruction>,
               Bind<"CommandPara", &IVePrsInstruction::put_CommandPara>>,
          Each<"Image", New<coclass::VePrsCommandImage, Carried<&IVePrsCommandImage::put_Command>>,
               &IVePrsUI::get_CommandImages,
               Bind<"ImageSmall", &IVePrsCommandImage::put_ImageSmall>,
               Bind<"ImageLarge", &IVePrsCommandImage::put_ImageLarge>,
               Bind<"ImageType", &IVePrsCommandImage::put_ImageType>,
               Bind<"ResourcePath", &IVePrsCommandImage::put_ResourcePath>,
               Bind<"ImageDarkSmall", &IVePrsCommandImage::put_ImageDarkSmall>,
               Bind<"ImageDarkLarge", &IVePrsCommandImage::put_ImageDarkLarge>>> {};

// --- the file ---

struct UserInterface
    : Bound<
          formats::kUserInterface,
          Into<"MainMenu", &IVePrsUI::get_MainMenu, Bind<"Text", &IVePrsMainMenu::put_Text>,
               Each<"Popup", Popup, &IVePrsMainMenu::get_MenuItems, MenuItem>,
               Each<"MenuItem", New<coclass::VePrsMenuItem>, &IVePrsMainMenu::get_MenuItems,
                    MenuItem>,
               Each<"Separator", MenuSeparator, &IVePrsMainMenu::get_MenuItems>>,
          Into<"MainButton", &IVePrsUI::get_MainButton, Bind<"Icon", &IVePrsMainButton::put_Icon>,
               Bind<"Command", &IVePrsMainButton::put_Command>,
               Bind<"ImageSmall", &IVePrsMainButton::put_ImageSmall>,
               Bind<"ImageLarge", &IVePrsMainButton::put_ImageLarge>,
               Bind<"RecentDocDescription", &IVePrsMainButton::put_RecentDocDescription>,
               Bind<"OptionCommand", &IVePrsMainButton::put_OptionCommand>,
               Bind<"ExitCommand", &IVePrsMainButton::put_ExitCommand>,
               Bind<"ResourcePath", &IVePrsMainButton::put_ResourcePath>,
               Bind<"ScenicText", &IVePrsMainButton::put_ScenicText>>,
          Into<"QuickAccessTool", &IVePrsUI::get_QuickAccessTool,
               Each<"QATButton", New<coclass::VePrsRibbonButton>,
                    &IVePrsQuickAccessTool::get_QATButtons, RibbonButton>>,
          Into<"RibbonBar", &IVePrsUI::get_RibbonBar,
               Each<"RibbonTab", New<coclass::VePrsRibbonTab>, &IVePrsRibbonBar::get_RibbonTabs,
                    RibbonTab>>,
          Within<"ContextMenu", Each<"Popup", Popup, &IVePrsUI::get_ContextMenus, MenuItem>>,
          Within<"ContextRibbonElement",
                 Each<"RibbonTab", New<coclass::VePrsRibbonTab>, &IVePrsUI::get_ContextRibbonTabs,
                      RibbonTab>,
                 Each<"RibbonPanel", New<coclass::VePrsRibbonPanel>,
                      &IVePrsUI::get_ContextRibbonPanels, RibbonPanel>>,
          Within<"ToolBars",
                 Each<"ToolBar", New<coclass::VePrsToolBar>, &IVePrsUI::get_ToolBars, ToolBar>>,
          Into<"StatusBar", &IVePrsUI::get_StatusBar, Bind<"Image", &IVePrsStatusBar::put_Image>,
               Each<"RibbonButton", New<coclass::VePrsRibbonButton>, &IVePrsStatusBar::get_Buttons,
                    RibbonButton>>,
          Within<"CustomWnds",
                 Each<"CustomWnd", New<coclass::VePrsCustomWnd>, &IVePrsUI::get_CustomWnds,
                      Bind<"Identify", &IVePrsCustomWnd::put_Identify>,
                      Bind<"Text", &IVePrsCustomWnd::put_Text>,
                      Bind<"LeftOf", &IVePrsCustomWnd::put_LeftOf>,
                      Bind<"Dock", &IVePrsCustomWnd::put_Dock>,
                      Bind<"Object", &IVePrsCustomWnd::put_ObjCLSID>,
                      Bind<"ICON", &IVePrsCustomWnd::put_Icon>,
                      Bind<"ResourcePath", &IVePrsCustomWnd::put_ResourcePath>,
                      Bind<"Size", &IVePrsCustomWnd::put_Size>,
                      Bind<"AppMode", &IVePrsCustomWnd::put_AppMode>>>,
          Within<"CommandsUI", Carrying<"CommandUI", CommandUI>>,
          Within<"ToolAccels",
                 Each<"AccelGroup", New<coclass::VePrsAccelGroup>, &IVePrsUI::get_ToolAccels,
                      Bind<"Identify", &IVePrsAccelGroup::put_Identify>,
                      Each<"Accel", New<coclass::VePrsAccel>, &IVePrsAccelGroup::get_Accels,
                           Bind<"Command", &IVePrsAccel::put_Command>,
                           Bind<"Key", &IVePrsAccel::put_Key>, Bind<"Ctrl", &IVePrsAccel::put_Ctrl>,
                           Bind<"RibbonKey", &IVePrsAccel::put_RibbonKey>>>>,
          Within<"IMenu", Bind<"Has", &IVePrsUI::put_HasIMenu>>,
          Into<"CommandSearch", &IVePrsUI::get_CommandSearch,
               Bind<"Enable", &IVePrsCommandSearch::put_Enable>,
               Bind<"Text", &IVePrsCommandSearch::put_Text>,
               Bind<"Key", &IVePrsCommandSearch::put_Key>,
               Bind<"ToolTip", &IVePrsCommandSearch::put_ToolTip>,
               Bind<"Description", &IVePrsCommandSearch::put_Description>,
               Bind<"Width", &IVePrsCommandSearch::put_Width>,
               Bind<"SuppressDisabledCommands", &IVePrsCommandSearch::put_SuppressDisabledCommands>,
               Bind<"MaxResults", &IVePrsCommandSearch::put_MaxResults>,
               Bind<"SearchInHiddenCategories", &IVePrsCommandSearch::put_SearchInHiddenCategories>,
               Bind<"AppMode", &IVePrsCommandSearch::put_AppMode>>,
          Within<"RibbonMinimizeButton", Bind<"Enable", &IVePrsUI::put_RibbonMinimizeButton>>,
          Within<"CaptionCustomButtons", Each<"RibbonButton", New<coclass::VePrsRibbonButton>,
                                              &IVePrsUI::get_CaptionCustomButtons, RibbonButton>>> {
};

}  // namespace sab
