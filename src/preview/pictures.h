#pragma once

#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "preview/html.h"
#include "project/project.h"

namespace sab::preview {

/// A picture as a page shows it.
struct Picture {
  std::string_view name;       ///< as the file names it; empty where no picture is named
  std::size_t number = 0;      ///< of its class in the style sheet, from 1; 0 if it is not embedded
  std::uint32_t tiles = 0;     ///< of a strip: squares beside each other; 0 for a single picture
  std::string_view complaint;  ///< why it is not embedded
};

/// The pictures of a page: each file is embedded once, as a class of the style sheet.
class Pictures {
 public:
  /// @param folder where all pictures are; empty for the folders that the files name
  explicit Pictures(std::string folder) : folder_(std::move(folder)) {}

  /// @param file that names the picture
  /// @param resource_path folder that is named beside it; may be empty
  Picture Find(const project::File& file, std::string_view resource_path, std::string_view name);

  /// The classes of the pictures, for the style sheet.
  const std::string& Styles() const { return styles_; }
  /// Paths of all files that were embedded or looked for.
  const std::vector<std::string>& Paths() const { return paths_; }
  std::size_t EmbeddedCount() const { return count_; }

 private:
  struct Known {
    std::size_t number = 0;
    std::uint32_t tiles = 0;
    std::string_view complaint;
  };

  std::string PathOf(const project::File& file, std::string_view resource_path,
                     std::string_view name);
  Known Embed(const std::string& path);

  std::string folder_;
  project::PathFinder finder_;
  std::map<std::tuple<const project::File*, std::string, std::string>, Known> known_;
  std::map<std::string, Known> by_path_;
  std::vector<std::string> paths_;
  std::string styles_;
  std::size_t count_ = 0;
};

}  // namespace sab::preview
