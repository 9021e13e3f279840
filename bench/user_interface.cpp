// Reading user-interface files as a client does, from the disk and through the public interfaces,
// beside readers over other DOMs that fill plain structs. Every row is one part of the same course:
// load, walk all properties, walk them again, release. tools/bench pairs the rows.

#include <SabXmlParser.h>
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <time.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <utility>

#include "base/bstr.h"
#include "base/com_ptr.h"
#include "fingerprint.h"
#include "plain_tree.h"
#include "samples.h"

namespace {

using sab::ComPtr;
using sab::bench::Fingerprint;
using sab::bench::Kind;

// --- the server ---

// Looks at every property of a tree of objects.
class ObjectWalker {
 public:
  Fingerprint fingerprint;

  void Walk(IVePrsRibbonButton& o) {
    using I = IVePrsRibbonButton;
    Look(o, &I::get_Identify, &I::get_Command, &I::get_IsLargeImage, &I::get_ObjCLSID,
         &I::get_MenuID, &I::get_Width, &I::get_IsGroup, &I::get_IsSeparator, &I::get_IsVisible,
         &I::get_GroupButtons, &I::get_Text, &I::get_Option, &I::get_AppMode);
  }
  void Walk(IVePrsRibbonPanel& o) {
    using I = IVePrsRibbonPanel;
    Look(o, &I::get_Identify, &I::get_Text, &I::get_ImageSmall, &I::get_ImageLarge,
         &I::get_RibbonButtons, &I::get_ResourcePath, &I::get_LaunchButton, &I::get_AppMode);
  }
  void Walk(IVePrsHiddenButtons& o) {
    using I = IVePrsHiddenButtons;
    Look(o, &I::get_ImageSmall, &I::get_ImageLarge, &I::get_HiddenButtons);
  }
  void Walk(IVePrsRibbonTab& o) {
    using I = IVePrsRibbonTab;
    Look(o, &I::get_Identify, &I::get_Text, &I::get_Key, &I::get_RibbonPanels,
         &I::get_HiddenButtons, &I::get_AppMode);
  }
  void Walk(IVePrsMenuItem& o) {
    using I = IVePrsMenuItem;
    Look(o, &I::get_Identify, &I::get_Text, &I::get_Command, &I::get_Option, &I::get_ObjCLSID,
         &I::get_IsSeparator, &I::get_IsPopup, &I::get_MenuItems, &I::get_AppMode);
  }
  void Walk(IVePrsToolBarButton& o) {
    using I = IVePrsToolBarButton;
    Look(o, &I::get_Identify, &I::get_Command, &I::get_ObjCLSID, &I::get_IsSeparator,
         &I::get_IsDropDown, &I::get_Buttons, &I::get_SubToolBarID, &I::get_AppMode);
  }
  void Walk(IVePrsToolBar& o) {
    using I = IVePrsToolBar;
    Look(o, &I::get_Identify, &I::get_Text, &I::get_LeftOf, &I::get_Dock, &I::get_Image,
         &I::get_Buttons, &I::get_ResourcePath, &I::get_ImageLarge, &I::get_AppMode);
  }
  void Walk(IVePrsCustomWnd& o) {
    using I = IVePrsCustomWnd;
    Look(o, &I::get_Identify, &I::get_Text, &I::get_LeftOf, &I::get_Dock, &I::get_ObjCLSID,
         &I::get_Icon, &I::get_ResourcePath, &I::get_Size, &I::get_AppMode);
  }
  void Walk(IVePrsAccel& o) {
    using I = IVePrsAccel;
    Look(o, &I::get_Command, &I::get_Key, &I::get_Ctrl, &I::get_RibbonKey);
  }
  void Walk(IVePrsAccelGroup& o) {
    Look(o, &IVePrsAccelGroup::get_Identify, &IVePrsAccelGroup::get_Accels);
  }
  void Walk(IVePrsPrompt& o) {
    using I = IVePrsPrompt;
    Look(o, &I::get_Command, &I::get_Text, &I::get_ToolTip, &I::get_Description,
         &I::get_ToolTipImage);
  }
  void Walk(IVePrsInstruction& o) {
    using I = IVePrsInstruction;
    Look(o, &I::get_Command, &I::get_Instruction, &I::get_CommandPara);
  }
  void Walk(IVePrsCommandImage& o) {
    using I = IVePrsCommandImage;
    Look(o, &I::get_Command, &I::get_ImageSmall, &I::get_ImageLarge, &I::get_ImageType,
         &I::get_ResourcePath, &I::get_ImageDarkSmall, &I::get_ImageDarkLarge);
  }
  void Walk(IVePrsCommandSearch& o) {
    using I = IVePrsCommandSearch;
    Look(o, &I::get_Enable, &I::get_Text, &I::get_Key, &I::get_ToolTip, &I::get_Description,
         &I::get_Width, &I::get_SuppressDisabledCommands, &I::get_MaxResults,
         &I::get_SearchInHiddenCategories, &I::get_AppMode);
  }
  void Walk(IVePrsMainButton& o) {
    using I = IVePrsMainButton;
    Look(o, &I::get_Icon, &I::get_Command, &I::get_ImageSmall, &I::get_ImageLarge,
         &I::get_RecentDocDescription, &I::get_OptionCommand, &I::get_ExitCommand,
         &I::get_ResourcePath, &I::get_ScenicText);
  }
  void Walk(IVePrsMainMenu& o) {
    Look(o, &IVePrsMainMenu::get_Text, &IVePrsMainMenu::get_MenuItems);
  }
  void Walk(IVePrsQuickAccessTool& o) { Look(o, &IVePrsQuickAccessTool::get_QATButtons); }
  void Walk(IVePrsRibbonBar& o) { Look(o, &IVePrsRibbonBar::get_RibbonTabs); }
  void Walk(IVePrsStatusBar& o) {
    Look(o, &IVePrsStatusBar::get_Image, &IVePrsStatusBar::get_Buttons);
  }
  void Walk(IVePrsUI& o) {
    using I = IVePrsUI;
    Look(o, &I::get_MainMenu, &I::get_MainButton, &I::get_QuickAccessTool, &I::get_RibbonBar,
         &I::get_ContextMenus, &I::get_ToolBars, &I::get_StatusBar, &I::get_CustomWnds,
         &I::get_Accels, &I::get_ToolAccels, &I::get_Prompts, &I::get_Instructions,
         &I::get_ContextRibbonTabs, &I::get_ContextRibbonPanels, &I::get_HasIMenu,
         &I::get_CommandImages, &I::get_CommandSearch, &I::get_RibbonMinimizeButton,
         &I::get_CaptionCustomButtons);
  }

