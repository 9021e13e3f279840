#include "lsp/workspace.h"

#include <algorithm>
#include <fstream>

#include "lsp/uri.h"
#include "project/path_finder.h"
#include "xml/characters.h"

namespace sab::lsp {

using formats::Kind;
using project::FileIndex;
using project::kNoFile;
using project::PathOf;
using project::TextOf;

// --- documents ---

const Document* Workspace::DocumentAt(const std::string& path) const {
  const auto found = documents_.find(path);
  return found == documents_.end() ? nullptr : &found->second;
}

void Workspace::Open(const std::string& uri, std::string text, Json version) {
  std::string path = PathOfUri(uri);
  if (path.empty()) path = uri;  // a text without a file
  const auto place =
      documents_.insert_or_assign(path, Document(uri, path, std::move(text), std::move(version)));
  bool is_known = false;
  for (const auto& application : applications_) {
    is_known = is_known || application->Contains(path);
  }
  source_.Open(path, place.first->second.Bytes());
  Touch(path);
  if (!is_known) Forget();
}

void Workspace::Touch(const std::string& path) {
  files_.Touch(path);
  for (const auto& application : applications_) application->Touch(path);
}

void Workspace::Change(const std::string& uri, const Json& changes, Json version) {
  const std::string path = PathOfUri(uri);
  const auto found = documents_.find(path.empty() ? uri : path);
  if (found == documents_.end()) return;
  Document& document = found->second;
  if (changes.is_array()) {
    for (const Json& change : changes) document.Change(change, encoding_);
  }
  document.SetVersion(std::move(version));
  source_.Open(document.Path(), document.Bytes());
  Touch(document.Path());
}

void Workspace::Close(const std::string& uri) {
  const std::string path = PathOfUri(uri);
  const auto found = documents_.find(path.empty() ? uri : path);
  if (found == documents_.end()) return;
  const std::string closed = found->first;
  source_.Close(closed);
  documents_.erase(found);
  Touch(closed);
  std::error_code ignored;
  if (!std::filesystem::exists(PathOf(closed), ignored)) return Forget();
  RemoveUnused();
}

void Workspace::ForgetDisk() {
  roots_.clear();
  applications_.clear();
}

// An application of which only one text is known may be part of another one.
void Workspace::Forget() {
  roots_.clear();
  for (const auto& application : applications_) application->Forget();
  std::erase_if(applications_,
                [](const auto& application) { return application->Tolerant().FileCount() == 1; });
  RemoveUnused();
}

void Workspace::RemoveUnused() {
  std::erase_if(applications_, [this](const auto& application) {
    return std::ranges::none_of(
        documents_, [&](const auto& document) { return application->Contains(document.first); });
  });
}

// --- applications ---

std::vector<Application*> Workspace::Applications() {
  std::vector<Application*> found;
  for (const auto& [path, document] : documents_) {
    Application* const application = &ApplicationOf(path);
    if (std::ranges::find(found, application) == found.end()) found.push_back(application);
  }
  return found;
}

Application& Workspace::ApplicationOf(const std::string& path) {
  for (const auto& application : applications_) {
    if (application->Contains(path)) return *application;
  }
  return *applications_.emplace_back(FindApplication(path));
}

std::unique_ptr<Application> Workspace::Make(const std::string& root) {
  return std::make_unique<Application>(source_, files_, root);
}

// The local name of the first element, looked for at the beginning of a file.
const std::string& Workspace::RootElementOf(const std::string& path) {
  const auto [place, is_new] = roots_.try_emplace(path);
  if (!is_new) return place->second;
  std::string head;
  if (const Document* const document = DocumentAt(path)) {
    head = document->Text().substr(0, 4096);
  } else {
    std::ifstream stream(PathOf(path), std::ios::binary);
    head.resize(4096);
    stream.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(stream.gcount()));
    std::erase(head, '\0');  // of UTF-16
  }
  for (std::size_t at = 0; (at = head.find('<', at)) != head.npos; ++at) {
    if (head.compare(at, 4, "<!--") == 0) {
      at = std::min(head.find("-->", at), head.size() - 1);
      continue;
    }
    if (at + 1 >= head.size() || !xml::Has(head[at + 1], xml::kNameStart)) continue;
    const std::size_t end = head.find_first_of(" \t\r\n/>", at);
    const std::string name = head.substr(at + 1, end == head.npos ? end : end - at - 1);
    place->second = name.substr(name.find(':') + 1);
    break;
  }
  return place->second;
}

// The folder of a file and those around it, then what is in the client's folders.
std::vector<std::string> Workspace::FoldersAround(const std::string& path) const {
  constexpr int kMostLevels = 8;
  constexpr std::size_t kMostFolders = 200;
  std::vector<std::string> folders;
  std::filesystem::path folder = PathOf(path).parent_path();
  for (int level = 0; level < kMostLevels && !folder.empty(); ++level) {
    folders.push_back(TextOf(folder));
    if (folder == folder.parent_path()) break;
    folder = folder.parent_path();
  }
  for (const std::string& workspace : folders_) {
    if (!path.starts_with(workspace)) continue;
    std::error_code error;
    std::filesystem::recursive_directory_iterator entry(PathOf(workspace), error);
    for (; !error && entry != std::filesystem::recursive_directory_iterator();
         entry.increment(error)) {
      std::error_code ignored;
      if (!entry->is_directory(ignored)) continue;
      if (entry.depth() > 1 || folders.size() > kMostFolders) entry.disable_recursion_pending();
      std::string found = TextOf(entry->path());
      if (std::ranges::find(folders, found) == folders.end()) folders.push_back(std::move(found));
    }
  }
  return folders;
}

