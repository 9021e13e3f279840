#include "preview/ribbon.h"

#include <algorithm>

#include "preview/button.h"
#include "text/ascii.h"

namespace sab::preview {

using xml::kNoNode;
using xml::NodeIndex;

namespace {

Strips StripsOf(Drawing& drawing, const Values& values) {
  const auto find = [&](std::string_view name) {
    return drawing.GetPictures().Find(drawing.Ui(), values["ResourcePath"], values[name]);
  };
  return {find("ImageSmall"), find("ImageLarge")};
}

void WriteMissingStrips(Html& html, const Strips& strips) {
  for (const Picture* const strip : {&strips.small, &strips.large}) {
    if (strip->complaint.empty()) continue;
    html << "<span class=\"i file\">" << strip->name << "<span class=vh>: " << strip->complaint
         << "</span></span>";
  }
}

class Ribbon {
 public:
  explicit Ribbon(Drawing& drawing) : drawing_(drawing), html_(drawing.Out()) {}

  void Draw(std::string_view default_panel) {
    std::vector<NodeIndex> tabs;
    std::vector<NodeIndex> context_tabs;
    std::vector<NodeIndex> context_panels;
    const auto collect = [&](std::string_view section, std::vector<NodeIndex>& found) {
      for (const NodeIndex part : drawing_.Sections(section)) {
        ForEachKnown(drawing_.Ui(), part, [&](NodeIndex child, const formats::Rule& rule) {
          (rule.name == "RibbonTab" ? found : context_panels).push_back(child);
        });
      }
    };
    collect("RibbonBar", tabs);
    collect("ContextRibbonElement", context_tabs);
    ChooseTab(tabs, default_panel);
    html_ << "<div class=tabs role=group aria-label=\"Ribbon\">\n";
    DrawMainButton();
    for (const NodeIndex tab : tabs) DrawTab(tab, false);
    for (const NodeIndex tab : context_tabs) DrawTab(tab, true);
    DrawContextPanels(context_panels);
    const std::vector<NodeIndex> minimize = drawing_.Sections("RibbonMinimizeButton");
    if (Values(drawing_.Ui(), minimize)["Enable"] == "1") {
      html_
          << "<button type=button class=\"b minimize\">\u2303<span class=vh>Button that minimizes "
             "the ribbon</span></button>\n";
    }
    html_ << "</div>\n";
  }

 private:
  // That of the default panel, else the first one.
  void ChooseTab(const std::vector<NodeIndex>& tabs, std::string_view default_panel) {
    for (const NodeIndex tab : tabs) {
      const Values values(drawing_.Ui(), tab);
      if (!drawing_.IsShown(values.Number("AppMode", -1))) continue;
      if (chosen_ == kNoNode) chosen_ = tab;
      bool has_panel = false;
      if (!default_panel.empty()) {
        ForEachKnown(drawing_.Ui(), tab, [&](NodeIndex child, const formats::Rule& rule) {
          has_panel = has_panel || (rule.name == "RibbonPanel" &&
                                    Values(drawing_.Ui(), child)["Identify"] == default_panel);
        });
      }
      if (has_panel) {
        chosen_ = tab;
        return;
      }
    }
  }

  void DrawMainButton() {
    const std::vector<NodeIndex> parts = drawing_.Sections("MainButton");
    if (parts.empty()) return;
    const Values values(drawing_.Ui(), parts);
    Item item = drawing_.ItemOf(parts.front(), "Application button", values);
    item.text = values["ScenicText"];
    html_ << "<details class=\"w drop line main";
    drawing_.WriteFindingClass(item);
    html_ << "\" name=v" << drawing_.Number() << "m";
    drawing_.WriteAnchor(item);
    html_ << "><summary class=b";
    drawing_.WriteDescribedBy(item);
    html_ << "><span class=t>" << drawing_.CaptionOf(item) << "</span>";
    drawing_.WriteBadgeAndTip(item);
    html_ << "</summary><div class=pop>\n";
    const auto find = [&](std::string_view name) {
      return drawing_.GetPictures().Find(drawing_.Ui(), values["ResourcePath"], values[name]);
    };
    html_ << "<p class=pictures>";
    for (const std::string_view name : {"Icon", "ImageSmall", "ImageLarge"}) {
      if (!values[name].empty()) drawing_.WritePicture(find(name));
    }
    html_ << "</p>\n";
    if (!values["RecentDocDescription"].empty()) {
      html_ << "<p class=heading>" << values["RecentDocDescription"] << "</p><hr>\n";
    }
    DrawCommandLine(values, "OptionCommand", "Options command");
    DrawCommandLine(values, "ExitCommand", "Exit command");
    html_ << "</div></details>\n";
  }

