#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "xml/document.h"

namespace sab::xml {
namespace {

// In a process of its own, which may be left without descriptors.
[[noreturn]] void ReadWithoutDescriptors(const char* encoding) {
  rlimit before{};
  if (getrlimit(RLIMIT_NOFILE, &before) != 0) std::_Exit(1);
  const rlimit none{0, before.rlim_max};
  if (setrlimit(RLIMIT_NOFILE, &none) != 0) std::_Exit(1);
  try {
    const Document document("<?xml version='1.0' encoding='" + std::string(encoding) + "'?><a/>");
  } catch (const std::system_error& error) {
    setrlimit(RLIMIT_NOFILE, &before);  // UBSan opens a pipe before it looks at an object
    std::_Exit(error.code().value());
  } catch (...) {
    std::_Exit(2);
  }
  std::_Exit(0);
}

TEST(CodePage, LackOfDescriptorsIsNotAnUnknownEncoding) {
  for (const char* encoding : {"KOI8-U", "x-none"})
    EXPECT_EXIT(ReadWithoutDescriptors(encoding), ::testing::ExitedWithCode(EMFILE), "");
}

}  // namespace
}  // namespace sab::xml
