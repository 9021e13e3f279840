#include "framework/path_list.h"

namespace sab {

void ReadPaths(const ConfigElement& container, std::string_view child_name, StringList& paths) {
  Text path;
  for (const ConfigElement child : container.Children()) {
    if (!child.Is(child_name)) continue;
    for (const ConfigElement part : child.Children()) {
      if (!part.Is("Path")) continue;
      part.ReadText(path);
      if (!path.empty()) paths.Append(path);
    }
  }
}

}  // namespace sab
