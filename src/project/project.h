#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "project/file.h"
#include "project/path_finder.h"
#include "project/source.h"

namespace sab::project {

using FileIndex = std::size_t;
inline constexpr FileIndex kNoFile = SIZE_MAX;

/// Where a document names another one.
struct Link {
  FileIndex from = kNoFile;
  Identifier path;     ///< as the document has it
  formats::Kind kind;  ///< of the document that it should lead to
  PathFinder::Found found;
  FileIndex to = kNoFile;  ///< kNoFile where there is no such file
};

/// An identifier and the file that has it.
struct Occurrence {
  FileIndex file = kNoFile;
  Identifier identifier;
};

/// The documents that an application leads to, or any part of them: what they hold, what they
/// define and what they name, without the server. Nothing is raised for what a document holds; one
/// that is missing or broken is a link without a target, or a file with a failure.
///
/// A project is read once and then only looked at. An editor that changes a text opens it in the
/// source, and makes a new project where Replace does not do.
class Project {
 public:
  /// @param source where files come from; lives longer
  /// @param read reads a file; it may hand out one that it has read before
  using ReadFile =
      std::function<std::shared_ptr<const File>(const std::string& path, formats::Kind kind)>;
  explicit Project(const Source& source, ReadFile read = {});
  Project(const Project&) = delete;
  Project& operator=(const Project&) = delete;

  /// Reads a document and all that it leads to, each once, in the order in which a host reads them.
  /// @param path as the file is to be named, unless it is in the project under another spelling
  /// @param kind kNone to recognise it
  FileIndex Read(const std::string& path, formats::Kind kind = formats::Kind::kNone);

  std::size_t FileCount() const { return files_.size(); }
  const File& At(FileIndex file) const { return *files_[file]; }
  const std::shared_ptr<const File>& Shared(FileIndex file) const { return files_[file]; }
  /// By its path; kNoFile where it is not in the project.
  FileIndex Find(const std::string& path) const;

  /// Takes another reading of a file that names the same documents in the same order. False, and
  /// nothing is changed, where it does not.
  bool Replace(FileIndex file, std::shared_ptr<const File> other);

  /// All links, those of one file in the order of its document.
  const std::deque<Link>& Links() const { return links_; }
  /// The documents that lead to a file, directly; each once.
  std::vector<FileIndex> Parents(FileIndex file) const;
  /// The files of a kind that a file leads to, directly or through others; each once, in the order
  /// of reading. A file of the kind leads to itself.
  std::vector<FileIndex> Below(FileIndex file, formats::Kind kind) const;
  /// The files of a kind that lead to a file, likewise.
  std::vector<FileIndex> Above(FileIndex file, formats::Kind kind) const;
  /// Whether a file is not read as a whole, or something below it is not: it is missing or broken.
  bool IsIncomplete(FileIndex file) const;

  /// The files in which a host looks for what an identifier in a file refers to. A user interface
  /// of several environments gets the command files of all of them.
  std::vector<FileIndex> DefiningFiles(FileIndex file, formats::Subject subject) const;
  /// All definitions of an identifier, in the order of reading.
  std::vector<Occurrence> Definitions(formats::Subject subject, std::string_view text) const;
  /// All uses of an identifier.
  std::vector<Occurrence> References(formats::Subject subject, std::string_view text) const;

 private:
  FileIndex ReadOnce(const std::string& path, formats::Kind kind);
  std::vector<Occurrence> Find(formats::Role role, formats::Subject subject,
                               std::string_view text) const;

  const Source& source_;
  PathFinder finder_;
  ReadFile read_;
  std::vector<std::shared_ptr<const File>> files_;
  std::deque<Link> links_;
  std::vector<std::vector<FileIndex>> children_;                      // of files; each once
  std::map<std::pair<std::string, formats::Kind>, FileIndex> known_;  // by full path
};

}  // namespace sab::project
