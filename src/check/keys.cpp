#include "check/keys.h"

#include <map>
#include <set>
#include <vector>

#include "text/ascii.h"
#include "text/utf.h"

namespace sab::check {
namespace {

using project::File;
using project::Placement;
using xml::kNoNode;
using xml::NodeIndex;

std::string Folded(std::string_view text) {
  std::string folded(text);
  for (char& c : folded) c = ToLowerAscii(c);
  return folded;
}

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
    for (const NodeIndex section : Children(xml_.Root())) {
      const std::string_view name = NameOf(section);
      if (name == "MainMenu") {
        CheckMenu(section, main_menu_);
      } else if (name == "ContextMenu") {
        for (const NodeIndex popup : Children(section)) CheckInner(popup);
      } else if (name == "CommandsUI") {
        CollectCommands(section);
      } else if (name == "ToolAccels") {
        CheckGroups(section);
      } else if (name == "RibbonBar") {
        for (const NodeIndex tab : Children(section)) CollectTab(tab);
      } else if (name == "CommandSearch") {
        const NodeIndex key = ChildNamed(section, "Key");
        if (key != kNoNode) Take(tab_keys_, Mistake::kRibbonKeyConflict, key, "the search box", "");
      }
    }
    CheckRibbonKeys();
  }

 private:
  using Table = std::map<std::string, Key>;

  std::vector<NodeIndex> Children(NodeIndex node) const {
    std::vector<NodeIndex> children;
    for (NodeIndex child = xml_.FirstChildElement(node); child != kNoNode;
         child = xml_.NextElement(child)) {
      if (file_.RuleIdOf(child) != project::kNoRule) children.push_back(child);
    }
    return children;
  }
  std::string_view NameOf(NodeIndex node) const { return file_.RuleOf(node)->name; }
  // The last of several counts.
  NodeIndex ChildNamed(NodeIndex node, std::string_view name) const {
    NodeIndex found = kNoNode;
    for (NodeIndex child = xml_.FirstChildElement(node); child != kNoNode;
         child = xml_.NextElement(child)) {
      const formats::Rule* const rule = file_.RuleOf(child);
      if (rule && rule->name == name) found = child;
    }
    return found;
  }
  std::string_view TextOf(NodeIndex node, std::string_view name) const {
    const NodeIndex child = ChildNamed(node, name);
    return child == kNoNode ? std::string_view() : file_.TextOf(child);
  }

