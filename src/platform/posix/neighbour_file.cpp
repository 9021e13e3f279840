#include "platform/neighbour_file.h"

namespace sab {

Text NeighbourFile(TextView file, TextView name) {
  const std::size_t separator = file.find_last_of(u"/\\");
  Text neighbour(file.substr(0, separator == TextView::npos ? 0 : separator + 1));
  return neighbour.append(name);
}

}  // namespace sab