 private:
  template <class Object, class... Getters>
  void Look(Object& object, Getters... getters) {
    (LookAt(object, getters), ...);
  }
  template <class Object, class Value>
  void LookAt(Object& object, HRESULT (STDMETHODCALLTYPE Object::*get)(Value*)) {
    if constexpr (std::is_same_v<Value, BSTR>) {
      sab::Bstr text;
      (object.*get)(text.Put());
      fingerprint.Add(text.View());
    } else if constexpr (std::is_same_v<Value, VARIANT_BOOL>) {
      VARIANT_BOOL flag = VARIANT_FALSE;
      (object.*get)(&flag);
      fingerprint.Add(flag != VARIANT_FALSE);
    } else if constexpr (std::is_pointer_v<Value>) {
      ComPtr<std::remove_pointer_t<Value>> part;
      (object.*get)(part.Put());
      WalkPart(*part);
    } else {
      Value number = 0;
      (object.*get)(&number);
      fingerprint.Add(static_cast<int>(number));
    }
  }
  template <class Part>
  void WalkPart(Part& part) {
    if constexpr (requires { &Part::GetHeadPosition; }) {
      LONG_PTR position = 0;
      part.GetHeadPosition(&position);
      while (position) WalkItem(part, &Part::GetNext, position);
    } else {
      Walk(part);
    }
  }
  template <class List, class Item>
  void WalkItem(List& list, HRESULT (STDMETHODCALLTYPE List::*next)(LONG_PTR*, Item**),
                LONG_PTR& position) {
    ComPtr<Item> item;
    (list.*next)(&position, item.Put());
    Walk(*item);
  }
};

class Server {
 public:
  explicit Server(const std::string& file) {
    CoCreateInstance(CLSID_VeUiParser, nullptr, CLSCTX_INPROC_SERVER, IID_IVeUiParser,
                     parser_.PutVoid());
    parser_->put_ConfigurationPath(sab::Bstr(sab::FromUtf8(file)).Get());
  }
  bool Load() { return SUCCEEDED(parser_->GenerateUI()); }
  std::uint64_t Walk() {
    ComPtr<IVePrsUI> tree;
    parser_->get_UI(tree.Put());
    ObjectWalker walker;
    walker.Walk(*tree);
    return walker.fingerprint.Value();
  }

