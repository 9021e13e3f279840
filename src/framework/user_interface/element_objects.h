#pragma once

#include "common/collection.h"
#include "framework/element_objects.h"
#include "server/owned_object.h"

namespace sab {

// The element objects of a user interface. AppMode is the host's own number; -1 while the file
// gives none.

struct PrsRibbonButtonFields {
  Bstr Identify;
  Bstr Command;
  VARIANT_BOOL IsLargeImage = VARIANT_FALSE;
  Bstr ObjCLSID;
  Bstr MenuID;
  LONG Width = 0;
  VARIANT_BOOL IsGroup = VARIANT_FALSE;
  VARIANT_BOOL IsSeparator = VARIANT_FALSE;
  VARIANT_BOOL IsVisible = VARIANT_TRUE;
  OwnedObject<coclass::VePrsRibbonButtonColl> GroupButtons;
  Bstr Text;
  Bstr Option;
  int AppMode = -1;
};
using CVePrsRibbonButton = Component<coclass::VePrsRibbonButton, PrsRibbonButtonFields>;
using CVePrsRibbonButtonColl = Collection<coclass::VePrsRibbonButtonColl, IVePrsRibbonButton>;

struct PrsRibbonPanelFields {
  Bstr Identify;
  Bstr Text;
  Bstr ImageSmall;
  Bstr ImageLarge;
  OwnedObject<coclass::VePrsRibbonButtonColl> RibbonButtons;
  Bstr ResourcePath;
  Bstr LaunchButton;
  int AppMode = -1;
};
using CVePrsRibbonPanel = Component<coclass::VePrsRibbonPanel, PrsRibbonPanelFields>;
using CVePrsRibbonPanelColl = Collection<coclass::VePrsRibbonPanelColl, IVePrsRibbonPanel>;

struct PrsHiddenButtonsFields {
  Bstr ImageSmall;
  Bstr ImageLarge;
  OwnedObject<coclass::VePrsRibbonButtonColl> HiddenButtons;
};
using CVePrsHiddenButtons = Component<coclass::VePrsHiddenButtons, PrsHiddenButtonsFields>;

struct PrsRibbonTabFields {
  Bstr Identify;
  Bstr Text;
  Bstr Key;
  OwnedObject<coclass::VePrsRibbonPanelColl> RibbonPanels;
  OwnedObject<coclass::VePrsHiddenButtons> HiddenButtons;
  int AppMode = -1;
};
using CVePrsRibbonTab = Component<coclass::VePrsRibbonTab, PrsRibbonTabFields>;
using CVePrsRibbonTabColl = Collection<coclass::VePrsRibbonTabColl, IVePrsRibbonTab>;

struct PrsRibbonBarFields {
  OwnedObject<coclass::VePrsRibbonTabColl> RibbonTabs;
};
using CVePrsRibbonBar = Component<coclass::VePrsRibbonBar, PrsRibbonBarFields>;

struct PrsQuickAccessToolFields {
  OwnedObject<coclass::VePrsRibbonButtonColl> QATButtons;
};
using CVePrsQuickAccessTool = Component<coclass::VePrsQuickAccessTool, PrsQuickAccessToolFields>;

struct PrsMainButtonFields {
  Bstr Icon;
  Bstr Command;
  Bstr ImageSmall;
  Bstr ImageLarge;
  Bstr RecentDocDescription;
  Bstr OptionCommand;
  Bstr ExitCommand;
  Bstr ResourcePath;
  Bstr ScenicText;
};
using CVePrsMainButton = Component<coclass::VePrsMainButton, PrsMainButtonFields>;

struct PrsMenuItemFields {
  Bstr Identify;
  Bstr Text;
  Bstr Command;
  Bstr Option;
  Bstr ObjCLSID;
  VARIANT_BOOL IsSeparator = VARIANT_FALSE;
  VARIANT_BOOL IsPopup = VARIANT_FALSE;
  OwnedObject<coclass::VePrsMenuItemColl> MenuItems;
  int AppMode = -1;
};
using CVePrsMenuItem = Component<coclass::VePrsMenuItem, PrsMenuItemFields>;
using CVePrsMenuItemColl = Collection<coclass::VePrsMenuItemColl, IVePrsMenuItem>;

struct PrsMainMenuFields {
  Bstr Text;
  OwnedObject<coclass::VePrsMenuItemColl> MenuItems;
};
using CVePrsMainMenu = Component<coclass::VePrsMainMenu, PrsMainMenuFields>;

struct PrsToolBarButtonFields {
  Bstr Identify;
  Bstr Command;
  Bstr ObjCLSID;
  VARIANT_BOOL IsSeparator = VARIANT_FALSE;
  VARIANT_BOOL IsDropDown = VARIANT_FALSE;
  OwnedObject<coclass::VePrsToolBarButtonColl> Buttons;
  Bstr SubToolBarID;
  int AppMode = -1;
};
using CVePrsToolBarButton = Component<coclass::VePrsToolBarButton, PrsToolBarButtonFields>;
using CVePrsToolBarButtonColl = Collection<coclass::VePrsToolBarButtonColl, IVePrsToolBarButton>;

struct PrsToolBarFields {
  Bstr Identify;
  Bstr Text;
  Bstr LeftOf;
  Bstr Dock;
  Bstr Image;
  OwnedObject<coclass::VePrsToolBarButtonColl> Buttons;
  Bstr ResourcePath;
  Bstr ImageLarge;
  int AppMode = -1;
};
using CVePrsToolBar = Component<coclass::VePrsToolBar, PrsToolBarFields>;
using CVePrsToolBarColl = Collection<coclass::VePrsToolBarColl, IVePrsToolBar>;

struct PrsStatusBarFields {
  Bstr Image;
  OwnedObject<coclass::VePrsRibbonButtonColl> Buttons;
};
using CVePrsStatusBar = Component<coclass::VePrsStatusBar, PrsStatusBarFields>;

struct PrsCustomWndFields {
  Bstr Identify;
  Bstr Text;
  Bstr LeftOf;
  Bstr Dock;
  Bstr ObjCLSID;
  Bstr Icon;
  Bstr ResourcePath;
  Bstr Size;
  int AppMode = -1;
};
using CVePrsCustomWnd = Component<coclass::VePrsCustomWnd, PrsCustomWndFields>;
using CVePrsCustomWndColl = Collection<coclass::VePrsCustomWndColl, IVePrsCustomWnd>;

struct PrsAccelGroupFields {
  Bstr Identify;
  OwnedObject<coclass::VePrsAccelColl> Accels;
};
using CVePrsAccelGroup = Component<coclass::VePrsAccelGroup, PrsAccelGroupFields>;
using CVePrsAccelGroupColl = Collection<coclass::VePrsAccelGroupColl, IVePrsAccelGroup>;

struct PrsPromptFields {
  Bstr Command;
  Bstr Text;
  Bstr ToolTip;
  Bstr Description;
  Bstr ToolTipImage;
};
using CVePrsPrompt = Component<coclass::VePrsPrompt, PrsPromptFields>;
using CVePrsPromptColl = Collection<coclass::VePrsPromptColl, IVePrsPrompt>;

struct PrsInstructionFields {
  Bstr Command;
  Bstr Instruction;
  Bstr CommandPara;
};
using CVePrsInstruction = Component<coclass::VePrsInstruction, PrsInstructionFields>;
using CVePrsInstructionColl = Collection<coclass::VePrsInstructionColl, IVePrsInstruction>;

struct PrsCommandImageFields {
  Bstr Command;
  Bstr ImageSmall;
  Bstr ImageLarge;
  Bstr ImageType;
  Bstr ResourcePath;
  Bstr ImageDarkSmall;
  Bstr ImageDarkLarge;
};
using CVePrsCommandImage = Component<coclass::VePrsCommandImage, PrsCommandImageFields>;
using CVePrsCommandImageColl = Collection<coclass::VePrsCommandImageColl, IVePrsCommandImage>;

struct PrsCommandSearchFields {
  VARIANT_BOOL Enable = VARIANT_FALSE;
  Bstr Text;
  Bstr Key;
  Bstr ToolTip;
  Bstr Description;
  int Width = -1;
  Bstr SuppressDisabledCommands;
  Bstr MaxResults;
  Bstr SearchInHiddenCategories;
  int AppMode = -1;
};
using CVePrsCommandSearch = Component<coclass::VePrsCommandSearch, PrsCommandSearchFields>;

/// The root. Its sub-objects are created in this order.
struct PrsUIFields {
  OwnedObject<coclass::VePrsMainMenu> MainMenu;
  OwnedObject<coclass::VePrsMainButton> MainButton;
  OwnedObject<coclass::VePrsQuickAccessTool> QuickAccessTool;
  OwnedObject<coclass::VePrsRibbonBar> RibbonBar;
  OwnedObject<coclass::VePrsMenuItemColl> ContextMenus;
  OwnedObject<coclass::VePrsToolBarColl> ToolBars;
  OwnedObject<coclass::VePrsStatusBar> StatusBar;
  OwnedObject<coclass::VePrsCustomWndColl> CustomWnds;
  OwnedObject<coclass::VePrsAccelColl> Accels;
  OwnedObject<coclass::VePrsAccelGroupColl> ToolAccels;
  OwnedObject<coclass::VePrsPromptColl> Prompts;
  OwnedObject<coclass::VePrsInstructionColl> Instructions;
  OwnedObject<coclass::VePrsRibbonTabColl> ContextRibbonTabs;
  OwnedObject<coclass::VePrsRibbonPanelColl> ContextRibbonPanels;
  OwnedObject<coclass::VePrsCommandImageColl> CommandImages;
  OwnedObject<coclass::VePrsCommandSearch> CommandSearch;
  OwnedObject<coclass::VePrsRibbonButtonColl> CaptionCustomButtons;
  VARIANT_BOOL HasIMenu = VARIANT_FALSE;
  VARIANT_BOOL RibbonMinimizeButton = VARIANT_FALSE;
};
using CVePrsUI = Component<coclass::VePrsUI, PrsUIFields>;

}  // namespace sab
