#pragma once

#include <sabxml/result_codes.h>

#include "formats/rule.h"

namespace sab::formats {

/// A number that every element may have.
inline constexpr Rule kAppMode =
    Int32("AppMode", "Number whose meaning is the host's").Initially("-1");

// --- ribbon ---

inline constexpr std::size_t kRibbonButtonSize = 12;
inline constexpr Rule kRibbonButton[kRibbonButtonSize] = {
    Text("Identify", "Identifier of the button").Defines(Subject::kButton),
    Text("Command", "Command that it runs").RefersTo(Subject::kCommand),
    Text("Text", "Text on it"),
    Value<Type::kOne>("LargeImage", "1 for a large picture").Sticky(),
    Value<Type::kNotZero>("IsVisible", "0 for a hidden button").Sticky(),
    Guid("Object", "Class of the control that replaces the button"),
    Text("Menu", "Menu that it opens").RefersTo(Subject::kMenu),
    Int32("Width", "Width").From(-1),
    Text("Option", "Text for the command"),
    kAppMode,
    Entry("RibbonButton", {kRibbonButton, kRibbonButtonSize}, "A button in this one"),
    Mark("Separator", "Line between the buttons in this one"),
};

inline constexpr Rule kRibbonPanel[] = {
    Text("Identify", "Identifier of the panel").Defines(Subject::kPanel),
    Text("Text", "Title"),
    Image("ImageSmall", "Small pictures of its buttons"),
    Image("ImageLarge", "Large pictures of its buttons"),
    Path("ResourcePath", "Folder of the pictures"),
    kAppMode,
    Text("LaunchButton", "Command of the button in its corner").RefersTo(Subject::kCommand),
    Entry("RibbonGroup", kRibbonButton, "Buttons that belong together"),
    Entry("RibbonButton", kRibbonButton, "A button"),
    Mark("Separator", "Line between buttons"),
};

inline constexpr Rule kHiddenButtons[] = {
    Image("ImageSmall", "Small pictures of the buttons"),
    Image("ImageLarge", "Large pictures of the buttons"),
    Entry("RibbonButton", kRibbonButton, "A button"),
};

inline constexpr Rule kRibbonTab[] = {
    Text("Identify", "Identifier of the tab").Defines(Subject::kTab),
    Text("Text", "Title"),
    Key("Key", "Key that chooses it"),
    kAppMode,
    Entry("RibbonPanel", kRibbonPanel, "A panel"),
    Part("HiddenButtons", kHiddenButtons, "Buttons that are not shown at first"),
};

inline constexpr Rule kRibbonBar[] = {Entry("RibbonTab", kRibbonTab, "A tab")};
inline constexpr Rule kQuickAccessTool[] = {Entry("QATButton", kRibbonButton, "A button")};
inline constexpr Rule kCaptionButtons[] = {Entry("RibbonButton", kRibbonButton, "A button")};
inline constexpr Rule kContextRibbon[] = {
    Entry("RibbonTab", kRibbonTab, "A tab that a host shows when it fits"),
    Entry("RibbonPanel", kRibbonPanel, "A panel that a host shows when it fits"),
};

inline constexpr Rule kMainButton[] = {
    Image("Icon", "Icon of the button"),
    Text("Command", "Command that it runs").RefersTo(Subject::kCommand),
    Image("ImageSmall", "Small picture"),
    Image("ImageLarge", "Large picture"),
    Text("RecentDocDescription", "Heading of the recent documents"),
    Text("OptionCommand", "Command that opens the options").RefersTo(Subject::kCommand),
    Text("ExitCommand", "Command that ends the application").RefersTo(Subject::kCommand),
    Path("ResourcePath", "Folder of the pictures"),
    Text("ScenicText", "Text on the button"),
};

// --- menus ---

inline constexpr std::size_t kMenuItemSize = 9;
inline constexpr Rule kMenuItem[kMenuItemSize] = {
    Text("Identify", "Identifier of the item or menu").Defines(Subject::kMenu),
    Text("Text", "Text that a user sees; & precedes the letter of the key"),
    Text("Command", "Command that it runs").RefersTo(Subject::kCommand),
    Text("Option", "Text for the command"),
    Guid("Object", "Class of the object that replaces the item"),
    kAppMode,
    Entry("Popup", {kMenuItem, kMenuItemSize}, "A menu in the menu, as deep as you like"),
    Entry("MenuItem", {kMenuItem, kMenuItemSize}, "An item"),
    Mark("Separator", "Line between items"),
};

inline constexpr Rule kMainMenu[] = {
    Text("Text", "Title"),
    Entry("Popup", kMenuItem, "A menu"),
    Entry("MenuItem", kMenuItem, "An item"),
    Mark("Separator", "Line between items"),
};
inline constexpr Rule kContextMenu[] = {Entry("Popup", kMenuItem, "A context menu")};

// --- toolbars, status bar, windows ---

inline constexpr Rule kToolBarButton[] = {
    Text("Identify", "Identifier of the button").Defines(Subject::kButton),
    Text("Command", "Command that it runs").RefersTo(Subject::kCommand),
    Guid("Object", "Class of the control that replaces the button"),
    kAppMode,
};
inline constexpr Rule kToolBar[] = {
    Text("Identify", "Identifier of the toolbar").Defines(Subject::kToolbar),
    Text("Text", "Title"),
    Text("LeftOf", "Toolbar that it is to the left of").RefersTo(Subject::kToolbar),
    Text("Dock", "Edge to which it is docked, as the host names it"),
    Image("BmpDef", "Pictures of its buttons").Of("Image"),
    Image("BmpLarge", "Large pictures of its buttons").Of("ImageLarge"),
    Path("ResourcePath", "Folder of the pictures"),
    Entry("Button", kToolBarButton, "A button"),
    Mark("Separator", "Line between buttons"),
    Text("DropDown", "Toolbar that it shows").Each().RefersTo(Subject::kToolbar),
};
inline constexpr Rule kToolBars[] = {Entry("ToolBar", kToolBar, "A toolbar")};

inline constexpr Rule kStatusBar[] = {
    Image("Image", "Pictures of its buttons"),
    Entry("RibbonButton", kRibbonButton, "A button"),
};

inline constexpr Rule kCustomWindow[] = {
    Text("Identify", "Identifier of the window").Defines(Subject::kWindow),
    Text("Text", "Title"),
    Text("LeftOf", "Window that it is to the left of").RefersTo(Subject::kWindow),
    Text("Dock", "Edge to which it is docked, as the host names it"),
    Guid("Object", "Class of the window"),
    Image("ICON", "Icon; in capital letters"),
    Path("ResourcePath", "Folder of the icon"),
    Text("Size", "Size, as the host writes it"),
    kAppMode,
};
inline constexpr Rule kCustomWindows[] = {Entry("CustomWnd", kCustomWindow, "A window")};

// --- what belongs to commands ---

inline constexpr Rule kCommandAccelerator[] = {
    Key("Key", "Key that runs the command"),
    Text("Ctrl", "Whether it is pressed together with Ctrl, as the host writes it"),
    Key("RibbonKey", "Key that chooses the command on the ribbon"),
};
inline constexpr Rule kPrompt[] = {
    Text("Command", "Command, instead of the one around it").RefersTo(Subject::kCommand),
    Text("Text", "Text of the prompt"),
    Text("ToolTip", "Title of the tooltip"),
    Text("Description", "Text of the tooltip"),
    Image("ToolTipImage", "Picture in the tooltip"),
};
inline constexpr Rule kInstruction[] = {
    Text("Ins", "What a user types to run the command").Of("Instruction"),
    Text("CommandPara", "Text for the command"),
};
inline constexpr Rule kCommandImage[] = {
    Image("ImageSmall", "Small picture"),
    Image("ImageLarge", "Large picture"),
    Text("ImageType", "Type of the pictures"),
    Path("ResourcePath", "Folder of the pictures"),
    Image("ImageDarkSmall", "Small picture on a dark ground"),
    Image("ImageDarkLarge", "Large picture on a dark ground"),
};
inline constexpr Rule kCommandUI[] = {
    Text("Command", "Command; it precedes what belongs to it")
        .RefersTo(Subject::kCommand)
        .HoldsForWhatFollows()
        .Expected(),
    Entry("Accel", kCommandAccelerator, "A key of the command"),
    Entry("Prompt", kPrompt, "What a user reads about the command"),
    Entry("Instruction", kInstruction, "What a user types for the command"),
    Entry("Image", kCommandImage, "Pictures of the command"),
};
inline constexpr Rule kCommandsUI[] = {Entry("CommandUI", kCommandUI, "What belongs to a command")};

inline constexpr Rule kGroupAccelerator[] = {
    Text("Command", "Command that the key runs").RefersTo(Subject::kCommand).Expected(),
    Key("Key", "Key that runs the command"),
    Text("Ctrl", "Whether it is pressed together with Ctrl, as the host writes it"),
    Key("RibbonKey", "Key that chooses the command on the ribbon"),
};
inline constexpr Rule kAcceleratorGroup[] = {
    Text("Identify", "Identifier of the group").Defines(Subject::kKeyGroup),
    Entry("Accel", kGroupAccelerator, "A key of a command"),
};
inline constexpr Rule kToolAccelerators[] = {
    Entry("AccelGroup", kAcceleratorGroup, "Keys that are valid together"),
};

inline constexpr Rule kCommandSearch[] = {
    Value<Type::kOneOrTrue>("Enable", "Whether the box is there"),
    Text("Text", "Text in the empty box"),
    Key("Key", "Key that leads to the box"),
    Text("ToolTip", "Title of the tooltip"),
    Text("Description", "Text of the tooltip"),
    Int32("Width", "Width").From(-1).Initially("-1"),
    Text("SuppressDisabledCommands", "Whether disabled commands are left out; kept as text"),
    Text("MaxResults", "How many commands are shown; kept as text"),
    Text("SearchInHiddenCategories", "Whether hidden categories are searched; kept as text"),
    kAppMode,
};

// --- switches ---

inline constexpr Rule kIMenu[] = {
    Value<Type::kOne>("Has", "Whether there is a menu for input methods").Of("HasIMenu"),
};
inline constexpr Rule kMinimizeButton[] = {
    Value<Type::kOne>("Enable", "Whether the ribbon has a button that minimizes it")
        .Of("RibbonMinimizeButton"),
};

// --- the file ---

inline constexpr Rule kUserInterface[] = {
    Part("MainMenu", kMainMenu, "The main menu"),
    Part("MainButton", kMainButton, "The button of the application"),
    Part("QuickAccessTool", kQuickAccessTool, "The toolbar for quick access"),
    Part("RibbonBar", kRibbonBar, "The ribbon"),
    Part("ContextMenu", kContextMenu, "Context menus"),
    Part("ContextRibbonElement", kContextRibbon, "Tabs and panels that a host shows when they fit"),
    Part("ToolBars", kToolBars, "Toolbars"),
    Part("StatusBar", kStatusBar, "The status bar"),
    Part("CustomWnds", kCustomWindows, "Windows that can be docked"),
    Part("CommandsUI", kCommandsUI, "Keys, prompts, instructions and pictures of commands"),
    Part("ToolAccels", kToolAccelerators, "Groups of keys"),
    Part("IMenu", kIMenu, "The menu for input methods"),
    Part("CommandSearch", kCommandSearch, "The box that searches for commands"),
    Part("RibbonMinimizeButton", kMinimizeButton, "The button that minimizes the ribbon"),
    Part("CaptionCustomButtons", kCaptionButtons, "Buttons on the caption of the window"),
};

inline constexpr Document kUserInterfaceDocument = {
    .kind = Kind::kUserInterface,
    .root = "UI",
    .about = "user interface",
    .class_name = "VeUiParser",
    .method = "GenerateUI",
    .result = sabxml::kInvalidUserInterface,
    .content = kUserInterface,
    .help = "Menus, the ribbon, toolbars, windows, keys and texts of an environment",
};

}  // namespace sab::formats