 private:
  ComPtr<IVeUiParser> parser_;
};

// --- the peers ---

struct PugixmlNode {
  pugi::xml_node node;
  std::string_view Name() const { return node.name(); }
  std::string_view Text() const { return node.child_value(); }
  template <class Visit>
  void Children(const Visit& visit) const {
    for (const pugi::xml_node child : node.children()) visit(PugixmlNode{child});
  }
};

struct LibxmlNode {
  const xmlNode* node;
  std::string_view Name() const { return reinterpret_cast<const char*>(node->name); }
  std::string_view Text() const {
    return node->children ? reinterpret_cast<const char*>(node->children->content) : "";
  }
  template <class Visit>
  void Children(const Visit& visit) const {
    for (const xmlNode* child = node->children; child; child = child->next) {
      if (child->type == XML_ELEMENT_NODE) visit(LibxmlNode{child});
    }
  }
};

class Peer {
 public:
  explicit Peer(std::string file) : file_(std::move(file)) {}
  std::uint64_t Walk() {
    sab::bench::plain::Walker walker;
    tree_.Visit(walker);
    return walker.fingerprint.Value();
  }

 protected:
  template <class Node>
  void Fill(const Node& root) {
    sab::bench::plain::Reader<Node>::Read(root, tree_);
  }

  std::string file_;

 private:
  sab::bench::plain::UserInterface tree_;
};

struct Pugixml : Peer {
  using Peer::Peer;
  bool Load() {
    pugi::xml_document document;
    if (!document.load_file(file_.c_str())) return false;
    Fill(PugixmlNode{document.document_element()});
    return true;
  }
};

struct Libxml : Peer {
  using Peer::Peer;
  bool Load() {
    const xmlDocPtr document =
        xmlReadFile(file_.c_str(), nullptr, XML_PARSE_NONET | XML_PARSE_NOBLANKS | XML_PARSE_HUGE);
    if (!document) return false;
    Fill(LibxmlNode{xmlDocGetRootElement(document)});
    xmlFreeDoc(document);
    return true;
  }
};

// --- the rows ---

enum Part { kLoad, kFirstWalk, kSecondWalk, kRelease, kAll };
constexpr const char* kPartNames[] = {"GenerateUI", "FirstWalk", "SecondWalk", "Release",
                                      "LoadWalkRelease"};

// All trees of one file are equal, whoever has read it.
void Compare(const std::string& file, std::uint64_t fingerprint) {
  static std::map<std::string, std::uint64_t> known;
  const auto [first, is_new] = known.emplace(file, fingerprint);
  if (is_new || first->second == fingerprint) return;
  std::fprintf(stderr, "%s: the trees of two readers differ\n", file.c_str());
  std::abort();
}

// The processor's time, since others may want the processor; the files are in the system's cache.
double Now() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

template <class Reader>
void Run(benchmark::State& state, Part part, Kind kind, std::size_t bytes) {
  const std::string file = sab::bench::UserInterfaceSample(kind, bytes);
  for (auto _ : state) {
    auto reader = std::make_unique<Reader>(file);
    double times[kAll + 1];
    times[kLoad] = Now();
    if (!reader->Load()) state.SkipWithError("the file could not be loaded");
    times[kFirstWalk] = Now();
    if (part != kLoad) {
      const std::uint64_t fingerprint = reader->Walk();
      times[kSecondWalk] = Now();
      Compare(file, fingerprint);
    }
    if (part == kSecondWalk) {
      times[kSecondWalk] = Now();
      reader->Walk();
    }
    times[kRelease] = Now();
    reader.reset();
    times[kAll] = Now();
    const double taken = part != kAll
                             ? times[part + 1] - times[part]
                             : times[kAll] - times[kRelease] + times[kSecondWalk] - times[kLoad];
    state.SetIterationTime(taken);
  }
}

template <class Reader>
void RegisterRows(const char* reader, bool only_once) {
  for (int part = kLoad; part <= kAll; ++part) {
    for (const Kind kind : {Kind::kPlain, Kind::kRich}) {
      for (const std::size_t bytes : {20U << 10, 100U << 10, 1U << 20, 10U << 20, 50U << 20}) {
        const std::string name = std::string(kPartNames[part]) + '/' + reader + '/' +
                                 sab::bench::kKindNames[static_cast<int>(kind)] + '/' +
                                 std::to_string(bytes >> 10) + "K";
        auto* const row = benchmark::RegisterBenchmark(
            name.c_str(), [part, kind, bytes](benchmark::State& state) {
              Run<Reader>(state, static_cast<Part>(part), kind, bytes);
            });
        row->UseManualTime()->Unit(benchmark::kMicrosecond);
        if (only_once) row->Iterations(1);
      }
    }
  }
}

}  // namespace

void RegisterUserInterfaceRows(bool only_once) {
  RegisterRows<Server>("ours", only_once);
  RegisterRows<Pugixml>("pugixml", only_once);
  RegisterRows<Libxml>("libxml2", only_once);
}
