#include "platform/neighbour_file.h"

namespace sab {

Text NeighbourFile(TextView file, TextView name) {
  const std::size_t separator = file.rfind(L'\\');
  Text neighbour(file.substr(0, separator == TextView::npos ? 0 : separator));
  neighbour.push_back(L'\\');
  return neighbour.append(name);
}

}  // namespace sab
