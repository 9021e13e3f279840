#include "check/keys.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <vector>

#include "text/ascii.h"
#include "text/utf.h"

namespace sab::check {
namespace {

using project::File;
using xml::kNoNode;
using xml::NodeIndex;

// A key with what it does.
struct Key {
  NodeIndex node;
  std::string owner;  // command or tab; of the same owner, keys are no conflict
};

class Keys {
 public:
  Keys(Reporter& reporter, project::FileIndex index)
      : reporter_(reporter),
        index_(index),
        file_(reporter.GetProject().At(index)),
        xml_(file_.Xml()) {}

  void Check() {
    ForEachChild(xml_.Root(), [this](NodeIndex section) {
      const std::string_view name = NameOf(section);
      if (name == "MainMenu") {
        CheckMenu(section, main_menu_);
      } else if (name == "ContextMenu") {
        ForEachChild(section, [this](NodeIndex popup) {
          Table letters;
          CheckMenu(popup, letters);
        });
      } else if (name == "CommandsUI") {
        CollectCommands(section);
      } else if (name == "ToolAccels") {
        CheckGroups(section);
      } else if (name == "RibbonBar") {
        ForEachChild(section, [this](NodeIndex tab) { CollectTab(tab); });
      } else if (name == "CommandSearch") {
        const NodeIndex key = file_.ChildNamed(section, "Key");
        if (key != kNoNode) Take(tab_keys_, Mistake::kRibbonKeyConflict, key, "the search box", "");
      }
    });
    CheckRibbonKeys();
  }

 private:
  using Table = std::map<std::string, Key>;
  static constexpr std::size_t kNone = SIZE_MAX;

  // Of the elements that are known.
  template <class Visit>
  void ForEachChild(NodeIndex node, const Visit& visit) const {
    for (NodeIndex child = xml_.FirstChildElement(node); child != kNoNode;
         child = xml_.NextElement(child)) {
      if (file_.RuleIdOf(child) != project::kNoRule) visit(child);
    }
  }
  std::string_view NameOf(NodeIndex node) const { return file_.RuleOf(node)->name; }

  // Adds a key to those of one level; a second owner of it is a conflict.
  void Take(Table& table, Mistake mistake, NodeIndex node, const std::string& owner,
            const std::string& modifier) {
    const std::string text(file_.TextOf(node));
    if (text.empty()) return;
    const auto [known, is_new] = table.try_emplace(LowerAsciiOf(modifier + text), Key{node, owner});
    if (is_new || known->second.owner == owner) return;
    Words words{"the key " + Quoted(modifier + text) + " of " + owner + " is that of " +
                known->second.owner + ", too"};
    words.related.push_back(
        {reporter_.At(index_, file_.ValueSpan(known->second.node)), "the other one"});
    reporter_.Add(mistake, index_, file_.ValueSpan(node), std::move(words));
  }

  // --- menus ---

  // The letter after a single &; nothing for none.
  static std::string MnemonicOf(std::string_view text) {
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
      if (text[i] != '&') continue;
      if (text[i + 1] != '&') {
        const std::size_t size = text::Utf8CharacterSize(text.substr(i + 1));
        return LowerAsciiOf(text.substr(i + 1, size == 0 ? 1 : size));
      }
      ++i;
    }
    return {};
  }

  // Menus may be nested as deeply as a file has them, so those that are open are in a list.
  void CheckMenu(NodeIndex menu, Table& letters) {
    struct Menu {
      NodeIndex end;
      Table letters;
    };
    std::vector<Menu> open;
    open.push_back({xml_.EndOf(menu), std::move(letters)});
    for (NodeIndex node = menu + 1; node < open.front().end;) {
      while (node >= open.back().end) open.pop_back();
      const NodeIndex next = xml_.NextSibling(node);
      const NodeIndex end = next == kNoNode ? open.back().end : next;
      if (!IsItem(node)) {
        node = end;
        continue;
      }
      const NodeIndex text = file_.ChildNamed(node, "Text");
      if (text != kNoNode) CheckLetter(text, open.back().letters);
      open.push_back({end, {}});
      ++node;
    }
    letters = std::move(open.front().letters);
  }
  bool IsItem(NodeIndex node) const {
    if (!xml_.IsElement(node) || file_.RuleIdOf(node) == project::kNoRule) return false;
    const std::string_view name = NameOf(node);
    return name == "Popup" || name == "MenuItem";
  }
  void CheckLetter(NodeIndex text, Table& letters) {
    const std::string letter = MnemonicOf(file_.TextOf(text));
    if (letter.empty() || letter == " ") return;
    const auto [known, is_new] = letters.try_emplace(letter, Key{text, {}});
    if (is_new) return;
    Words words{"the letter " + Quoted(letter) + " is that of " +
                Quoted(file_.TextOf(known->second.node)) + " in the same menu, too"};
    words.related.push_back(
        {reporter_.At(index_, file_.ValueSpan(known->second.node)), "the other one"});
    reporter_.Add(Mistake::kMnemonicConflict, index_, file_.ValueSpan(text), std::move(words));
  }

  // --- accelerators ---

