#include "preview/menus.h"

#include "text/utf.h"

namespace sab::preview {

using xml::kNoNode;
using xml::NodeIndex;

namespace {

// A text with the letter after a single & underlined; && is an ampersand.
void WriteWithMnemonic(Html& html, std::string_view text) {
  bool has_letter = false;
  while (!text.empty()) {
    const std::size_t ampersand = std::min(text.find('&'), text.size());
    html << text.substr(0, ampersand);
    text.remove_prefix(ampersand);
    if (text.empty()) return;
    text.remove_prefix(1);
    const std::size_t size = text::Utf8CharacterSize(text);
    if (size == 0) return;
    const std::string_view letter = text.substr(0, size);
    if (letter == "&" || has_letter) {
      html << letter;
    } else {
      html << "<u>" << letter << "</u>";
      has_letter = true;
    }
    text.remove_prefix(size);
  }
}

class Menus {
 public:
  explicit Menus(Drawing& drawing) : drawing_(drawing), html_(drawing.Out()) {}

  void DrawItems(NodeIndex menu, unsigned depth, bool is_copy) {
    html_ << "<ul class=menu>\n";
    bool is_cut = false;
    ForEachKnown(drawing_.Ui(), menu, [&](NodeIndex child, const formats::Rule& rule) {
      const bool is_separator = rule.name == "Separator";
      const bool is_popup = rule.name == "Popup";
      if ((!is_separator && !is_popup && rule.name != "MenuItem") || is_cut) return;
      if (is_copy && !drawing_.TakeCopy()) {
        is_cut = true;
        html_ << "<li class=note>More where the menu itself is</li>\n";
      } else if (is_separator) {
        html_ << "<li class=line aria-hidden=true></li>\n";
      } else {
        DrawItem(child, is_popup, depth, is_copy);
      }
    });
    html_ << "</ul>\n";
  }

  void DrawPopup(NodeIndex popup, bool is_popup) {
    html_ << "<div class=sheet><ul class=menu>\n";
    DrawItem(popup, is_popup, 0, false);
    html_ << "</ul></div>\n";
  }

 private:
  void DrawItem(NodeIndex node, bool is_popup, unsigned depth, bool is_copy) {
    const Values values(drawing_.Ui(), node);
    Item item = drawing_.ItemOf(node, is_popup ? "Menu" : "Item", values);
    item.is_copy = is_copy;
    if (!drawing_.IsShown(item)) return;
    const bool has_items = values.NodeOf("MenuItem") != kNoNode ||
                           values.NodeOf("Popup") != kNoNode ||
                           values.NodeOf("Separator") != kNoNode;
    html_ << "<li class=\"w";
    drawing_.WriteFindingClass(item);
    html_ << "\"";
    drawing_.WriteAnchor(item);
    has_items ? html_ << "><details open><summary class=b"
              : html_ << "><button type=button class=b";
    drawing_.WriteDescribedBy(item);
    html_ << ">";
    if (drawing_.GetCommands().Find(item.command).image != kNoNode) {
      drawing_.WriteIcon(item, false, nullptr);
    } else {
      html_ << "<span class=i></span>";
    }
    html_ << "<span class=t>";
    WriteWithMnemonic(html_, drawing_.CaptionOf(item));
    html_ << "</span><span class=keys>" << drawing_.GetCommands().Find(item.command).keys;
    if (is_popup) html_ << "<span aria-hidden=true>\u25B8</span>";
    html_ << "</span>";
    drawing_.WriteBadgeAndTip(item);
    has_items ? html_ << "</summary>\n" : html_ << "</button>";
    if (has_items) {
      if (depth + 1 >= kMaxDepth) {
        drawing_.WriteTooDeep(node);
      } else {
        DrawItems(node, depth + 1, is_copy);
      }
      html_ << "</details>";
    }
    html_ << "</li>\n";
  }

  Drawing& drawing_;
  Html& html_;
};

}  // namespace

void DrawMenus(Drawing& drawing) {
  Html& html = drawing.Out();
  Menus menus(drawing);
  const std::vector<NodeIndex> main = drawing.Sections("MainMenu");
  if (!main.empty()) {
    const std::string_view title = Values(drawing.Ui(), main)["Text"];
    html << "<section class=card><h3>Main menu";
    if (!title.empty() && title != "Main menu") html << " <span class=note>" << title << "</span>";
    html << "</h3>\n";
    drawing.WriteFindings(main);
    html << "<div class=sheets>\n";
    for (const NodeIndex section : main) {
      ForEachKnown(drawing.Ui(), section, [&](NodeIndex child, const formats::Rule& rule) {
        if (rule.name == "Popup" || rule.name == "MenuItem") {
          menus.DrawPopup(child, rule.name == "Popup");
        }
      });
    }
    html << "</div></section>\n";
  }
  const std::vector<NodeIndex> context = drawing.Sections("ContextMenu");
  if (context.empty()) return;
  html << "<section class=card><h3>Context menus</h3>\n";
  drawing.WriteFindings(context);
  html << "<div class=sheets>\n";
  for (const NodeIndex section : context) {
    ForEachKnown(drawing.Ui(), section,
                 [&](NodeIndex child, const formats::Rule&) { menus.DrawPopup(child, true); });
  }
  html << "</div></section>\n";
}

void DrawMenuCopy(Drawing& drawing, NodeIndex menu) { Menus(drawing).DrawItems(menu, 0, true); }

}  // namespace sab::preview
