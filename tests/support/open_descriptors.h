#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>

namespace sab::testing {

/// The number of descriptors that the process has open, as it was when this was made.
class OpenDescriptors {
 public:
  void ExpectNoMore() const { EXPECT_EQ(count_, Count()) << "open descriptors"; }

 private:
  static std::ptrdiff_t Count() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  }

  const std::ptrdiff_t count_ = Count();
};

}  // namespace sab::testing
