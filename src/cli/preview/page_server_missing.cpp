// Instead of page_server.cpp where the source of cpp-httplib could not be had.
#include <stdexcept>

#include "cli/preview/page_server.h"

namespace sabxml::cli {

struct PageServer::State {};

PageServer::PageServer() {
  throw std::runtime_error(
      "this sabxml was built without cpp-httplib and cannot serve pages; leave out --serve, and "
      "open the file in a browser");
}
PageServer::~PageServer() = default;
std::string PageServer::Address() const { return {}; }
void PageServer::Show(std::string, unsigned) {}

}  // namespace sabxml::cli
