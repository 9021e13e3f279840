#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "lsp/positions.h"
#include "project/file.h"

namespace sab::lsp {

/// Files as they were read last, so that after a key press only the text is read that has changed.
class FileCache {
 public:
  /// @param source lives longer
  explicit FileCache(const project::Source& source) : source_(source) {}

  /// A file; read anew where its text or the file on disk has changed.
  std::shared_ptr<const project::File> Get(const std::string& path, formats::Kind kind,
                                           project::Reading reading);
  /// The text of an open file has changed.
  void Touch(const std::string& path) { ++edits_[path]; }

  /// The lines of the text that a file has.
  const LineIndex& LinesOf(const std::shared_ptr<const project::File>& file);

 private:
  struct Stamp {
    std::uint64_t edit = 0;  // of an open text
    std::filesystem::file_time_type time;
    std::uintmax_t size = 0;

    bool operator==(const Stamp&) const = default;
  };
  struct Entry {
    Stamp stamp;
    std::shared_ptr<const project::File> strict;
    std::shared_ptr<const project::File> tolerant;
  };
  struct Lines {
    std::weak_ptr<const project::File> file;
    LineIndex index;
  };

  Stamp StampOf(const std::string& path) const;

  const project::Source& source_;
  std::map<std::string, std::uint64_t> edits_;
  std::map<std::pair<std::string, formats::Kind>, Entry> entries_;
  std::map<const project::File*, Lines> lines_;
};

}  // namespace sab::lsp
