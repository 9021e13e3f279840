#include "preview/bars.h"

#include <algorithm>
#include <array>

#include "preview/button.h"
#include "text/ascii.h"
#include "text/numbers.h"

namespace sab::preview {

using xml::kNoNode;
using xml::NodeIndex;

namespace {

enum Edge : std::size_t { kTop, kLeft, kRight, kBottom, kFloating };
constexpr std::array<std::string_view, 5> kEdges = {"top", "left", "right", "bottom", "floating"};

// A toolbar or a window, with the order among those of its edge.
struct Bar {
  NodeIndex node;
  bool is_window;
  std::string_view identify;
  std::string_view left_of;
  std::string_view dock;
  Edge edge = kFloating;
  std::size_t order = 0;
};

Edge EdgeOf(std::string_view dock) {
  for (std::size_t edge = 0; edge < kFloating; ++edge) {
    if (EqualsIgnoringAsciiCase(dock, kEdges[edge])) return static_cast<Edge>(edge);
  }
  return kFloating;
}

class WorkArea {
 public:
  explicit WorkArea(Drawing& drawing) : drawing_(drawing), html_(drawing.Out()) {}

  void Draw() {
    Collect("ToolBars", false);
    Collect("CustomWnds", true);
    Dock();
    std::vector<NodeIndex> sections = drawing_.Sections("ToolBars");
    for (const NodeIndex section : drawing_.Sections("CustomWnds")) sections.push_back(section);
    html_ << "<div class=work>\n";
    for (const Edge edge : {kTop, kLeft}) DrawEdge(edge);
    html_ << "<div class=paper><span class=note>Drawing area</span></div>\n";
    for (const Edge edge : {kRight, kBottom, kFloating}) DrawEdge(edge);
    html_ << "</div>\n";
    drawing_.WriteFindings(sections);
  }

 private:
  void Collect(std::string_view section, bool is_window) {
    for (const NodeIndex part : drawing_.Sections(section)) {
      ForEachKnown(drawing_.Ui(), part, [&](NodeIndex child, const formats::Rule&) {
        const Values values(drawing_.Ui(), child);
        if (is_window && !drawing_.IsShown(values.Number("AppMode", -1))) return;
        bars_.push_back({child, is_window, values["Identify"], values["LeftOf"], values["Dock"]});
      });
    }
  }

  // What names another one to be left of, and no edge, is at its edge.
  void Dock() {
    std::unordered_map<std::string_view, std::size_t> toolbars;
    std::unordered_map<std::string_view, std::size_t> windows;
    for (std::size_t i = 0; i < bars_.size(); ++i) {
      (bars_[i].is_window ? windows : toolbars).try_emplace(bars_[i].identify, i);
      bars_[i].edge = EdgeOf(bars_[i].dock);
      bars_[i].order = 2 * i + 1;
    }
    for (Bar& bar : bars_) {
      const auto& known = bar.is_window ? windows : toolbars;
      const auto neighbour = known.find(bar.left_of);
      if (bar.left_of.empty() || neighbour == known.end()) continue;
      const Bar& right = bars_[neighbour->second];
      if (bar.dock.empty()) bar.edge = right.edge;
      if (bar.edge == right.edge && right.order > 0) bar.order = right.order - 1;
    }
  }

  void DrawEdge(Edge edge) {
    if (std::ranges::none_of(bars_, [&](const Bar& bar) { return bar.edge == edge; })) return;
    html_ << "<div class=\"edge " << kEdges[edge]
          << "\" role=group aria-label=\"Edge: " << kEdges[edge] << "\">\n";
    for (const Bar& bar : bars_) {
      if (bar.edge != edge) continue;
      bar.is_window ? DrawWindow(bar) : DrawToolbar(bar);
    }
    html_ << "</div>\n";
  }

  void DrawToolbar(const Bar& bar) {
    const Values values(drawing_.Ui(), bar.node);
    Item item = drawing_.ItemOf(bar.node, "Toolbar", values);
    OpenBar("toolbar", bar, item);
    DrawToolbarButtons(bar.node, false);
    html_ << "</div>\n";
  }

  void OpenBar(std::string_view type, const Bar& bar, const Item& item) {
    html_ << "<div class=\"w bar " << type;
    drawing_.WriteFindingClass(item);
    html_ << "\" role=group aria-label=\"" << drawing_.CaptionOf(item) << "\"";
    drawing_.WriteAnchor(item);
    html_ << " style=\"order:" << bar.order;
    if (bar.is_window) WriteSize(bar);
    html_ << "\"><button type=button class=\"b title\"";
    drawing_.WriteDescribedBy(item);
    html_ << ">";
    if (bar.is_window) WriteWindowIcon(bar.node);
    html_ << "<span class=t>" << drawing_.CaptionOf(item) << "</span>";
    drawing_.WriteBadgeAndTip(item);
    html_ << "</button>\n";
  }