  // Of other keys than Ctrl the host writes which.
  static std::string ModifierOf(std::string_view ctrl) {
    if (!MeansCtrl(ctrl)) return "";
    const bool is_yes = ctrl == "1" || ctrl == "-1" || EqualsIgnoringAsciiCase(ctrl, "true") ||
                        EqualsIgnoringAsciiCase(ctrl, "yes") ||
                        EqualsIgnoringAsciiCase(ctrl, "ctrl");
    return (is_yes ? "Ctrl" : std::string(ctrl)) + "+";
  }

  void TakeAccelerator(NodeIndex accelerator, const std::string& command, Table& keys) {
    const NodeIndex key = file_.ChildNamed(accelerator, "Key");
    if (key != kNoNode) {
      Take(keys, Mistake::kAcceleratorConflict, key, command,
           ModifierOf(file_.TextOf(accelerator, "Ctrl")));
    }
    const NodeIndex ribbon_key = file_.ChildNamed(accelerator, "RibbonKey");
    if (ribbon_key != kNoNode && !file_.TextOf(ribbon_key).empty()) {
      ribbon_keys_[LowerAsciiOf(file_.TextOf(ribbon_key))].push_back({ribbon_key, command});
    }
  }

  void CollectCommands(NodeIndex section) {
    ForEachChild(section, [this](NodeIndex command_ui) {
      std::string command;
      ForEachChild(command_ui, [&](NodeIndex child) {
        if (NameOf(child) == "Command") command = file_.TextOf(child);
        if (NameOf(child) == "Accel") TakeAccelerator(child, command, accelerators_);
      });
    });
  }

  void CheckGroups(NodeIndex section) {
    ForEachChild(section, [this](NodeIndex group) {
      Table keys;
      ForEachChild(group, [&](NodeIndex child) {
        if (NameOf(child) != "Accel") return;
        TakeAccelerator(child, std::string(file_.TextOf(child, "Command")), keys);
      });
    });
  }

  // --- ribbon ---

  void CollectTab(NodeIndex tab) {
    if (NameOf(tab) != "RibbonTab") return;
    tabs_.push_back(tab);
    const NodeIndex key = file_.ChildNamed(tab, "Key");
    const std::string_view text = file_.TextOf(tab, "Identify");
    if (key == kNoNode) return;
    Take(tab_keys_, Mistake::kRibbonKeyConflict, key,
         "the tab " + std::string(text.empty() ? file_.TextOf(tab, "Text") : text) +
             (text.empty() ? std::to_string(tab) : ""),
         "");
  }

  // Commands with one ribbon key conflict where one tab has both, or none has either.
  void CheckRibbonKeys() {
    const bool is_any_shared =
        std::ranges::any_of(ribbon_keys_, [](const auto& key) { return key.second.size() > 1; });
    if (is_any_shared) CollectPlaces();
    for (const auto& [key, uses] : ribbon_keys_) CheckRibbonKey(uses);
  }

  void CheckRibbonKey(const std::vector<Key>& uses) {
    // By tab: the first use of the key, and the first by another command than that.
    struct First {
      std::size_t use = kNone;
      std::size_t other = kNone;
    };
    std::map<NodeIndex, First> first_uses;
    const std::set<NodeIndex> no_tab{kNoNode};
    for (std::size_t i = 0; i < uses.size(); ++i) {
      const auto places = places_.find(uses[i].owner);
      std::size_t earlier = kNone;
      for (const NodeIndex tab : places == places_.end() ? no_tab : places->second) {
        First& first = first_uses[tab];
        if (first.use == kNone) first.use = i;
        const bool is_other = uses[first.use].owner != uses[i].owner;
        if (is_other && first.other == kNone) first.other = i;
        earlier = std::min(earlier, is_other ? first.use : first.other);
      }
      if (earlier >= i) continue;
      Words words{"the ribbon key " + Quoted(file_.TextOf(uses[i].node)) + " of " + uses[i].owner +
                  " is that of " + uses[earlier].owner + ", too"};
      words.related.push_back(
          {reporter_.At(index_, file_.ValueSpan(uses[earlier].node)), "the other one"});
      reporter_.Add(Mistake::kRibbonKeyConflict, index_, file_.ValueSpan(uses[i].node),
                    std::move(words));
    }
  }

  void CollectPlaces() {
    for (const NodeIndex tab : tabs_) {
      for (NodeIndex node = tab; node < xml_.EndOf(tab); ++node) {
        if (!xml_.IsElement(node)) continue;
        const formats::Rule* const rule = file_.RuleOf(node);
        if (!rule || rule->subject != formats::Subject::kCommand) continue;
        places_[std::string(file_.TextOf(node))].insert(tab);
      }
    }
  }

  Reporter& reporter_;
  const project::FileIndex index_;
  const File& file_;
  const xml::Document& xml_;
  Table main_menu_;
  Table accelerators_;
  Table tab_keys_;
  std::vector<NodeIndex> tabs_;
  std::map<std::string, std::vector<Key>> ribbon_keys_;
  std::map<std::string, std::set<NodeIndex>> places_;  // tabs that have a command
};

}  // namespace

bool MeansCtrl(std::string_view ctrl) {
  return !ctrl.empty() && ctrl != "0" && !EqualsIgnoringAsciiCase(ctrl, "false") &&
         !EqualsIgnoringAsciiCase(ctrl, "no");
}

void CheckKeys(Reporter& reporter, project::FileIndex file) { Keys(reporter, file).Check(); }

}  // namespace sab::check