// Whatever leads to a file, the application first.
std::unique_ptr<Application> Workspace::FindApplication(const std::string& path) {
  constexpr std::size_t kMostFiles = 2000;
  std::vector<std::pair<std::string, std::string>> candidates;  // document element, path
  for (const std::string& folder : FoldersAround(path)) {
    std::vector<std::string> names;
    std::error_code error;
    std::filesystem::directory_iterator entry(PathOf(folder), error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
      if (entry->path().extension() == ".xml") names.push_back(TextOf(entry->path()));
    }
    std::ranges::sort(names);
    for (const std::string& name : names) {
      if (roots_.size() < kMostFiles) candidates.emplace_back(RootElementOf(name), name);
    }
  }
  const Kind own = [&] {
    const formats::Document* const form = formats::DocumentOfRoot(RootElementOf(path));
    return form ? form->kind : Kind::kNone;
  }();
  for (const Kind kind : {Kind::kApplication, Kind::kTemplate, Kind::kModule, Kind::kEnvironment}) {
    if (own == kind) return Make(path);
    for (const auto& [root, file] : candidates) {
      if (root != formats::DocumentOfKind(kind).root) continue;
      auto application = Make(file);
      if (application->Contains(path)) return application;
    }
  }
  return Make(path);
}

View Workspace::ViewOf(const std::string& uri) {
  const std::string path = PathOfUri(uri);
  const Document* const document = DocumentAt(path.empty() ? uri : path);
  if (!document) throw RequestError(kInvalidParams, "the document " + uri + " is not open");
  View view;
  view.application = &ApplicationOf(document->Path());
  view.project = &view.application->Tolerant();
  view.index = view.project->Find(document->Path());
  view.file = &view.project->At(view.index);
  view.document = document;
  return view;
}

// --- places ---

std::size_t Workspace::OffsetIn(const View& view, const Json& position) const {
  const std::size_t mark = view.document->MarkSize();
  const std::size_t at = view.document->Lines().OffsetOf(PositionFrom(position), encoding_);
  return view.file->FromOriginal(at - std::min(at, mark));
}

Range Workspace::RangeIn(const View& view, project::Span span) const {
  const std::size_t mark = view.document->MarkSize();
  return view.document->Lines().RangeOf(view.file->ToOriginal(span.from) + mark,
                                        view.file->ToOriginal(span.to) + mark, encoding_);
}

std::string Workspace::UriOf(const std::string& path) const {
  const Document* const document = DocumentAt(path);
  return document ? document->Uri() : UriOfPath(path);
}

Json Workspace::LocationOf(const project::Project& project, FileIndex index, project::Span span) {
  const std::shared_ptr<const project::File>& file = project.Shared(index);
  const Document* const document = DocumentAt(file->Path());
  const Range range = document ? RangeIn({nullptr, &project, index, file.get(), document}, span)
                               : files_.LinesOf(file).RangeOf(file->ToOriginal(span.from),
                                                              file->ToOriginal(span.to), encoding_);
  return {{"uri", UriOf(file->Path())}, {"range", ToJson(range)}};
}

Json Workspace::EditOf(const ClientAbilities& client,
                       const std::function<void(const AddEdit& add)>& add_all) const {
  std::map<std::string, Json> edits;
  add_all([&edits](const std::string& uri, Json edit) {
    edits.try_emplace(uri, Json::array()).first->second.push_back(std::move(edit));
  });
  if (!client.has_document_changes) return {{"changes", edits}};
  Json changes = Json::array();
  for (auto& [uri, list] : edits) {
    Json version;
    for (const auto& [path, document] : documents_) {
      if (document.Uri() == uri) version = document.Version();
    }
    changes.push_back(
        {{"textDocument", {{"uri", uri}, {"version", version}}}, {"edits", std::move(list)}});
  }
  return {{"documentChanges", std::move(changes)}};
}

Range Workspace::RangeOf(const check::Location& where) {
  const Document* const document = DocumentAt(where.file);
  // A finding counts from the beginning of the text, which a mark is not part of.
  const std::size_t mark = document ? document->MarkSize() : 0;
  const auto file =
      document ? nullptr : files_.Get(where.file, Kind::kNone, project::Reading::kTolerant);
  const LineIndex& lines = document ? document->Lines() : files_.LinesOf(file);
  const auto place = [&](xml::Place at) {
    if (at.line == 1) at.column += mark > 0 ? 1 : 0;
    return lines.PositionOf(lines.OffsetOf(at), encoding_);
  };
  return {place(where.start), place(where.end)};
}

}  // namespace sab::lsp