  void DrawToolbarButtons(NodeIndex toolbar, bool is_copy) {
    const Values values(drawing_.Ui(), toolbar);
    const auto find = [&](std::string_view name) {
      return drawing_.GetPictures().Find(drawing_.Ui(), values["ResourcePath"], values[name]);
    };
    Strips strips{find("BmpDef"), find("BmpLarge")};
    bool is_cut = false;
    ForEachKnown(drawing_.Ui(), toolbar, [&](NodeIndex child, const formats::Rule& rule) {
      if (is_cut || (rule.type != formats::Type::kNone && rule.name != "DropDown")) return;
      if (is_copy && !drawing_.TakeCopy()) {
        is_cut = true;
        html_ << "<p class=note>More where the toolbar itself is</p>\n";
      } else if (rule.name == "Separator") {
        html_ << "<hr>\n";
      } else if (rule.name == "DropDown") {
        DrawDropDown(child, is_copy);
      } else if (rule.name == "Button") {
        DrawToolbarButton(child, is_copy, strips);
      }
    });
    for (const Picture* const strip : {&strips.small, &strips.large}) {
      if (!strip->complaint.empty()) drawing_.WritePicture(*strip);
    }
  }

  void DrawToolbarButton(NodeIndex node, bool is_copy, Strips& strips) {
    Item item = drawing_.ItemOf(node, "Toolbar button", Values(drawing_.Ui(), node));
    item.is_copy = is_copy;
    if (!drawing_.IsShown(item)) {
      ++strips.next;
      return;
    }
    html_ << "<div class=\"w line";
    if (!item.object.empty()) html_ << " object";
    drawing_.WriteFindingClass(item);
    html_ << "\"";
    drawing_.WriteAnchor(item);
    html_ << "><button type=button class=b";
    drawing_.WriteDescribedBy(item);
    html_ << ">";
    drawing_.WriteIcon(item, false, &strips);
    html_ << "<span class=t>" << drawing_.CaptionOf(item) << "</span>";
    drawing_.WriteBadgeAndTip(item);
    html_ << "</button></div>\n";
  }

  // The toolbar that it names is drawn in it once more; what that opens is not.
  void DrawDropDown(NodeIndex node, bool is_copy) {
    const std::string_view name = drawing_.Ui().TextOf(node);
    const NodeIndex toolbar = drawing_.Defined(formats::Subject::kToolbar, name);
    Item item{.node = node, .kind = "Drop-down", .text = name, .is_copy = is_copy};
    if (toolbar != kNoNode) {
      const std::string_view title = Values(drawing_.Ui(), toolbar)["Text"];
      if (!title.empty()) item.text = title;
    }
    const bool opens = toolbar != kNoNode && !is_copy;
    opens ? html_ << "<details class=\"w drop line" : html_ << "<div class=\"w line";
    drawing_.WriteFindingClass(item);
    html_ << "\"";
    if (opens) html_ << " name=v" << drawing_.Number() << "m";
    drawing_.WriteAnchor(item);
    opens ? html_ << "><summary class=b" : html_ << "><button type=button class=b";
    drawing_.WriteDescribedBy(item);
    html_ << "><span class=t>" << item.text
          << "</span><span class=arrow aria-hidden=true>\u25BE</span>";
    drawing_.WriteBadgeAndTip(item);
    opens ? html_ << "</summary><div class=pop>\n" : html_ << "</button></div>\n";
    if (!opens) return;
    DrawToolbarButtons(toolbar, true);
    html_ << "</div></details>\n";
  }

  // "240,600": the width counts at the sides, the height above and below.
  void WriteSize(const Bar& bar) {
    const std::string_view size = Values(drawing_.Ui(), bar.node)["Size"];
    const std::int32_t width = text::ParseInt(size);
    const std::size_t comma = std::min(size.find_first_of(",;x "), size.size());
    const std::int32_t height = comma == size.size() ? 0 : text::ParseInt(size.substr(comma + 1));
    if (width > 0) html_ << ";width:" << std::clamp(width, 60, 480) << "px";
    if (height > 0) html_ << ";min-height:" << std::clamp(height / 2, 60, 300) << "px";
  }

  void WriteWindowIcon(NodeIndex node) {
    const Values values(drawing_.Ui(), node);
    if (values["ICON"].empty()) return;
    drawing_.WritePicture(
        drawing_.GetPictures().Find(drawing_.Ui(), values["ResourcePath"], values["ICON"]));
  }

  void DrawWindow(const Bar& bar) {
    const Values values(drawing_.Ui(), bar.node);
    OpenBar("window", bar, drawing_.ItemOf(bar.node, "Window", values));
    html_ << "<p class=note>";
    if (!values["Object"].empty()) html_ << values["Object"] << "<br>";
    if (!values["Size"].empty()) html_ << "size " << values["Size"];
    html_ << "</p></div>\n";
  }

  Drawing& drawing_;
  Html& html_;
  std::vector<Bar> bars_;
};

}  // namespace

void DrawWorkArea(Drawing& drawing) { WorkArea(drawing).Draw(); }

void DrawStatusBar(Drawing& drawing) {
  const std::vector<NodeIndex> parts = drawing.Sections("StatusBar");
  const std::vector<NodeIndex> input_menu = drawing.Sections("IMenu");
  if (parts.empty() && input_menu.empty()) return;
  Html& html = drawing.Out();
  html << "<div class=status role=group aria-label=\"Status bar\">\n";
  const Values values(drawing.Ui(), parts);
  Strips strips{drawing.GetPictures().Find(drawing.Ui(), {}, values["Image"]), {}};
  for (const NodeIndex part : parts) DrawButtons(drawing, part, Look::kLine, &strips);
  if (!strips.small.complaint.empty()) drawing.WritePicture(strips.small);
  const bool has_input_menu = Values(drawing.Ui(), input_menu)["Has"] == "1";
  if (has_input_menu) html << "<span class=note>menu for input methods</span>\n";
  html << "</div>\n";
  drawing.WriteFindings(parts);
}

}  // namespace sab::preview
