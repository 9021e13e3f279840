#include "cli/standard_input.h"

#include "cli/host/automation.h"
#include "cli/platform.h"

namespace sabxml::cli {
namespace {

std::string& CopyPath() {
  static std::string path;
  return path;
}

}  // namespace

std::string PathToRead(const std::string& file) {
  if (file.empty()) throw Failure("the name of a file is empty");
  if (file != kStandardInput) return file;
  if (CopyPath().empty()) CopyPath() = CopyStandardInput();
  return CopyPath();
}

std::string WithStandardInput(std::string message) {
  const std::string& path = CopyPath();
  if (path.empty()) return message;
  for (std::size_t at = 0; (at = message.find(path, at)) != std::string::npos;) {
    message.replace(at, path.size(), kStandardInput);
  }
  return message;
}

}  // namespace sabxml::cli
