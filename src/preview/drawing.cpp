#include "preview/drawing.h"

#include "text/utf.h"

namespace sab::preview {

using check::Finding;
using check::Severity;
using project::FileIndex;
using xml::kNoNode;
using xml::NodeIndex;

namespace {

Severity WorstOf(std::span<const Finding* const> findings) {
  Severity worst = Severity::kNone;
  for (const Finding* const finding : findings) worst = std::max(worst, finding->severity);
  return worst;
}

}  // namespace

Drawing::Drawing(const project::Project& project, const check::HostIds& host_ids,
                 const ElementFindings& findings, Pictures& pictures,
                 std::optional<std::int32_t> app_mode)
    : project_(project),
      host_ids_(host_ids),
      findings_(findings),
      pictures_(pictures),
      app_mode_(app_mode) {}

void Drawing::Begin(const View& view, unsigned number) {
  view_ = view;
  number_ = number;
  ui_ = &project_.At(view.ui);
  commands_.emplace(project_, view.ui, view.environment);
  drawn_in_[view.ui].resize(ui_->Xml().NodeCount());
  menus_.clear();
  toolbars_.clear();
  for (const project::Identifier& identifier : ui_->Identifiers()) {
    const formats::Rule& rule = ui_->GetSchema().At(identifier.rule);
    if (rule.role != formats::Role::kDefines || identifier.text.empty()) continue;
    const NodeIndex element = ui_->Xml().ParentOf(identifier.node);
    if (rule.subject == formats::Subject::kMenu) menus_.try_emplace(identifier.text, element);
    if (rule.subject == formats::Subject::kToolbar) toolbars_.try_emplace(identifier.text, element);
  }
}

NodeIndex Drawing::Defined(formats::Subject subject, std::string_view identifier) const {
  const auto& defined = subject == formats::Subject::kMenu ? menus_ : toolbars_;
  const auto found = defined.find(identifier);
  return found == defined.end() ? kNoNode : found->second;
}

std::vector<NodeIndex> Drawing::Sections(std::string_view name) const {
  std::vector<NodeIndex> sections;
  ForEachKnown(*ui_, ui_->Xml().Root(), [&](NodeIndex section, const formats::Rule& rule) {
    if (rule.name == name) sections.push_back(section);
  });
  return sections;
}

Item Drawing::ItemOf(NodeIndex node, std::string_view kind, const Values& values) const {
  return {.node = node,
          .kind = kind,
          .identify = values["Identify"],
          .command = values["Command"],
          .text = values["Text"],
          .object = values["Object"],
          .menu = values["Menu"],
          .option = values["Option"],
          .app_mode = values.Number("AppMode", -1)};
}

std::string_view Drawing::CaptionOf(const Item& item) const {
  if (!item.text.empty()) return item.text;
  const Command& command = commands_->Find(item.command);
  if (!command.local_name.empty()) return command.local_name;
  if (command.prompt != kNoNode) {
    const std::string_view title = Values(*ui_, command.prompt)["ToolTip"];
    if (!title.empty()) return title;
  }
  if (!item.command.empty()) return item.command;
  if (!item.identify.empty()) return item.identify;
  return item.kind;
}

void Drawing::WriteFindingClass(const Item& item) {
  switch (WorstOf(findings_.Of(view_.ui, item.node))) {
    case Severity::kError:
      html_ << " has-error";
      break;
    case Severity::kWarning:
      html_ << " has-warning";
      break;
    case Severity::kInfo:
      html_ << " has-info";
      break;
    case Severity::kNone:
      break;
  }
}

void Drawing::WriteAnchor(const Item& item) {
  if (item.is_copy) return;
  html_ << " id=v" << number_ << "-" << item.node;
  if (!item.identify.empty()) html_ << " data-id=\"" << item.identify << "\"";
  ++drawn_;
  unsigned& first = drawn_in_[view_.ui][item.node];
  if (first == 0) first = number_ + 1;
}

void Drawing::WriteDescribedBy(const Item& item) {
  if (!item.is_copy) html_ << " aria-describedby=v" << number_ << "-" << item.node << "t";
}

void Drawing::WriteFact(std::string_view label, std::string_view value) {
  if (value.empty()) return;
  html_ << "<span class=fact>" << label << " <b>" << value << "</b></span> ";
}

void Drawing::WriteCommand(const Item& item) {
  if (item.command.empty()) return;
  const Command& command = commands_->Find(item.command);
  html_ << "<span class=fact>command <b>" << item.command << "</b>";
  if (command.is_defined) {
    if (!command.local_name.empty()) html_ << " “<b>" << command.local_name << "</b>”";
    html_ << " defined at ";
    WritePlace(command.definition.file, command.definition.identifier.node);
  } else if (host_ids_.Has(formats::Subject::kCommand, item.command)) {
    html_ << " of the host itself";
  } else if (view_.environment != project::kNoFile) {
    html_ << " not defined in this environment";
  }
  html_ << "</span> ";
}

// As the host's tooltip: title and description of the command.
void Drawing::WriteTipHead(const Item& item) {
  const Command& command = commands_->Find(item.command);
  std::string_view title = CaptionOf(item);
  std::string_view description;
  if (command.prompt != kNoNode) {
    const Values prompt(*ui_, command.prompt);
    if (!prompt["ToolTip"].empty()) title = prompt["ToolTip"];
    description = prompt["Description"].empty() ? prompt["Text"] : prompt["Description"];
  }
  html_ << "<b class=head>" << title << "</b> ";
  if (!description.empty()) html_ << "<span class=about>" << description << "</span> ";
  html_ << "<br>";
}

void Drawing::WriteBadgeAndTip(const Item& item) {
  const auto findings = findings_.Of(view_.ui, item.node);
  if (!findings.empty()) {
    const Severity worst = WorstOf(findings);
    html_ << "<span class=badge>" << SymbolOf(worst) << "<span class=vh> " << check::NameOf(worst)
          << "</span></span>";
  }
  html_ << "<span class=tip aria-hidden=true";
  if (!item.is_copy) html_ << " id=v" << number_ << "-" << item.node << "t";
  html_ << ">";
  WriteTipHead(item);
  html_ << item.kind << " ";
  WriteFact("", item.identify);
  WriteCommand(item);
  WriteFact("keys", commands_->Find(item.command).keys);
  WriteFact("menu", item.menu);
  WriteFact("object", item.object);
  WriteFact("option", item.option);
  if (item.app_mode != -1) html_ << "<span class=fact>mode <b>" << item.app_mode << "</b></span> ";
  html_ << "<span class=fact>at ";
  WritePlace(item.node);
  html_ << "</span>";
  for (const Finding* const finding : findings) {
    html_ << "<span class=message>" << SymbolOf(finding->severity) << " "
          << check::NameOf(finding->severity) << ": " << MessageOf(*finding) << "</span>";
  }
  html_ << "</span>";
}

void Drawing::WriteFindings(const std::vector<NodeIndex>& elements) {
  bool is_open = false;
  for (const NodeIndex element : elements) {
    for (const Finding* const finding : findings_.Of(view_.ui, element)) {
      if (!is_open) html_ << "<ul class=\"findings here\">";
      is_open = true;
      html_ << "<li class=is-" << check::NameOf(finding->severity) << "><span>"
            << SymbolOf(finding->severity) << " " << check::NameOf(finding->severity) << "</span> "
            << MessageOf(*finding) << " <span class=place>" << finding->where.file << ":"
            << finding->where.start.line << ":" << finding->where.start.column << "</span></li>\n";
    }
  }
  if (is_open) html_ << "</ul>\n";
}

void Drawing::WritePicture(const Picture& picture) {
  if (picture.number > 0) {
    html_ << "<span class=\"i p" << picture.number << "\"></span>";
  } else {
    html_ << "<span class=\"i file\">" << picture.name << "</span>";
  }
}

void Drawing::WriteIcon(const Item& item, bool is_large, Strips* strips) {
  const std::uint32_t tile = strips ? strips->next++ : 0;
  const NodeIndex image = commands_->Find(item.command).image;
  if (image != kNoNode) {
    const Values values(*ui_, image);
    const auto find = [&](std::string_view wanted, std::string_view other) {
      const std::string_view name = values[is_large ? wanted : other];
      return pictures_.Find(*ui_, values["ResourcePath"],
                            name.empty() ? values[is_large ? other : wanted] : name);
    };
    const Picture light = find("ImageLarge", "ImageSmall");
    const Picture dark = find("ImageDarkLarge", "ImageDarkSmall");
    if (light.number > 0 && dark.number > 0) {
      html_ << "<span class=\"i light p" << light.number << "\"></span><span class=\"i dark p"
            << dark.number << "\"></span>";
      return;
    }
    if (!light.name.empty()) return WritePicture(light);
  }
  if (strips) {
    const Picture& wanted = is_large && strips->large.number > 0 ? strips->large : strips->small;
    const Picture& strip = wanted.number > 0 ? wanted : strips->large;
    if (strip.number > 0 && tile < std::max(strip.tiles, 1U)) {
      html_ << "<span class=\"i strip p" << strip.number << "\" style=\"--n:" << tile
            << "\"></span>";
      return;
    }
  }
  const std::string_view caption = CaptionOf(item);
  const std::size_t size = text::Utf8CharacterSize(caption);
  html_ << "<span class=\"i letter\" aria-hidden=true>" << caption.substr(0, size) << "</span>";
}

void Drawing::WritePlace(FileIndex index, NodeIndex element) {
  const project::File& file = project_.At(index);
  const xml::Place place = file.PlaceOf(file.TagSpan(element).from);
  html_ << "<span class=place>" << file.Path() << ":" << place.line << ":" << place.column
        << "</span>";
}

void Drawing::WriteTooDeep(NodeIndex element) {
  html_ << "<p class=note>Deeper levels are not drawn: ";
  WritePlace(element);
  html_ << "</p>";
}

std::string Drawing::AnchorOf(FileIndex file, NodeIndex element) const {
  const auto found = drawn_in_.find(file);
  if (found == drawn_in_.end() || found->second[element] == 0) return {};
  return "v" + std::to_string(found->second[element] - 1) + "-" + std::to_string(element);
}

}  // namespace sab::preview
