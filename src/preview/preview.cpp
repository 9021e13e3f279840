#include "preview/preview.h"

#include <array>

#include "preview/bars.h"
#include "preview/drawing.h"
#include "preview/menus.h"
#include "preview/ribbon.h"
#include "preview/style.h"
#include "preview/tables.h"

namespace sab::preview {

using check::Finding;
using check::Severity;
using formats::Kind;
using project::File;
using project::FileIndex;
using project::kNoFile;
using xml::NodeIndex;

namespace {

constexpr std::size_t kMaxListedFindings = 1000;

// The one script, and its hash in the policy of the page: another script does not run.
constexpr char kReloadScript[] =
    "<script>new "
    "EventSource(\"changes?\"+document.body.dataset.state).onmessage=()=>location.reload()</"
    "script>";
constexpr char kReloadPolicy[] =
    "; script-src 'sha256-d1DZwmkfXwSpaLbXQ4awSVgyNK9NAegqr6GLRtmYBFY='; connect-src 'self'";

// Of a document in which the first element of a name counts.
std::string_view FirstText(const File& file, std::string_view name) {
  std::string_view text;
  if (!file.HasSchema()) return text;
  ForEachKnown(file, file.Xml().Root(), [&](NodeIndex child, const formats::Rule& rule) {
    if (rule.name == name && text.empty()) text = file.TextOf(child);
  });
  return text;
}

std::string_view NameOfPath(std::string_view path) {
  return path.substr(path.find_last_of("/\\") + 1);
}

class PageWriter {
 public:
  PageWriter(const project::Project& project, FileIndex start, const check::Findings& findings,
             const check::HostIds& host_ids, const Options& options)
      : project_(project),
        start_(start),
        findings_(findings),
        options_(options),
        by_element_(project, findings),
        pictures_(options.images),
        drawing_(project, host_ids, by_element_, pictures_, options.app_mode) {}

  Page Write() {
    CollectViews();
    drawing_.Out().Reserve(std::size_t{1} << 20U);
    for (unsigned number = 0; number < views_.size(); ++number) WriteView(views_[number], number);
    const std::string body = drawing_.Out().Take();
    Html page;
    page.Reserve(body.size() + pictures_.Styles().size() + (std::size_t{1} << 16U));
    WriteHead(page);
    WriteFindings(page);
    page << "<main class=views>\n";
    page.Markup(body) << "</main>\n";
    if (options_.state) page << kReloadScript;
    page << "</body></html>\n";
    return {page.Take(), drawn_views_, drawing_.DrawnCount(), pictures_.EmbeddedCount(),
            pictures_.Paths()};
  }

 private:
  void CollectViews() {
    if (project_.At(start_).GetKind() == Kind::kUserInterface) {
      views_.push_back({start_, kNoFile});
      return;
    }
    std::vector<FileIndex> ui(project_.FileCount(), kNoFile);
    for (const project::Link& link : project_.Links()) {
      if (link.kind == Kind::kUserInterface && ui[link.from] == kNoFile) ui[link.from] = link.to;
    }
    for (const FileIndex environment : project_.Below(start_, Kind::kEnvironment)) {
      views_.push_back({ui[environment], environment});
    }
  }

  std::string_view ProductName() const { return FirstText(project_.At(start_), "ProductName"); }

  void WriteHead(Html& page) const {
    const std::string_view file = NameOfPath(project_.At(start_).Path());
    page << "<!DOCTYPE html>\n<html lang=en><head><meta charset=utf-8>\n"
            "<meta http-equiv=Content-Security-Policy content=\"default-src 'none'; img-src data:; "
            "style-src 'unsafe-inline'; base-uri 'none'; form-action 'none'";
    if (options_.state) page << kReloadPolicy;
    page << "\">\n<meta name=viewport content=\"width=device-width\">\n<title>" << file
         << " \u2013 preview</title>\n<style>";
    page.Markup(kStyle).Markup(pictures_.Styles());
    page << "</style></head><body";
    if (options_.state) page << " data-state=" << *options_.state;
    page << ">\n<header><h1>";
    if (ProductName().empty()) {
      page << file;
    } else {
      page << ProductName() << " <span class=note>" << file << "</span>";
    }
    page << "</h1><p class=note>Preview by sabxml: " << views_.size()
         << (views_.size() == 1 ? std::string_view(" user interface, ")
                                : std::string_view(" user interfaces, "))
         << drawing_.DrawnCount() << " elements";
    if (options_.app_mode) page << ", only what mode " << *options_.app_mode << " shows";
    page
        << ". Point at an element, or move to it with the keyboard, to see where it comes from.</p>"
           "</header>\n";
  }