  // Adds a key to those of one level; a second owner of it is a conflict.
  void Take(Table& table, Mistake mistake, NodeIndex node, std::string owner,
            const std::string& modifier) {
    const std::string text(file_.TextOf(node));
    if (text.empty()) return;
    const auto [known, is_new] = table.try_emplace(modifier + Folded(text), Key{node, owner});
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
        return Folded(text.substr(i + 1, size == 0 ? 1 : size));
      }
      ++i;
    }
    return {};
  }

  void CheckMenu(NodeIndex menu, Table& letters) {
    for (const NodeIndex item : Children(menu)) {
      const std::string_view name = NameOf(item);
      if (name != "Popup" && name != "MenuItem") continue;
      const NodeIndex text = ChildNamed(item, "Text");
      if (text != kNoNode) CheckLetter(item, text, letters);
      CheckInner(item);
    }
  }
  void CheckInner(NodeIndex item) {
    if (ChildNamed(item, "MenuItem") == kNoNode && ChildNamed(item, "Popup") == kNoNode) return;
    Table letters;
    CheckMenu(item, letters);
  }
  void CheckLetter(NodeIndex item, NodeIndex text, Table& letters) {
    const std::string letter = MnemonicOf(file_.TextOf(text));
    if (letter.empty() || letter == " ") return;
    const auto [known, is_new] = letters.try_emplace(letter, Key{text, {}});
    if (is_new) return;
    Words words{"the letter " + Quoted(letter) + " is that of " +
                Quoted(file_.TextOf(known->second.node)) + " in the same menu, too"};
    words.related.push_back(
        {reporter_.At(index_, file_.ValueSpan(known->second.node)), "the other one"});
    static_cast<void>(item);
    reporter_.Add(Mistake::kMnemonicConflict, index_, file_.ValueSpan(text), std::move(words));
  }

  // --- accelerators ---

  static std::string ModifierOf(std::string_view ctrl) {
    const bool is_plain = ctrl.empty() || ctrl == "0" || EqualsIgnoringAsciiCase(ctrl, "false") ||
                          EqualsIgnoringAsciiCase(ctrl, "no");
    return is_plain ? "" : "Ctrl+";
  }

  void TakeAccelerator(NodeIndex accelerator, const std::string& command, Table& keys) {
    const NodeIndex key = ChildNamed(accelerator, "Key");
    if (key != kNoNode) {
      Take(keys, Mistake::kAcceleratorConflict, key, command,
           ModifierOf(TextOf(accelerator, "Ctrl")));
    }
    const NodeIndex ribbon_key = ChildNamed(accelerator, "RibbonKey");
    if (ribbon_key != kNoNode && !file_.TextOf(ribbon_key).empty()) {
      ribbon_keys_[Folded(file_.TextOf(ribbon_key))].push_back({ribbon_key, command});
    }
  }

  void CollectCommands(NodeIndex section) {
    for (const NodeIndex command_ui : Children(section)) {
      std::string command;
      for (const NodeIndex child : Children(command_ui)) {
        if (NameOf(child) == "Command") command = file_.TextOf(child);
        if (NameOf(child) == "Accel") TakeAccelerator(child, command, accelerators_);
      }
    }
  }

  void CheckGroups(NodeIndex section) {
    for (const NodeIndex group : Children(section)) {
      Table keys;
      for (const NodeIndex child : Children(group)) {
        if (NameOf(child) != "Accel") continue;
        TakeAccelerator(child, std::string(TextOf(child, "Command")), keys);
      }
    }
  }

  // --- ribbon ---

  void CollectTab(NodeIndex tab) {
    if (NameOf(tab) != "RibbonTab") return;
    tabs_.push_back(tab);
    const NodeIndex key = ChildNamed(tab, "Key");
    const std::string_view text = TextOf(tab, "Identify");
    if (key == kNoNode) return;
    Take(tab_keys_, Mistake::kRibbonKeyConflict, key,
         "the tab " + std::string(text.empty() ? TextOf(tab, "Text") : text) +
             (text.empty() ? std::to_string(tab) : ""),
         "");
  }

  // Commands with one ribbon key conflict where one tab has both, or none has either.
  void CheckRibbonKeys() {
    for (const auto& [key, uses] : ribbon_keys_) {
      for (std::size_t i = 1; i < uses.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
          if (uses[i].owner == uses[j].owner || !AreTogether(uses[i].owner, uses[j].owner))
            continue;
          Words words{"the ribbon key " + Quoted(key) + " of " + uses[i].owner + " is that of " +
                      uses[j].owner + ", too"};
          words.related.push_back(
              {reporter_.At(index_, file_.ValueSpan(uses[j].node)), "the other one"});
          reporter_.Add(Mistake::kRibbonKeyConflict, index_, file_.ValueSpan(uses[i].node),
                        std::move(words));
          break;
        }
      }
    }
  }

  bool AreTogether(const std::string& first, const std::string& second) {
    if (!has_places_) CollectPlaces();
    const std::set<NodeIndex>& tabs = places_[first];
    const std::set<NodeIndex>& others = places_[second];
    if (tabs.empty() && others.empty()) return true;
    for (const NodeIndex tab : tabs) {
      if (others.contains(tab)) return true;
    }
    return false;
  }

  void CollectPlaces() {
    has_places_ = true;
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
  bool has_places_ = false;
};

}  // namespace

void CheckKeys(Reporter& reporter, project::FileIndex file) { Keys(reporter, file).Check(); }

}  // namespace sab::check
