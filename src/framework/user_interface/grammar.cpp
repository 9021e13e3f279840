#include "framework/user_interface/grammar.h"

#include <SabXmlParser.h>

#include "coclasses.h"
#include "common/conversions.h"

// The user-interface file as tables: which elements an element may hold, where their texts go, and
// which objects they make. Values are put through the interfaces, since a host may have put a class
// of its own in the place of ours.

namespace sab {
namespace {

// --- what a member pointer belongs to ---

template <class Member>
struct MemberOf;
template <class Interface_, class Argument_>
struct MemberOf<HRESULT (STDMETHODCALLTYPE Interface_::*)(Argument_)> {
  using Interface = Interface_;
  using Argument = Argument_;
};

template <auto kMember>
auto& As(IDispatch& object) {
  return static_cast<typename MemberOf<decltype(kMember)>::Interface&>(object);
}

void CheckPut(HRESULT result) { Check(result, "a value of the user interface could not be put"); }

// --- values ---

template <auto kPut>
void PutText(ReadingContext& context, IDispatch& owner) {
  CheckPut((As<kPut>(owner).*kPut)(context.value.Set(context.text)));
}

template <auto kPut>
void PutNumber(ReadingContext& context, IDispatch& owner) {
  CheckPut((As<kPut>(owner).*kPut)(ParseInt(context.text)));
}

// "1" sets the flag; any other text leaves it as it is.
template <auto kPut>
void PutTrueForOne(ReadingContext& context, IDispatch& owner) {
  if (EqualsAscii(context.text, "1")) CheckPut((As<kPut>(owner).*kPut)(VARIANT_TRUE));
}

// "0" clears the flag; any other text leaves it as it is.
template <auto kPut>
void PutFalseForZero(ReadingContext& context, IDispatch& owner) {
  if (EqualsAscii(context.text, "0")) CheckPut((As<kPut>(owner).*kPut)(VARIANT_FALSE));
}

// True for "1" alone, else false.
template <auto kPut>
void PutWhetherOne(ReadingContext& context, IDispatch& owner) {
  const bool is_one = EqualsAscii(context.text, "1");
  CheckPut((As<kPut>(owner).*kPut)(is_one ? VARIANT_TRUE : VARIANT_FALSE));
}

// True for "1" and for "true" in any letter case, else false.
template <auto kPut>
void PutWhetherOneOrTrue(ReadingContext& context, IDispatch& owner) {
  const bool is_true =
      EqualsAscii(context.text, "1") || EqualsAsciiIgnoringCase(context.text, "true");
  CheckPut((As<kPut>(owner).*kPut)(is_true ? VARIANT_TRUE : VARIANT_FALSE));
}

void NameCommand(ReadingContext& context, IDispatch&) { context.command.Assign(context.text); }

// --- objects ---

template <class Coclass>
ComPtr<IDispatch> Make(ReadingContext& context, IDispatch&, const ConfigElement&) {
  return ComPtr<IDispatch>(context.creator.Create<Coclass>().Get());
}

template <class Coclass, auto kPutFlag>
ComPtr<IDispatch> MakeFlagged(ReadingContext& context, IDispatch&, const ConfigElement&) {
  const auto made = context.creator.Create<Coclass>();
  CheckPut((made.Get()->*kPutFlag)(VARIANT_TRUE));
  return ComPtr<IDispatch>(made.Get());
}

template <class Coclass, auto kPutCommand>
ComPtr<IDispatch> MakeForCommand(ReadingContext& context, IDispatch&, const ConfigElement&) {
  const auto made = context.creator.Create<Coclass>();
  CheckPut((made.Get()->*kPutCommand)(context.command.Get()));
  return ComPtr<IDispatch>(made.Get());
}

// A drop-down names the toolbar that it shows by its whole text.
ComPtr<IDispatch> MakeDropDown(ReadingContext& context, IDispatch&, const ConfigElement& element) {
  const auto made = context.creator.Create<coclass::VePrsToolBarButton>();
  element.ReadText(context.text);
  CheckPut(made->put_SubToolBarID(context.value.Set(context.text)));
  CheckPut(made->put_IsDropDown(VARIANT_TRUE));
  return ComPtr<IDispatch>(made.Get());
}

// Leads to an object that the owner has already.
template <auto kGet>
ComPtr<IDispatch> Lead(ReadingContext&, IDispatch& owner, const ConfigElement&) {
  std::remove_pointer_t<typename MemberOf<decltype(kGet)>::Argument> object = nullptr;
  Check((As<kGet>(owner).*kGet)(&object), "an object of the user interface could not be had");
  if (!object) throw ComError(E_POINTER, "an object of the user interface could not be created");
  ComPtr<IDispatch> led;
  led.Attach(object);
  return led;
}

// A section whose elements belong to the owner itself.
ComPtr<IDispatch> Stay(ReadingContext&, IDispatch& owner, const ConfigElement&) {
  return ComPtr<IDispatch>(&owner);
}

// The entries of one command: no name is carried over from the one before.
ComPtr<IDispatch> StartCommand(ReadingContext& context, IDispatch& owner, const ConfigElement&) {
  context.command = Bstr();
  return ComPtr<IDispatch>(&owner);
}

template <class Coll, class Item_>
Item_* ItemArgument(HRESULT (STDMETHODCALLTYPE Coll::*)(Item_*, LONG_PTR*));

// Appends to the list that the owner hands out.
template <auto kGetList>
void AppendTo(IDispatch& owner, IDispatch& child) {
  using Coll =
      std::remove_pointer_t<std::remove_pointer_t<typename MemberOf<decltype(kGetList)>::Argument>>;
  using Item = std::remove_pointer_t<decltype(ItemArgument(&Coll::AddTail))>;
  ComPtr<Coll> list;
  Check((As<kGetList>(owner).*kGetList)(list.Put()), "a list of the user interface failed");
  if (!list) throw ComError(E_POINTER, "a list of the user interface could not be created");
  Check(list->AddTail(static_cast<Item*>(&child), nullptr),
        "an element of the user interface could not be added to its list");
}

// --- ribbon ---

extern const ElementGrammar kRibbonButton;

constexpr ValueRule kRibbonButtonValues[] = {
    {"Identify", PutText<&IVePrsRibbonButton::put_Identify>},
    {"Command", PutText<&IVePrsRibbonButton::put_Command>},
    {"Text", PutText<&IVePrsRibbonButton::put_Text>},
    {"LargeImage", PutTrueForOne<&IVePrsRibbonButton::put_IsLargeImage>},
    {"IsVisible", PutFalseForZero<&IVePrsRibbonButton::put_IsVisible>},
    {"Object", PutText<&IVePrsRibbonButton::put_ObjCLSID>},
    {"Menu", PutText<&IVePrsRibbonButton::put_MenuID>},
    {"Width", PutNumber<&IVePrsRibbonButton::put_Width>},
    {"Option", PutText<&IVePrsRibbonButton::put_Option>},
    {"AppMode", PutNumber<&IVePrsRibbonButton::put_AppMode>},
};

constexpr auto kMakeRibbonButton = Make<coclass::VePrsRibbonButton>;
constexpr auto kMakeRibbonGroup =
    MakeFlagged<coclass::VePrsRibbonButton, &IVePrsRibbonButton::put_IsGroup>;
constexpr auto kMakeRibbonSeparator =
    MakeFlagged<coclass::VePrsRibbonButton, &IVePrsRibbonButton::put_IsSeparator>;

constexpr ChildRule kRibbonButtonChildren[] = {
    {"RibbonButton", &kRibbonButton, kMakeRibbonButton,
     AppendTo<&IVePrsRibbonButton::get_GroupButtons>},
    {"Separator", nullptr, kMakeRibbonSeparator, AppendTo<&IVePrsRibbonButton::get_GroupButtons>},
};
const ElementGrammar kRibbonButton = {kRibbonButtonValues, kRibbonButtonChildren};

constexpr ValueRule kRibbonPanelValues[] = {
    {"Identify", PutText<&IVePrsRibbonPanel::put_Identify>},
    {"Text", PutText<&IVePrsRibbonPanel::put_Text>},
    {"ImageSmall", PutText<&IVePrsRibbonPanel::put_ImageSmall>},
    {"ImageLarge", PutText<&IVePrsRibbonPanel::put_ImageLarge>},
    {"ResourcePath", PutText<&IVePrsRibbonPanel::put_ResourcePath>},
    {"AppMode", PutNumber<&IVePrsRibbonPanel::put_AppMode>},
    {"LaunchButton", PutText<&IVePrsRibbonPanel::put_LaunchButton>},
};
constexpr ChildRule kRibbonPanelChildren[] = {
    {"RibbonGroup", &kRibbonButton, kMakeRibbonGroup,
     AppendTo<&IVePrsRibbonPanel::get_RibbonButtons>},
    {"RibbonButton", &kRibbonButton, kMakeRibbonButton,
     AppendTo<&IVePrsRibbonPanel::get_RibbonButtons>},
    {"Separator", nullptr, kMakeRibbonSeparator, AppendTo<&IVePrsRibbonPanel::get_RibbonButtons>},
};
const ElementGrammar kRibbonPanel = {kRibbonPanelValues, kRibbonPanelChildren};

constexpr ValueRule kHiddenButtonsValues[] = {
    {"ImageSmall", PutText<&IVePrsHiddenButtons::put_ImageSmall>},
    {"ImageLarge", PutText<&IVePrsHiddenButtons::put_ImageLarge>},
};
constexpr ChildRule kHiddenButtonsChildren[] = {
    {"RibbonButton", &kRibbonButton, kMakeRibbonButton,
     AppendTo<&IVePrsHiddenButtons::get_HiddenButtons>},
};
const ElementGrammar kHiddenButtons = {kHiddenButtonsValues, kHiddenButtonsChildren};

constexpr ValueRule kRibbonTabValues[] = {
    {"Identify", PutText<&IVePrsRibbonTab::put_Identify>},
    {"Text", PutText<&IVePrsRibbonTab::put_Text>},
    {"Key", PutText<&IVePrsRibbonTab::put_Key>},
    {"AppMode", PutNumber<&IVePrsRibbonTab::put_AppMode>},
};
constexpr ChildRule kRibbonTabChildren[] = {
    {"RibbonPanel", &kRibbonPanel, Make<coclass::VePrsRibbonPanel>,
     AppendTo<&IVePrsRibbonTab::get_RibbonPanels>},
    {"HiddenButtons", &kHiddenButtons, Lead<&IVePrsRibbonTab::get_HiddenButtons>, nullptr},
};
const ElementGrammar kRibbonTab = {kRibbonTabValues, kRibbonTabChildren};

constexpr ChildRule kRibbonBarChildren[] = {
    {"RibbonTab", &kRibbonTab, Make<coclass::VePrsRibbonTab>,
     AppendTo<&IVePrsRibbonBar::get_RibbonTabs>},
};
const ElementGrammar kRibbonBar = {{}, kRibbonBarChildren};

constexpr ChildRule kQuickAccessToolChildren[] = {
    {"QATButton", &kRibbonButton, kMakeRibbonButton,
     AppendTo<&IVePrsQuickAccessTool::get_QATButtons>},
};
const ElementGrammar kQuickAccessTool = {{}, kQuickAccessToolChildren};

constexpr ValueRule kMainButtonValues[] = {
    {"Icon", PutText<&IVePrsMainButton::put_Icon>},
    {"Command", PutText<&IVePrsMainButton::put_Command>},
    {"ImageSmall", PutText<&IVePrsMainButton::put_ImageSmall>},
    {"ImageLarge", PutText<&IVePrsMainButton::put_ImageLarge>},
    {"RecentDocDescription", PutText<&IVePrsMainButton::put_RecentDocDescription>},
    {"OptionCommand", PutText<&IVePrsMainButton::put_OptionCommand>},
    {"ExitCommand", PutText<&IVePrsMainButton::put_ExitCommand>},
    {"ResourcePath", PutText<&IVePrsMainButton::put_ResourcePath>},
    {"ScenicText", PutText<&IVePrsMainButton::put_ScenicText>},
};
const ElementGrammar kMainButton = {kMainButtonValues, {}};

constexpr ChildRule kContextRibbonChildren[] = {
    {"RibbonTab", &kRibbonTab, Make<coclass::VePrsRibbonTab>,
     AppendTo<&IVePrsUI::get_ContextRibbonTabs>},
    {"RibbonPanel", &kRibbonPanel, Make<coclass::VePrsRibbonPanel>,
     AppendTo<&IVePrsUI::get_ContextRibbonPanels>},
};
const ElementGrammar kContextRibbon = {{}, kContextRibbonChildren};

constexpr ChildRule kCaptionChildren[] = {
    {"RibbonButton", &kRibbonButton, kMakeRibbonButton,
     AppendTo<&IVePrsUI::get_CaptionCustomButtons>},
};
const ElementGrammar kCaption = {{}, kCaptionChildren};

// --- menus ---

extern const ElementGrammar kMenuItem;

constexpr auto kMakeMenuItem = Make<coclass::VePrsMenuItem>;
constexpr auto kMakePopup = MakeFlagged<coclass::VePrsMenuItem, &IVePrsMenuItem::put_IsPopup>;
constexpr auto kMakeMenuSeparator =
    MakeFlagged<coclass::VePrsMenuItem, &IVePrsMenuItem::put_IsSeparator>;

constexpr ValueRule kMenuItemValues[] = {
    {"Identify", PutText<&IVePrsMenuItem::put_Identify>},
    {"Text", PutText<&IVePrsMenuItem::put_Text>},
    {"Command", PutText<&IVePrsMenuItem::put_Command>},
    {"Option", PutText<&IVePrsMenuItem::put_Option>},
    {"Object", PutText<&IVePrsMenuItem::put_ObjCLSID>},
    {"AppMode", PutNumber<&IVePrsMenuItem::put_AppMode>},
};
constexpr ChildRule kMenuItemChildren[] = {
    {"Popup", &kMenuItem, kMakePopup, AppendTo<&IVePrsMenuItem::get_MenuItems>},
    {"MenuItem", &kMenuItem, kMakeMenuItem, AppendTo<&IVePrsMenuItem::get_MenuItems>},
    {"Separator", nullptr, kMakeMenuSeparator, AppendTo<&IVePrsMenuItem::get_MenuItems>},
};
const ElementGrammar kMenuItem = {kMenuItemValues, kMenuItemChildren};

constexpr ValueRule kMainMenuValues[] = {{"Text", PutText<&IVePrsMainMenu::put_Text>}};
constexpr ChildRule kMainMenuChildren[] = {
    {"Popup", &kMenuItem, kMakePopup, AppendTo<&IVePrsMainMenu::get_MenuItems>},
    {"MenuItem", &kMenuItem, kMakeMenuItem, AppendTo<&IVePrsMainMenu::get_MenuItems>},
    {"Separator", nullptr, kMakeMenuSeparator, AppendTo<&IVePrsMainMenu::get_MenuItems>},
};
const ElementGrammar kMainMenu = {kMainMenuValues, kMainMenuChildren};

constexpr ChildRule kContextMenuChildren[] = {
    {"Popup", &kMenuItem, kMakePopup, AppendTo<&IVePrsUI::get_ContextMenus>},
};
const ElementGrammar kContextMenu = {{}, kContextMenuChildren};

// --- toolbars, status bar, custom windows ---

constexpr ValueRule kToolBarButtonValues[] = {
    {"Identify", PutText<&IVePrsToolBarButton::put_Identify>},
    {"Command", PutText<&IVePrsToolBarButton::put_Command>},
    {"Object", PutText<&IVePrsToolBarButton::put_ObjCLSID>},
    {"AppMode", PutNumber<&IVePrsToolBarButton::put_AppMode>},
};
const ElementGrammar kToolBarButton = {kToolBarButtonValues, {}};

constexpr ValueRule kToolBarValues[] = {
    {"Identify", PutText<&IVePrsToolBar::put_Identify>},
    {"Text", PutText<&IVePrsToolBar::put_Text>},
    {"LeftOf", PutText<&IVePrsToolBar::put_LeftOf>},
    {"Dock", PutText<&IVePrsToolBar::put_Dock>},
    {"BmpDef", PutText<&IVePrsToolBar::put_Image>},
    {"BmpLarge", PutText<&IVePrsToolBar::put_ImageLarge>},
    {"ResourcePath", PutText<&IVePrsToolBar::put_ResourcePath>},
};
constexpr ChildRule kToolBarChildren[] = {
    {"Button", &kToolBarButton, Make<coclass::VePrsToolBarButton>,
     AppendTo<&IVePrsToolBar::get_Buttons>},
    {"Separator", nullptr,
     MakeFlagged<coclass::VePrsToolBarButton, &IVePrsToolBarButton::put_IsSeparator>,
     AppendTo<&IVePrsToolBar::get_Buttons>},
    {"DropDown", nullptr, MakeDropDown, AppendTo<&IVePrsToolBar::get_Buttons>},
};
const ElementGrammar kToolBar = {kToolBarValues, kToolBarChildren};

constexpr ChildRule kToolBarsChildren[] = {
    {"ToolBar", &kToolBar, Make<coclass::VePrsToolBar>, AppendTo<&IVePrsUI::get_ToolBars>},
};
const ElementGrammar kToolBars = {{}, kToolBarsChildren};

constexpr ValueRule kStatusBarValues[] = {{"Image", PutText<&IVePrsStatusBar::put_Image>}};
constexpr ChildRule kStatusBarChildren[] = {
    {"RibbonButton", &kRibbonButton, kMakeRibbonButton, AppendTo<&IVePrsStatusBar::get_Buttons>},
};
const ElementGrammar kStatusBar = {kStatusBarValues, kStatusBarChildren};

constexpr ValueRule kCustomWndValues[] = {
    {"Identify", PutText<&IVePrsCustomWnd::put_Identify>},
    {"Text", PutText<&IVePrsCustomWnd::put_Text>},
    {"LeftOf", PutText<&IVePrsCustomWnd::put_LeftOf>},
    {"Dock", PutText<&IVePrsCustomWnd::put_Dock>},
    {"Object", PutText<&IVePrsCustomWnd::put_ObjCLSID>},
    {"ICON", PutText<&IVePrsCustomWnd::put_Icon>},
    {"ResourcePath", PutText<&IVePrsCustomWnd::put_ResourcePath>},
    {"Size", PutText<&IVePrsCustomWnd::put_Size>},
    {"AppMode", PutNumber<&IVePrsCustomWnd::put_AppMode>},
};
const ElementGrammar kCustomWnd = {kCustomWndValues, {}};
constexpr ChildRule kCustomWndsChildren[] = {
    {"CustomWnd", &kCustomWnd, Make<coclass::VePrsCustomWnd>, AppendTo<&IVePrsUI::get_CustomWnds>},
};
const ElementGrammar kCustomWnds = {{}, kCustomWndsChildren};

// --- what belongs to commands ---

constexpr ValueRule kCommandAccelValues[] = {
    {"Key", PutText<&IVePrsAccel::put_Key>},
    {"Ctrl", PutText<&IVePrsAccel::put_Ctrl>},
    {"RibbonKey", PutText<&IVePrsAccel::put_RibbonKey>},
};
const ElementGrammar kCommandAccel = {kCommandAccelValues, {}};

constexpr ValueRule kPromptValues[] = {
    {"Command", PutText<&IVePrsPrompt::put_Command>},
    {"Text", PutText<&IVePrsPrompt::put_Text>},
    {"ToolTip", PutText<&IVePrsPrompt::put_ToolTip>},
    {"Description", PutText<&IVePrsPrompt::put_Description>},
    {"ToolTipImage", PutText<&IVePrsPrompt::put_ToolTipImage>},
};
const ElementGrammar kPrompt = {kPromptValues, {}};

constexpr ValueRule kInstructionValues[] = {
    {"Ins", PutText<&IVePrsInstruction::put_Instruction>},
    {"CommandPara", PutText<&IVePrsInstruction::put_CommandPara>},
};
const ElementGrammar kInstruction = {kInstructionValues, {}};

constexpr ValueRule kCommandImageValues[] = {
    {"ImageSmall", PutText<&IVePrsCommandImage::put_ImageSmall>},
    {"ImageLarge", PutText<&IVePrsCommandImage::put_ImageLarge>},
    {"ImageType", PutText<&IVePrsCommandImage::put_ImageType>},
    {"ResourcePath", PutText<&IVePrsCommandImage::put_ResourcePath>},
    {"ImageDarkSmall", PutText<&IVePrsCommandImage::put_ImageDarkSmall>},
    {"ImageDarkLarge", PutText<&IVePrsCommandImage::put_ImageDarkLarge>},
};
const ElementGrammar kCommandImage = {kCommandImageValues, {}};

constexpr ValueRule kCommandUIValues[] = {{"Command", NameCommand}};
constexpr ChildRule kCommandUIChildren[] = {
    {"Accel", &kCommandAccel, MakeForCommand<coclass::VePrsAccel, &IVePrsAccel::put_Command>,
     AppendTo<&IVePrsUI::get_Accels>},
    {"Prompt", &kPrompt, MakeForCommand<coclass::VePrsPrompt, &IVePrsPrompt::put_Command>,
     AppendTo<&IVePrsUI::get_Prompts>},
    {"Instruction", &kInstruction,
     MakeForCommand<coclass::VePrsInstruction, &IVePrsInstruction::put_Command>,
     AppendTo<&IVePrsUI::get_Instructions>},
    {"Image", &kCommandImage,
     MakeForCommand<coclass::VePrsCommandImage, &IVePrsCommandImage::put_Command>,
     AppendTo<&IVePrsUI::get_CommandImages>},
};
const ElementGrammar kCommandUI = {kCommandUIValues, kCommandUIChildren};
constexpr ChildRule kCommandsUIChildren[] = {{"CommandUI", &kCommandUI, StartCommand, nullptr}};
const ElementGrammar kCommandsUI = {{}, kCommandsUIChildren};

constexpr ValueRule kGroupAccelValues[] = {
    {"Command", PutText<&IVePrsAccel::put_Command>},
    {"Key", PutText<&IVePrsAccel::put_Key>},
    {"Ctrl", PutText<&IVePrsAccel::put_Ctrl>},
    {"RibbonKey", PutText<&IVePrsAccel::put_RibbonKey>},
};
const ElementGrammar kGroupAccel = {kGroupAccelValues, {}};
constexpr ValueRule kAccelGroupValues[] = {{"Identify", PutText<&IVePrsAccelGroup::put_Identify>}};
constexpr ChildRule kAccelGroupChildren[] = {
    {"Accel", &kGroupAccel, Make<coclass::VePrsAccel>, AppendTo<&IVePrsAccelGroup::get_Accels>},
};
const ElementGrammar kAccelGroup = {kAccelGroupValues, kAccelGroupChildren};
constexpr ChildRule kToolAccelsChildren[] = {
    {"AccelGroup", &kAccelGroup, Make<coclass::VePrsAccelGroup>,
     AppendTo<&IVePrsUI::get_ToolAccels>},
};
const ElementGrammar kToolAccels = {{}, kToolAccelsChildren};

constexpr ValueRule kCommandSearchValues[] = {
    {"Enable", PutWhetherOneOrTrue<&IVePrsCommandSearch::put_Enable>},
    {"Text", PutText<&IVePrsCommandSearch::put_Text>},
    {"Key", PutText<&IVePrsCommandSearch::put_Key>},
    {"ToolTip", PutText<&IVePrsCommandSearch::put_ToolTip>},
    {"Description", PutText<&IVePrsCommandSearch::put_Description>},
    {"Width", PutNumber<&IVePrsCommandSearch::put_Width>},
    {"SuppressDisabledCommands", PutText<&IVePrsCommandSearch::put_SuppressDisabledCommands>},
    {"MaxResults", PutText<&IVePrsCommandSearch::put_MaxResults>},
    {"SearchInHiddenCategories", PutText<&IVePrsCommandSearch::put_SearchInHiddenCategories>},
    {"AppMode", PutNumber<&IVePrsCommandSearch::put_AppMode>},
};
const ElementGrammar kCommandSearch = {kCommandSearchValues, {}};

// --- switches ---

constexpr ValueRule kIMenuValues[] = {{"Has", PutWhetherOne<&IVePrsUI::put_HasIMenu>}};
const ElementGrammar kIMenu = {kIMenuValues, {}};

constexpr ValueRule kMinimizeButtonValues[] = {
    {"Enable", PutWhetherOne<&IVePrsUI::put_RibbonMinimizeButton>}};
const ElementGrammar kMinimizeButton = {kMinimizeButtonValues, {}};

// --- the file ---

constexpr ChildRule kSections[] = {
    {"MainMenu", &kMainMenu, Lead<&IVePrsUI::get_MainMenu>, nullptr},
    {"MainButton", &kMainButton, Lead<&IVePrsUI::get_MainButton>, nullptr},
    {"QuickAccessTool", &kQuickAccessTool, Lead<&IVePrsUI::get_QuickAccessTool>, nullptr},
    {"RibbonBar", &kRibbonBar, Lead<&IVePrsUI::get_RibbonBar>, nullptr},
    {"ContextMenu", &kContextMenu, Stay, nullptr},
    {"ContextRibbonElement", &kContextRibbon, Stay, nullptr},
    {"ToolBars", &kToolBars, Stay, nullptr},
    {"StatusBar", &kStatusBar, Lead<&IVePrsUI::get_StatusBar>, nullptr},
    {"CustomWnds", &kCustomWnds, Stay, nullptr},
    {"CommandsUI", &kCommandsUI, Stay, nullptr},
    {"ToolAccels", &kToolAccels, Stay, nullptr},
    {"IMenu", &kIMenu, Stay, nullptr},
    {"CommandSearch", &kCommandSearch, Lead<&IVePrsUI::get_CommandSearch>, nullptr},
    {"RibbonMinimizeButton", &kMinimizeButton, Stay, nullptr},
    {"CaptionCustomButtons", &kCaption, Stay, nullptr},
};

}  // namespace

const ElementGrammar kUserInterfaceGrammar = {{}, kSections};

}  // namespace sab
