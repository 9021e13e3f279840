#include "preview/button.h"

#include <algorithm>

#include "preview/menus.h"

namespace sab::preview {

using xml::kNoNode;
using xml::NodeIndex;

namespace {

bool IsButton(const formats::Rule& rule) {
  return rule.name == "RibbonButton" || rule.name == "QATButton";
}

class Button {
 public:
  Button(Drawing& drawing, NodeIndex node, Look look, Strips* strips, unsigned depth)
      : drawing_(drawing),
        html_(drawing.Out()),
        values_(drawing.Ui(), node),
        item_(drawing.ItemOf(node, "Button", values_)),
        look_(look),
        strips_(strips),
        depth_(depth) {
    is_large_ = look == Look::kRibbon && values_.Any("LargeImage", "1");
    is_hidden_ = values_.Any("IsVisible", "0");
    has_buttons_ = values_.NodeOf("RibbonButton") != kNoNode;
    menu_ = drawing.Defined(formats::Subject::kMenu, item_.menu);
  }

  void Draw() {
    if (!drawing_.IsShown(item_)) return Skip();
    if (has_buttons_ || menu_ != kNoNode) return DrawWithMenu();
    html_ << "<div class=\"w";
    WriteClasses();
    html_ << "\"";
    drawing_.WriteAnchor(item_);
    html_ << "><button type=button class=b";
    WriteWidth();
    drawing_.WriteDescribedBy(item_);
    html_ << ">";
    WriteFace();
    if (!item_.object.empty() || !item_.menu.empty()) WriteArrow();
    drawing_.WriteBadgeAndTip(item_);
    html_ << "</button></div>\n";
  }

 private:
  // What is not drawn has its pictures nevertheless.
  void Skip() {
    if (strips_) ++strips_->next;
  }

  void DrawWithMenu() {
    html_ << "<details class=\"w drop";
    WriteClasses();
    html_ << "\"";
    // Of the menus that lie over the rest, one is open.
    if (depth_ == 0) html_ << " name=v" << drawing_.Number() << "m";
    drawing_.WriteAnchor(item_);
    html_ << "><summary class=b";
    WriteWidth();
    drawing_.WriteDescribedBy(item_);
    html_ << ">";
    WriteFace();
    WriteArrow();
    drawing_.WriteBadgeAndTip(item_);
    html_ << "</summary><div class=pop>\n";
    if (depth_ + 1 >= kMaxDepth) {
      drawing_.WriteTooDeep(item_.node);
    } else {
      DrawButtons(drawing_, item_.node, Look::kLine, strips_, depth_ + 1);
      if (menu_ != kNoNode) DrawMenuCopy(drawing_, menu_);
    }
    html_ << "</div></details>\n";
  }

  void WriteClasses() {
    switch (look_) {
      case Look::kRibbon:
        is_large_ ? html_ << " large" : html_ << " small";
        break;
      case Look::kIcon:
        html_ << " icon";
        break;
      case Look::kLine:
        html_ << " line";
        break;
    }
    if (is_hidden_) html_ << " hidden";
    if (!item_.object.empty()) html_ << " object";
    drawing_.WriteFindingClass(item_);
  }
  void WriteWidth() {
    const std::int32_t width = values_.Number("Width", 0);
    if (width > 0) html_ << " style=\"width:" << std::clamp(width, 24, 600) << "px\"";
  }
  void WriteFace() {
    if (item_.object.empty()) {
      drawing_.WriteIcon(item_, is_large_, strips_);
    } else if (strips_) {
      ++strips_->next;
    }
    html_ << "<span class=\"t";
    if (look_ == Look::kIcon) html_ << " vh";
    html_ << "\">" << drawing_.CaptionOf(item_) << "</span>";
    if (is_hidden_) html_ << "<span class=mark> hidden</span>";
  }
  void WriteArrow() { html_ << "<span class=arrow aria-hidden=true>\u25BE</span>"; }

  Drawing& drawing_;
  Html& html_;
  const Values values_;
  const Item item_;
  const Look look_;
  Strips* const strips_;
  const unsigned depth_;
  bool is_large_ = false;
  bool is_hidden_ = false;
  bool has_buttons_ = false;
  NodeIndex menu_ = kNoNode;
};

void DrawGroup(Drawing& drawing, NodeIndex node, Strips* strips, unsigned depth) {
  Item item = drawing.ItemOf(node, "Group", Values(drawing.Ui(), node));
  if (!drawing.IsShown(item)) return;
  Html& html = drawing.Out();
  html << "<div class=\"w group";
  drawing.WriteFindingClass(item);
  html << "\" role=group aria-label=\"" << drawing.CaptionOf(item) << "\"";
  drawing.WriteAnchor(item);
  html << "><button type=button class=\"b grip\"";
  drawing.WriteDescribedBy(item);
  html << "><span class=vh>Group " << drawing.CaptionOf(item) << "</span>";
  drawing.WriteBadgeAndTip(item);
  html << "</button>\n";
  DrawButtons(drawing, node, Look::kRibbon, strips, depth);
  html << "</div>\n";
}

}  // namespace

void DrawButton(Drawing& drawing, NodeIndex node, Look look, Strips* strips, unsigned depth) {
  Button(drawing, node, look, strips, depth).Draw();
}

void DrawButtons(Drawing& drawing, NodeIndex parent, Look look, Strips* strips, unsigned depth) {
  ForEachKnown(drawing.Ui(), parent, [&](NodeIndex child, const formats::Rule& rule) {
    if (IsButton(rule)) {
      DrawButton(drawing, child, look, strips, depth);
    } else if (rule.name == "RibbonGroup") {
      DrawGroup(drawing, child, strips, depth);
    } else if (rule.name == "Separator") {
      drawing.Out() << "<hr>\n";
    }
  });
}

}  // namespace sab::preview
