#include "project/path_finder.h"

#include <algorithm>
#include <filesystem>

#include "text/ascii.h"

namespace sab::project {

std::filesystem::path PathOf(std::string_view utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string TextOf(const std::filesystem::path& path) {
  const std::u8string text = path.generic_u8string();
  return std::string(text.begin(), text.end());
}

bool IsAbsolute(std::string_view path) {
  return path.starts_with('/') || path.starts_with('\\') || (path.size() > 1 && path[1] == ':');
}

namespace {

// Whether a path with slashes is normal as it is. Most are, and to ask costs less than to make one.
bool HasOnlyNames(std::string_view path) {
  for (std::size_t at = 0; at < path.size();) {
    const std::size_t slash = std::min(path.find('/', at), path.size());
    const std::string_view step = path.substr(at, slash - at);
    if (step == "." || step == ".." || (step.empty() && at > 0)) return false;
    at = slash + 1;
  }
  return true;
}

}  // namespace

std::string FullPathOf(const std::string& path) {
  if (path.starts_with('/') && HasOnlyNames(path) && PathOf(path).is_absolute()) return path;
  std::error_code error;
  const std::filesystem::path full = std::filesystem::absolute(PathOf(path), error);
  return TextOf((error ? PathOf(path) : full).lexically_normal());
}

const PathFinder::Listing& PathFinder::ListingOf(const std::string& folder) {
  const auto [place, is_new] = listings_.try_emplace(folder);
  if (!is_new) return place->second;
  Listing& listing = place->second;
  std::error_code unreadable;
  std::filesystem::directory_iterator entry(PathOf(folder.empty() ? "." : folder), unreadable);
  for (; !unreadable && entry != std::filesystem::directory_iterator();
       entry.increment(unreadable)) {
    listing.names.insert(TextOf(entry->path().filename()));
  }
  listing.is_complete = !unreadable;
  for (const std::string& name : listing.names) listing.by_folded.emplace(LowerAsciiOf(name), name);
  return listing;
}

std::string PathFinder::NameOnDisk(const std::string& folder, const std::string& name) {
  const Listing& listing = ListingOf(folder);
  if (listing.names.contains(name)) return name;
  const auto found = listing.by_folded.find(LowerAsciiOf(name));
  if (found != listing.by_folded.end()) return found->second;
  if (listing.is_complete) return {};
  // A folder may be open to those who know what is in it.
  std::error_code ignored;
  return std::filesystem::exists(PathOf(folder + name), ignored) ? name : std::string();
}

PathFinder::Found PathFinder::Find(const std::string& named_by, const std::string& path) {
  std::string rest = path;
  std::replace(rest.begin(), rest.end(), '\\', '/');
  std::string current = IsAbsolute(rest) ? "" : TextOf(PathOf(named_by).parent_path());
  if (!current.empty() && !current.ends_with('/')) current += '/';
  Found found;
  found.exists = true;
  for (std::size_t at = 0; at < rest.size();) {
    const std::size_t slash = std::min(rest.find('/', at), rest.size());
    const std::string name = rest.substr(at, slash - at);
    const bool is_step = name.empty() || name == "." || name == ".." || name.ends_with(':');
    const std::string on_disk = is_step ? name : NameOnDisk(current, name);
    found.exists = found.exists && (is_step || !on_disk.empty());
    found.differs_in_case |= !on_disk.empty() && on_disk != name;
    current += on_disk.empty() ? name : on_disk;
    if (slash < rest.size()) current += '/';
    at = slash + 1;
  }
  found.path = HasOnlyNames(current) ? current : TextOf(PathOf(current).lexically_normal());
  return found;
}

}  // namespace sab::project