  void WriteFindings(Html& page) const {
    if (findings_.list.empty() && findings_.notes.empty()) return;
    std::array<std::size_t, 4> counts{};
    for (const Finding& finding : findings_.list) {
      ++counts[static_cast<std::size_t>(finding.severity)];
    }
    const bool is_urgent = counts[static_cast<std::size_t>(Severity::kError)] > 0 ||
                           counts[static_cast<std::size_t>(Severity::kWarning)] > 0;
    page << "<nav aria-label=Findings><details class=\"card all\"";
    if (is_urgent) page << " open";
    page << "><summary><h2>Findings";
    for (const Severity severity : {Severity::kError, Severity::kWarning, Severity::kInfo}) {
      const std::size_t count = counts[static_cast<std::size_t>(severity)];
      if (count == 0) continue;
      page << " <span class=\"count is-" << check::NameOf(severity) << "\">" << SymbolOf(severity)
           << " " << count << " " << check::NameOf(severity);
      if (count > 1) page << "s";
      page << "</span>";
    }
    page << "</h2></summary><ul class=findings>\n";
    std::size_t listed = 0;
    for (const Severity severity : {Severity::kError, Severity::kWarning, Severity::kInfo}) {
      for (const Finding& finding : findings_.list) {
        if (finding.severity != severity || listed == kMaxListedFindings) continue;
        ++listed;
        WriteFinding(page, finding);
      }
    }
    if (findings_.list.size() > kMaxListedFindings) {
      page << "<li>and " << findings_.list.size() - kMaxListedFindings
           << " more, which sabxml check prints</li>\n";
    }
    for (const std::string& note : findings_.notes) page << "<li>" << note << "</li>\n";
    page << "</ul></details></nav>\n";
  }

  void WriteFinding(Html& page, const Finding& finding) const {
    const File& file = project_.At(finding.file);
    const std::string anchor = file.HasSchema()
                                   ? drawing_.AnchorOf(finding.file, by_element_.OwnerOf(finding))
                                   : std::string();
    page << "<li class=is-" << check::NameOf(finding.severity) << "><span>"
         << SymbolOf(finding.severity) << " " << check::NameOf(finding.severity) << "</span> "
         << MessageOf(finding) << " ";
    if (!anchor.empty()) page << "<a href=\"#" << anchor << "\">";
    page << "<span class=place>" << finding.where.file;
    if (finding.where.start.line > 0) {
      page << ":" << finding.where.start.line << ":" << finding.where.start.column;
    }
    page << "</span>";
    if (!anchor.empty()) page << "</a>";
    page << " <span class=note>" << check::RuleFor(finding.mistake).id << "</span></li>\n";
  }

  void WriteView(const View& view, unsigned number) {
    Html& html = drawing_.Out();
    const bool is_environment = view.environment != kNoFile;
    const std::string_view identify =
        is_environment ? FirstText(project_.At(view.environment), "Identify") : std::string_view();
    const std::string_view path = project_.At(is_environment ? view.environment : view.ui).Path();
    const std::string_view name = identify.empty() ? NameOfPath(path) : identify;
    html << "<section class=view aria-label=\"" << name << "\"";
    if (!identify.empty()) html << " data-environment=\"" << identify << "\"";
    html << ">";
    if (is_environment) {
      html << "<input type=radio class=vh name=views id=e" << number;
      if (number == 0) html << " checked";
      html << "><label class=b for=e" << number << ">" << name << "</label>";
    }
    html << "<div class=screen";
    if (!is_environment) html << " style=\"display:block\"";
    html << ">\n<h2>" << name << " <span class=place>" << path << "</span></h2>\n";
    const bool is_readable = view.ui != kNoFile && project_.At(view.ui).HasSchema();
    if (is_readable) {
      WriteScreen(view, number, name);
    } else {
      html << "<p class=card>\u2716 The user interface of this environment cannot be read; the "
              "findings say why.</p>\n";
    }
    html << "</div></section>\n";
  }

  void WriteScreen(const View& view, unsigned number, std::string_view name) {
    Html& html = drawing_.Out();
    drawing_.Begin(view, number);
    ++drawn_views_;
    drawing_.WriteFindings({drawing_.Ui().Xml().Root()});
    for (const std::string_view section : {"RibbonBar", "ContextRibbonElement", "QuickAccessTool",
                                           "CaptionCustomButtons", "CommandsUI", "ToolAccels"}) {
      drawing_.WriteFindings(drawing_.Sections(section));
    }
    std::string title(ProductName());
    title += title.empty() ? "" : " \u2013 ";
    title += name;
    html << "<div class=frame>\n";
    DrawCaption(drawing_, title);
    DrawRibbon(drawing_, view.environment == kNoFile
                             ? std::string_view()
                             : FirstText(project_.At(view.environment), "DefaultPanel"));
    DrawWorkArea(drawing_);
    DrawStatusBar(drawing_);
    html << "</div>\n<div class=cards>\n";
    DrawMenus(drawing_);
    html << "</div>\n";
    DrawTables(drawing_);
  }

  const project::Project& project_;
  const FileIndex start_;
  const check::Findings& findings_;
  const Options& options_;
  const ElementFindings by_element_;
  Pictures pictures_;
  Drawing drawing_;
  std::vector<View> views_;
  std::size_t drawn_views_ = 0;
};

}  // namespace

bool CanBeDrawn(const File& file) {
  switch (file.GetKind()) {
    case Kind::kUserInterface:
    case Kind::kEnvironment:
    case Kind::kModule:
    case Kind::kTemplate:
    case Kind::kApplication:
      return file.HasSchema();
    default:
      return false;
  }
}

Page Draw(const project::Project& project, FileIndex start, const check::Findings& findings,
          const check::HostIds& host_ids, const Options& options) {
  return PageWriter(project, start, findings, host_ids, options).Write();
}

}  // namespace sab::preview
