#include <algorithm>

#include "lsp/diagnostics.h"
#include "lsp/syntax.h"

namespace sab::lsp {
namespace {

using check::Finding;
using check::Mistake;
using project::File;
using project::FileIndex;
using project::Span;
using xml::kNoNode;
using xml::NodeIndex;

struct Action {
  std::string title;
  FileIndex file;
  std::vector<std::pair<Span, std::string>> edits;
  bool is_certain = false;
};

Action Renaming(const Finding& finding, const File& file, NodeIndex element,
                const std::string& name) {
  Action action{"Change to <" + name + ">", finding.file, {}};
  const std::size_t prefix = file.Xml().At(element).prefix_length;
  for (Span span : {StartNameOf(file, element), EndNameOf(file, element)}) {
    if (span.from == span.to) continue;
    action.edits.push_back({{span.from + prefix, span.to}, name});
  }
  return action;
}

Action Rewriting(const Finding& finding, const File& file, const std::vector<NodeIndex>& elements,
                 const std::string& text) {
  Action action{"Change to " + text, finding.file, {}};
  for (const NodeIndex element : elements) {
    action.edits.push_back({file.ValueSpan(element), Escaped(text)});
  }
  return action;
}

// What is certain, or else what may be meant.
void AddChanges(const Finding& finding, const File& file, NodeIndex element,
                std::vector<Action>& actions) {
  if (finding.fix) {
    const check::Fix& fix = *finding.fix;
    if (fix.name.empty()) {
      std::vector<NodeIndex> elements{fix.element};
      elements.insert(elements.end(), fix.others.begin(), fix.others.end());
      actions.push_back(Rewriting(finding, file, elements, fix.text));
    } else {
      actions.push_back(Renaming(finding, file, fix.element, fix.name));
    }
    actions.back().is_certain = true;
    return;
  }
  const std::string& suggestion = finding.suggestion;
  if (suggestion.empty() || element == kNoNode) return;
  const bool is_tag = suggestion.starts_with('<') && suggestion.ends_with('>');
  if (is_tag) {
    // A missing element is no name for the one that lacks it.
    if (finding.offset == file.TagSpan(element).from) {
      actions.push_back(
          Renaming(finding, file, element, suggestion.substr(1, suggestion.size() - 2)));
    }
  } else if (finding.offset == file.ValueSpan(element).from && file.HasText(element)) {
    actions.push_back(Rewriting(finding, file, {element}, suggestion));
  }
}

// A new entry at the end of the command files that the file's environments have.
void AddDefinitions(const project::Project& project, const Finding& finding, NodeIndex element,
                    std::vector<Action>& actions) {
  constexpr std::size_t kMost = 8;
  if (finding.mistake != Mistake::kUndefinedCommand || element == kNoNode) return;
  const std::string id(project.At(finding.file).TextOf(element));
  for (const FileIndex index : project.DefiningFiles(finding.file, formats::Subject::kCommand)) {
    const File& file = project.At(index);
    if (!file.HasElements() || actions.size() > kMost) continue;
    const xml::Document& xml = file.Xml();
    for (NodeIndex section = xml.FirstChildElement(xml.Root()); section != kNoNode;
         section = xml.NextElement(section)) {
      if (!xml.HasLocalName(section, "Commands") ||
          EndNameOf(file, section).from == xml.At(section).end) {
        continue;
      }
      const std::string line_end(LineEndOf(file.Text()));
      const std::string step(IndentationStepOf(file));
      const std::string outer(IndentationAt(file.Text(), xml.At(section).start));
      const std::string inner = line_end + outer + step;
      std::size_t at = xml.At(section).end;
      while (at > 0 && xml::Has(file.Text()[at - 1], xml::kSpace)) --at;
      const bool has_line =
          file.Text().substr(at, xml.At(section).end - at).find('\n') != std::string_view::npos;
      actions.push_back(
          {"Define the command " + id + " in " + file.Path(),
           index,
           {{{at, at},
             inner + "<Command>" + inner + step + "<Identify>" + Escaped(id) + "</Identify>" +
                 inner + "</Command>" + (has_line ? "" : line_end + outer)}}});
      break;
    }
  }
}

void AddIgnoring(const Finding& finding, const File& file, NodeIndex element,
                 std::vector<Action>& actions) {
  if (element == kNoNode) return;
  const std::string id(RuleFor(finding.mistake).id);
  const std::size_t start = file.Xml().At(element).start;
  const std::string_view indentation = IndentationAt(file.Text(), start);
  std::string comment = "<!-- sabxml-ignore " + id + " -->";
  const bool starts_line = indentation.data() + indentation.size() == file.Text().data() + start;
  if (starts_line) comment += std::string(LineEndOf(file.Text())) + std::string(indentation);
  actions.push_back({"Ignore " + id + " here", finding.file, {{{start, start}, comment}}});
}

std::vector<Action> ActionsFor(const project::Project& project, const Finding& finding) {
  std::vector<Action> actions;
  const File& file = project.At(finding.file);
  if (!file.HasElements() || finding.where.start.line == 0) return actions;
  const NodeIndex element = ElementAt(file, finding.offset + 1);
  AddChanges(finding, file, element, actions);
  AddDefinitions(project, finding, element, actions);
  AddIgnoring(finding, file, element, actions);
  return actions;
}

bool Overlap(const Range& a, const Range& b) {
  const auto is_before = [](Position first, Position second) {
    return first.line != second.line ? first.line < second.line
                                     : first.character < second.character;
  };
  return !is_before(a.end, b.start) && !is_before(b.end, a.start);
}

}  // namespace

Json CodeActions(Context& context, const Json& params) {
  Json result = Json::array();
  const Json& only = Member(params, {"context", "only"});
  if (!context.client.has_action_literals) return result;
  if (only.is_array() && !HasText(only, "quickfix") && !HasText(only, "")) return result;
  const View view = context.workspace.ViewOf(params);
  const Range wanted = RangeFrom(Member(params, {"range"}));
  const project::Project& project = view.application->Strict();
  for (const Finding& finding : view.application->Findings().list) {
    if (finding.where.file != view.file->Path()) continue;
    if (!Overlap(context.workspace.RangeOf(finding.where), wanted)) continue;
    for (const Action& action : ActionsFor(project, finding)) {
      Json edit = context.workspace.EditOf(context.client, [&](const Workspace::AddEdit& add) {
        for (const auto& [span, text] : action.edits) {
          const Json location = context.workspace.LocationOf(project, action.file, span);
          add(location["uri"].get<std::string>(),
              {{"range", location["range"]}, {"newText", text}});
        }
      });
      Json one = {{"title", action.title},
                  {"kind", "quickfix"},
                  {"diagnostics", Json::array({DiagnosticOf(context, finding)})},
                  {"edit", std::move(edit)}};
      if (action.is_certain) one["isPreferred"] = true;
      result.push_back(std::move(one));
    }
  }
  return result;
}

}  // namespace sab::lsp
