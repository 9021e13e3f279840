#include "standards/revision_values.h"

#include <string>
#include <unordered_map>

namespace sab {
namespace {

// Also bounds what the names of the values can take of memory.
constexpr std::size_t kMaxDepth = 256;

// Elements under one parent that are still to be read.
struct Level {
  ConfigElement::Iterator next;
  std::size_t path_length;  // of the parent's path, with the slash after it
  std::unordered_map<Text, unsigned> seen;
};

void AppendStep(Text& path, TextView name, unsigned place) {
  path += name;
  if (place == 1) return;
  AppendAscii(path, "[" + std::to_string(place) + "]");
}

}  // namespace

void ReadRevisionValues(const ConfigElement& revision, NamedValues& values) {
  std::vector<Level> levels;
  Text path;
  Text name;
  Text text;
  levels.push_back({revision.Children().begin(), 0, {}});
  while (!levels.empty()) {
    Level& level = levels.back();
    path.resize(level.path_length);
    if (level.next == nullptr) {
      levels.pop_back();
      continue;
    }
    const ConfigElement element = *level.next;
    ++level.next;
    element.ReadLocalName(name);
    AppendStep(path, name, ++level.seen[name]);
    if (IsLeaf(element)) {
      values.Set(path, element.ReadText(text));
    } else if (levels.size() < kMaxDepth) {
      path += OLESTR("/");
      levels.push_back({element.Children().begin(), path.size(), {}});
    }
  }
}

}  // namespace sab
