#include "preview/tables.h"

#include <initializer_list>

namespace sab::preview {

using xml::kNoNode;
using xml::NodeIndex;

namespace {

constexpr std::size_t kMaxOpenRows = 200;

// An entry with the command, or the group of keys, that it belongs to.
struct Row {
  NodeIndex node;
  std::string_view owner;
};

class Tables {
 public:
  explicit Tables(Drawing& drawing) : drawing_(drawing), html_(drawing.Out()) {}

  void Draw() {
    CollectCommands();
    CollectGroups();
    DrawAccelerators("Accelerators of commands", accelerators_, false);
    DrawAccelerators("Accelerators of groups", group_accelerators_, true);
    DrawTexts("Prompts", prompts_, {"Text", "ToolTip", "Description"}, "ToolTipImage");
    DrawTexts("Instructions", instructions_, {"Ins", "CommandPara"}, {});
    DrawImages();
  }

 private:
  void CollectCommands() {
    for (const NodeIndex section : drawing_.Sections("CommandsUI")) {
      ForEachKnown(drawing_.Ui(), section, [&](NodeIndex command_ui, const formats::Rule&) {
        std::string_view command;
        ForEachKnown(drawing_.Ui(), command_ui, [&](NodeIndex child, const formats::Rule& rule) {
          if (rule.name == "Command") command = drawing_.Ui().TextOf(child);
          if (rule.name == "Accel") accelerators_.push_back({child, command});
          if (rule.name == "Prompt") prompts_.push_back({child, command});
          if (rule.name == "Instruction") instructions_.push_back({child, command});
          if (rule.name == "Image") images_.push_back({child, command});
        });
      });
    }
  }

  void CollectGroups() {
    for (const NodeIndex section : drawing_.Sections("ToolAccels")) {
      ForEachKnown(drawing_.Ui(), section, [&](NodeIndex group, const formats::Rule&) {
        const std::string_view name = Values(drawing_.Ui(), group)["Identify"];
        groups_.push_back({group, name});
        ForEachKnown(drawing_.Ui(), group, [&](NodeIndex child, const formats::Rule& rule) {
          if (rule.name == "Accel") group_accelerators_.push_back({child, name});
        });
      });
    }
  }

  void Open(std::string_view title, std::size_t count,
            std::initializer_list<std::string_view> columns) {
    html_ << "<details class=card";
    // A long table would keep a browser from showing the rest.
    if (count <= kMaxOpenRows) html_ << " open";
    html_ << "><summary><h3>" << title << " <span class=note>" << count
          << "</span></h3></summary><div class=wide tabindex=0 role=region aria-label=\"" << title
          << "\"><table><thead><tr>";
    for (const std::string_view column : columns) {
      html_ << "<th scope=col>" << column << "</th>";
    }
    html_ << "</tr></thead><tbody>\n";
  }
  void Close() { html_ << "</tbody></table></div></details>\n"; }

  void OpenRow(const Row& row) {
    const Item item{.node = row.node, .kind = "Entry"};
    html_ << "<tr class=\"w";
    drawing_.WriteFindingClass(item);
    html_ << "\"";
    drawing_.WriteAnchor(item);
    html_ << ">";
  }
  void Cell(std::string_view text) { html_ << "<td>" << text << "</td>"; }
  void CloseRow(const Row& row) {
    html_ << "<td>";
    drawing_.WritePlace(row.node);
    drawing_.WriteFindings({row.node});
    html_ << "</td></tr>\n";
  }

  // What shares its key with another one has the finding in its row.
  void DrawAccelerators(std::string_view title, const std::vector<Row>& rows, bool has_groups) {
    if (rows.empty() && (!has_groups || groups_.empty())) return;
    if (has_groups) {
      Open(title, rows.size(), {"Group", "Command", "Key", "Ribbon key", "Place"});
    } else {
      Open(title, rows.size(), {"Command", "Key", "Ribbon key", "Place"});
    }
    std::size_t group = 0;
    for (const Row& row : rows) {
      for (; has_groups && group < groups_.size() && groups_[group].node < row.node; ++group) {
        DrawGroupRow(groups_[group]);
      }
      const Values values(drawing_.Ui(), row.node);
      OpenRow(row);
      if (has_groups) Cell(row.owner);
      Cell(has_groups ? values["Command"] : row.owner);
      html_ << "<td>" << KeyText(values["Key"], values["Ctrl"]) << "</td>";
      Cell(values["RibbonKey"]);
      CloseRow(row);
    }
    for (; has_groups && group < groups_.size(); ++group) DrawGroupRow(groups_[group]);
    Close();
  }

  void DrawGroupRow(const Row& group) {
    html_ << "<tr class=w";
    drawing_.WriteAnchor({.node = group.node, .identify = group.owner});
    html_ << "><th scope=row colspan=4>" << group.owner << "</th>";
    CloseRow(group);
  }

  void DrawTexts(std::string_view title, const std::vector<Row>& rows,
                 std::initializer_list<std::string_view> names, std::string_view picture) {
    if (rows.empty()) return;
    if (names.size() == 3) {
      Open(title, rows.size(), {"Command", "Text", "Tooltip", "Description", "Picture", "Place"});
    } else {
      Open(title, rows.size(), {"Command", "Typed", "Parameter", "Place"});
    }
    for (const Row& row : rows) {
      const Values values(drawing_.Ui(), row.node);
      OpenRow(row);
      Cell(values["Command"].empty() ? row.owner : values["Command"]);
      for (const std::string_view name : names) Cell(values[name]);
      if (!picture.empty()) PictureCell({}, values[picture]);
      CloseRow(row);
    }
    Close();
  }

  void PictureCell(std::string_view folder, std::string_view name) {
    html_ << "<td>";
    if (!name.empty()) {
      const Picture picture = drawing_.GetPictures().Find(drawing_.Ui(), folder, name);
      drawing_.WritePicture(picture);
      if (picture.number > 0) {
        html_ << " " << name;
      } else {
        html_ << " <span class=note>" << picture.complaint << "</span>";
      }
    }
    html_ << "</td>";
  }

  void DrawImages() {
    if (images_.empty()) return;
    Open("Pictures of commands", images_.size(),
         {"Command", "Small", "Large", "Small, dark", "Large, dark", "Type", "Folder", "Place"});
    for (const Row& row : images_) {
      const Values values(drawing_.Ui(), row.node);
      OpenRow(row);
      Cell(row.owner);
      for (const std::string_view name :
           {"ImageSmall", "ImageLarge", "ImageDarkSmall", "ImageDarkLarge"}) {
        PictureCell(values["ResourcePath"], values[name]);
      }
      Cell(values["ImageType"]);
      Cell(values["ResourcePath"]);
      CloseRow(row);
    }
    Close();
  }

  Drawing& drawing_;
  Html& html_;
  std::vector<Row> accelerators_;
  std::vector<Row> groups_;
  std::vector<Row> group_accelerators_;
  std::vector<Row> prompts_;
  std::vector<Row> instructions_;
  std::vector<Row> images_;
};

}  // namespace

void DrawTables(Drawing& drawing) { Tables(drawing).Draw(); }

}  // namespace sab::preview
