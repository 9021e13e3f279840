#include "preview/pictures.h"

#include <filesystem>

#include "preview/picture.h"

namespace sab::preview {
namespace {

constexpr std::uintmax_t kMaxPictureSize = 512 * 1024;
constexpr std::size_t kMaxPageSize = 32 * 1024 * 1024;  // of all pictures as base64

}  // namespace

Picture Pictures::Find(const project::File& file, std::string_view resource_path,
                       std::string_view name) {
  if (name.empty()) return {};
  const auto [found, is_unknown] =
      known_.try_emplace({&file, std::string(resource_path), std::string(name)});
  if (is_unknown) {
    const std::string path = PathOf(file, resource_path, name);
    found->second = {0, 0, "its path is absolute"};
    if (!path.empty()) {
      const auto [place, is_new] = by_path_.try_emplace(path);
      if (is_new) place->second = Embed(path);
      found->second = place->second;
    }
  }
  return {name, found->second.number, found->second.tiles, found->second.complaint};
}

// In the folder of resources, else beside the file; an absolute path is that of another machine.
std::string Pictures::PathOf(const project::File& file, std::string_view resource_path,
                             std::string_view name) {
  if (project::IsAbsolute(name)) return {};
  if (project::IsAbsolute(resource_path)) resource_path = {};
  const std::string beside = folder_.empty() ? file.Path() : folder_ + "/x";
  const std::string wanted(name);
  project::PathFinder::Found found;
  if (!resource_path.empty()) {
    found = finder_.Find(beside, std::string(resource_path) + "/" + wanted);
  }
  if (!found.exists) {
    project::PathFinder::Found without = finder_.Find(beside, wanted);
    if (without.exists || found.path.empty()) found = std::move(without);
  }
  return found.path;
}

Pictures::Known Pictures::Embed(const std::string& path) {
  paths_.push_back(path);
  const std::filesystem::path file = project::PathOf(path);
  std::error_code error;
  if (!std::filesystem::exists(file, error)) return {0, 0, "there is no such file"};
  if (!std::filesystem::is_regular_file(file, error)) return {0, 0, "this is no file"};
  if (std::filesystem::file_size(file, error) > kMaxPictureSize) {
    return {0, 0, "it is larger than 512 KB"};
  }
  std::string reason;
  const auto bytes = project::Source().Read(path, reason);
  if (!bytes) return {0, 0, "it cannot be read"};
  const PictureType type = PictureTypeOf(*bytes);
  if (type.media_type.empty()) return {0, 0, "it is no PNG, BMP, ICO, JPEG, GIF or SVG"};
  if (styles_.size() + bytes->size() * 4 / 3 > kMaxPageSize) {
    return {0, 0, "the page has too many pictures"};
  }
  styles_ += ".p" + std::to_string(++count_) + "{background-image:url(data:";
  styles_ += type.media_type;
  styles_ += ";base64,";
  AppendBase64(styles_, *bytes);
  styles_ += ")}\n";
  const bool is_strip = type.height > 0 && type.width >= 2 * std::uint64_t{type.height};
  return {count_, is_strip ? type.width / type.height : 0, {}};
}

}  // namespace sab::preview
