#include "lsp/features.h"
#include "lsp/identifiers.h"
#include "lsp/syntax.h"

namespace sab::lsp {
namespace {

using project::Occurrence;

std::optional<Named> NamedAt(Context& context, const View& view, const Json& params) {
  if (!view.file->HasElements()) return std::nullopt;
  return IdentifierAt(view, context.workspace.OffsetIn(view, Member(params, {"position"})));
}

Json LocationsOf(Context& context, const View& view, const std::vector<Occurrence>& occurrences) {
  Json locations = Json::array();
  for (const Occurrence& occurrence : occurrences) {
    context.stop_if_cancelled();
    const project::File& file = view.project->At(occurrence.file);
    Json location = context.workspace.LocationOf(*view.project, occurrence.file,
                                                 file.ValueSpan(occurrence.identifier.node));
    // A file that is read as two kinds is one file.
    if (std::find(locations.begin(), locations.end(), location) == locations.end()) {
      locations.push_back(std::move(location));
    }
  }
  return locations;
}

// A path leads to the beginning of its document.
Json TargetOfPath(Context& context, const View& view, std::size_t offset) {
  for (const project::Link& link : view.project->Links()) {
    if (link.from != view.index || link.to == project::kNoFile) continue;
    if (Contains(view.file->ValueSpan(link.path.node), offset)) {
      return Json::array({context.workspace.LocationOf(*view.project, link.to, {0, 0})});
    }
  }
  return nullptr;
}

// Why an identifier is not renamed; empty where it is.
std::string ReasonNotToRename(const View& view, const Named& named) {
  if (DefinitionsOf(view, named).empty()) {
    return "no document of the application defines " + named.text;
  }
  return {};
}

Json TextEdit(const Json& range, const std::string& text) {
  return {{"range", range}, {"newText", text}};
}

}  // namespace

Json Definition(Context& context, const Json& params) {
  const View view = context.workspace.ViewOf(params);
  if (const std::optional<Named> named = NamedAt(context, view, params)) {
    return LocationsOf(context, view, DefinitionsOf(view, *named));
  }
  if (!view.file->HasElements()) return nullptr;
  return TargetOfPath(context, view,
                      context.workspace.OffsetIn(view, Member(params, {"position"})));
}

Json References(Context& context, const Json& params) {
  const View view = context.workspace.ViewOf(params);
  const std::optional<Named> named = NamedAt(context, view, params);
  if (!named) return nullptr;
  std::vector<Occurrence> found;
  if (IsTrue(params, {"context", "includeDeclaration"})) found = DefinitionsOf(view, *named);
  const std::vector<Occurrence> uses = ReferencesOf(view, *named);
  found.insert(found.end(), uses.begin(), uses.end());
  return LocationsOf(context, view, found);
}

Json Highlights(Context& context, const Json& params) {
  constexpr int kRead = 2;
  constexpr int kWrite = 3;
  const View view = context.workspace.ViewOf(params);
  const std::optional<Named> named = NamedAt(context, view, params);
  if (!named) return nullptr;
  Json highlights = Json::array();
  const auto add = [&](const std::vector<Occurrence>& occurrences, int kind) {
    for (const Occurrence& occurrence : occurrences) {
      if (occurrence.file != view.index) continue;
      const Range range =
          context.workspace.RangeIn(view, view.file->ValueSpan(occurrence.identifier.node));
      highlights.push_back({{"range", ToJson(range)}, {"kind", kind}});
    }
  };
  add(DefinitionsOf(view, *named), kWrite);
  add(ReferencesOf(view, *named), kRead);
  return highlights;
}

Json PrepareRename(Context& context, const Json& params) {
  const View view = context.workspace.ViewOf(params);
  const std::optional<Named> named = NamedAt(context, view, params);
  if (!named) throw RequestError(kRequestFailed, "here is no identifier that can be renamed");
  const std::string reason = ReasonNotToRename(view, *named);
  if (!reason.empty()) throw RequestError(kRequestFailed, reason);
  return {{"range", ToJson(context.workspace.RangeIn(view, named->span))},
          {"placeholder", named->text}};
}

Json Rename(Context& context, const Json& params) {
  const View view = context.workspace.ViewOf(params);
  const std::string name = NeededText(params, {"newName"});
  const std::optional<Named> named = NamedAt(context, view, params);
  if (!named) throw RequestError(kRequestFailed, "here is no identifier that can be renamed");
  std::string reason = ReasonNotToRename(view, *named);
  if (name.find_first_not_of(" \t\r\n") == name.npos) reason = "an identifier cannot be empty";
  Named other = *named;
  other.text = name;
  if (name != named->text && reason.empty() && !DefinitionsOf(view, other).empty()) {
    reason = "there is already a " + std::string(formats::NameOf(named->subject)) + " " + name;
  }
  if (!reason.empty()) throw RequestError(kRequestFailed, reason);
  std::string text;
  try {
    text = Escaped(name);
  } catch (const std::exception& error) {
    throw RequestError(kInvalidParams, error.what());
  }
  std::vector<Occurrence> all = DefinitionsOf(view, *named);
  const std::vector<Occurrence> uses = ReferencesOf(view, *named);
  all.insert(all.end(), uses.begin(), uses.end());
  return context.workspace.EditOf(context.client, [&](const auto& add) {
    for (const Json& location : LocationsOf(context, view, all)) {
      add(location["uri"].get<std::string>(), TextEdit(location["range"], text));
    }
  });
}

}  // namespace sab::lsp
