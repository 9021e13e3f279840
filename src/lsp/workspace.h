#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "lsp/application.h"
#include "lsp/client.h"
#include "lsp/file_cache.h"
#include "lsp/json.h"
#include "lsp/positions.h"

namespace sab::lsp {

/// A text that a client has open.
class Document {
 public:
  Document(std::string uri, std::string path, std::string text, Json version)
      : uri_(std::move(uri)),
        path_(std::move(path)),
        text_(std::move(text)),
        version_(std::move(version)) {}

  const std::string& Uri() const { return uri_; }
  const std::string& Path() const { return path_; }
  const std::string& Text() const { return text_; }
  const Json& Version() const { return version_; }
  const LineIndex& Lines() const;

  /// Applies one change of the protocol: a part of the text, or all of it.
  void Change(const Json& change, PositionEncoding encoding);
  void SetVersion(Json version) { version_ = std::move(version); }

  /// What the file would hold on disk.
  std::string Bytes() const;
  /// Bytes of a mark at the beginning, which the text of a file does not have.
  std::size_t MarkSize() const;

 private:
  std::string uri_;
  std::string path_;
  std::string text_;
  Json version_;
  mutable std::optional<LineIndex> lines_;
};

/// A file of an application, and the open document if it is one.
struct View {
  Application* application = nullptr;
  const project::Project* project = nullptr;
  project::FileIndex index = project::kNoFile;
  const project::File* file = nullptr;
  const Document* document = nullptr;
};

/// What a client has open, with the applications that it belongs to.
class Workspace {
 public:
  void SetEncoding(PositionEncoding encoding) { encoding_ = encoding; }
  PositionEncoding Encoding() const { return encoding_; }
  void SetFolders(std::vector<std::string> folders) { folders_ = std::move(folders); }
  const std::vector<std::string>& Folders() const { return folders_; }

  void Open(const std::string& uri, std::string text, Json version);
  void Change(const std::string& uri, const Json& changes, Json version);
  void Close(const std::string& uri);
  /// Files on disk may have changed.
  void ForgetDisk();

  const std::map<std::string, Document>& Documents() const { return documents_; }
  const Document* DocumentAt(const std::string& path) const;
  /// The applications of all open documents.
  std::vector<Application*> Applications();

  /// An open document in its application. Raises RequestError for one that is not open.
  View ViewOf(const std::string& uri);
  /// What a request is about: its textDocument.
  View ViewOf(const Json& params) { return ViewOf(NeededText(params, {"textDocument", "uri"})); }

  /// A place of a view's file, and back.
  std::size_t OffsetIn(const View& view, const Json& position) const;
  Range RangeIn(const View& view, project::Span span) const;

  /// The address of a file, as the client names it where it has it open.
  std::string UriOf(const std::string& path) const;
  Json LocationOf(const project::Project& project, project::FileIndex file, project::Span span);
  /// A change of several files.
  /// @param add_all calls what it gets with the address of a file and an edit of it
  using AddEdit = std::function<void(const std::string& uri, Json edit)>;
  Json EditOf(const ClientAbilities& client,
              const std::function<void(const AddEdit& add)>& add_all) const;
  /// A place that a finding names.
  Range RangeOf(const check::Location& where);

 private:
  Application& ApplicationOf(const std::string& path);
  std::unique_ptr<Application> FindApplication(const std::string& path);
  std::unique_ptr<Application> Make(const std::string& root);
  std::vector<std::string> FoldersAround(const std::string& path) const;
  const std::string& RootElementOf(const std::string& path);
  void Touch(const std::string& path);
  void Forget();
  void RemoveUnused();

  PositionEncoding encoding_ = PositionEncoding::kUtf16;
  std::vector<std::string> folders_;
  project::Source source_;
  FileCache files_{source_};
  std::map<std::string, Document> documents_;  // by path
  std::vector<std::unique_ptr<Application>> applications_;
  std::map<std::string, std::string> roots_;  // document elements by path
};

}  // namespace sab::lsp