  void DrawCommandLine(const Values& values, std::string_view name, std::string_view kind) {
    if (values[name].empty()) return;
    const Item item{.node = values.NodeOf(name), .kind = kind, .command = values[name]};
    html_ << "<div class=\"w line\"";
    drawing_.WriteAnchor(item);
    html_ << "><button type=button class=b";
    drawing_.WriteDescribedBy(item);
    html_ << ">";
    drawing_.WriteIcon(item, false, nullptr);
    html_ << "<span class=t>" << drawing_.CaptionOf(item) << "</span>";
    drawing_.WriteBadgeAndTip(item);
    html_ << "</button></div>\n";
  }

  void OpenTab(bool is_chosen, std::size_t id) {
    html_ << "<input type=radio class=vh name=v" << drawing_.Number() << "r id=v"
          << drawing_.Number() << "r" << id;
    if (is_chosen) html_ << " checked";
  }

  void DrawTab(NodeIndex tab, bool is_context) {
    const Values values(drawing_.Ui(), tab);
    const Item item = drawing_.ItemOf(tab, is_context ? "Context tab" : "Tab", values);
    if (!drawing_.IsShown(item)) return;
    html_ << "<div class=tab";
    drawing_.WriteAnchor(item);
    html_ << ">";
    OpenTab(tab == chosen_, tab);
    drawing_.WriteDescribedBy(item);
    html_ << "><label class=\"b";
    if (is_context) html_ << " context";
    drawing_.WriteFindingClass(item);
    html_ << "\" for=v" << drawing_.Number() << "r" << tab << "><span class=t>"
          << drawing_.CaptionOf(item) << "</span>";
    if (is_context) html_ << "<span class=mark> context</span>";
    if (!values["Key"].empty()) html_ << " <kbd>" << values["Key"] << "</kbd>";
    drawing_.WriteBadgeAndTip(item);
    html_ << "</label><div class=panels>\n";
    std::vector<NodeIndex> hidden;
    ForEachKnown(drawing_.Ui(), tab, [&](NodeIndex child, const formats::Rule& rule) {
      if (rule.name == "RibbonPanel") DrawPanel(child);
      if (rule.name == "HiddenButtons") hidden.push_back(child);
    });
    if (!hidden.empty()) DrawHiddenButtons(hidden);
    html_ << "</div></div>\n";
  }

  void DrawContextPanels(const std::vector<NodeIndex>& panels) {
    if (panels.empty()) return;
    html_ << "<div class=tab>";
    OpenTab(chosen_ == kNoNode, 0);
    html_ << "><label class=\"b context\" for=v" << drawing_.Number()
          << "r0><span class=t>Context panels</span></label><div class=panels>\n";
    for (const NodeIndex panel : panels) DrawPanel(panel);
    html_ << "</div></div>\n";
  }

