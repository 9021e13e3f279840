#include "lsp/file_cache.h"

#include "project/path_finder.h"

namespace sab::lsp {

using project::File;
using project::Reading;

FileCache::Stamp FileCache::StampOf(const std::string& path) const {
  Stamp stamp;
  if (source_.IsOpen(path)) {
    const auto edit = edits_.find(path);
    stamp.edit = edit == edits_.end() ? 1 : edit->second + 1;
    return stamp;
  }
  std::error_code missing;
  const std::filesystem::path file = project::PathOf(path);
  stamp.time = std::filesystem::last_write_time(file, missing);
  stamp.size = std::filesystem::file_size(file, missing);
  return stamp;
}

std::shared_ptr<const File> FileCache::Get(const std::string& path, formats::Kind kind,
                                           Reading reading) {
  Entry& entry = entries_[{path, kind}];
  const Stamp stamp = StampOf(path);
  if (entry.stamp != stamp) entry = {stamp, nullptr, nullptr};
  std::shared_ptr<const File>& file = reading == Reading::kStrict ? entry.strict : entry.tolerant;
  if (!file) {
    file = std::make_shared<const File>(path, kind, source_, reading);
    // One that is not broken is the same in both.
    if (!file->Failure()) entry.strict = entry.tolerant = file;
  }
  return file;
}

const LineIndex& FileCache::LinesOf(const std::shared_ptr<const File>& file) {
  constexpr std::size_t kMost = 256;
  if (lines_.size() > kMost) {
    std::erase_if(lines_, [](const auto& lines) { return lines.second.file.expired(); });
  }
  Lines& lines = lines_[file.get()];
  if (lines.file.lock() != file) lines = {file, LineIndex(file->OriginalText())};
  return lines.index;
}

}  // namespace sab::lsp