  void DrawPanel(NodeIndex panel) {
    const Values values(drawing_.Ui(), panel);
    const Item item = drawing_.ItemOf(panel, "Panel", values);
    if (!drawing_.IsShown(item)) return;
    html_ << "<div class=\"w panel";
    drawing_.WriteFindingClass(item);
    html_ << "\" role=group aria-label=\"" << drawing_.CaptionOf(item) << "\"";
    drawing_.WriteAnchor(item);
    html_ << "><div class=buttons>\n";
    Strips strips = StripsOf(drawing_, values);
    DrawButtons(drawing_, panel, Look::kRibbon, &strips);
    html_ << "</div><div class=foot><button type=button class=\"b title\"";
    drawing_.WriteDescribedBy(item);
    html_ << "><span class=t>" << drawing_.CaptionOf(item) << "</span>";
    drawing_.WriteBadgeAndTip(item);
    html_ << "</button>";
    WriteMissingStrips(html_, strips);
    if (!values["LaunchButton"].empty()) {
      const Item launch{.node = values.NodeOf("LaunchButton"),
                        .kind = "Launch button",
                        .command = values["LaunchButton"]};
      html_ << "<button type=button class=\"b launch\"";
      drawing_.WriteAnchor(launch);
      drawing_.WriteDescribedBy(launch);
      html_ << "><span aria-hidden=true>\u2198</span><span class=vh>" << drawing_.CaptionOf(launch)
            << "</span>";
      drawing_.WriteBadgeAndTip(launch);
      html_ << "</button>";
    }
    html_ << "</div></div>\n";
  }

  void DrawHiddenButtons(const std::vector<NodeIndex>& parts) {
    html_ << "<div class=\"w panel store\" role=group aria-label=\"Hidden buttons\">"
             "<div class=buttons>\n";
    Strips strips = StripsOf(drawing_, Values(drawing_.Ui(), parts));
    for (const NodeIndex part : parts) DrawButtons(drawing_, part, Look::kRibbon, &strips);
    html_ << "</div><div class=foot><span class=title>Hidden buttons</span>";
    WriteMissingStrips(html_, strips);
    html_ << "</div>\n";
    drawing_.WriteFindings(parts);
    html_ << "</div>\n";
  }

  Drawing& drawing_;
  Html& html_;
  NodeIndex chosen_ = kNoNode;
};

void DrawSearch(Drawing& drawing) {
  const std::vector<NodeIndex> parts = drawing.Sections("CommandSearch");
  const Values values(drawing.Ui(), parts);
  const std::string_view enable = values["Enable"];
  const bool is_enabled = enable == "1" || EqualsIgnoringAsciiCase(enable, "true");
  if (!is_enabled || !drawing.IsShown(values.Number("AppMode", -1))) return;
  Item item{.node = parts.front(), .kind = "Command search", .text = values["ToolTip"]};
  item.app_mode = values.Number("AppMode", -1);
  Html& html = drawing.Out();
  html << "<div class=\"w search";
  drawing.WriteFindingClass(item);
  html << "\"";
  drawing.WriteAnchor(item);
  html << "><input type=search class=b readonly aria-label=\"" << drawing.CaptionOf(item)
       << "\" placeholder=\"" << values["Text"] << "\"";
  drawing.WriteDescribedBy(item);
  const std::int32_t width = values.Number("Width", -1);
  if (width > 0) html << " style=\"width:" << std::clamp(width, 60, 600) << "px\"";
  html << ">";
  drawing.WriteBadgeAndTip(item);
  html << "</div>\n";
}

}  // namespace

void DrawCaption(Drawing& drawing, std::string_view title) {
  Html& html = drawing.Out();
  html << "<div class=caption><div class=tools role=group aria-label=\"Quick access\">\n";
  for (const NodeIndex section : drawing.Sections("QuickAccessTool")) {
    DrawButtons(drawing, section, Look::kIcon, nullptr);
  }
  html << "</div><span class=name>" << title << "</span>\n";
  DrawSearch(drawing);
  html << "<div class=tools role=group aria-label=\"Buttons of the caption\">\n";
  for (const NodeIndex section : drawing.Sections("CaptionCustomButtons")) {
    DrawButtons(drawing, section, Look::kLine, nullptr);
  }
  html << "</div></div>\n";
}

void DrawRibbon(Drawing& drawing, std::string_view default_panel) {
  Ribbon(drawing).Draw(default_panel);
}

}  // namespace sab::preview
