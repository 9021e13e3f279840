// The memory of strings and objects, as clients see it: through strings of every size that come and
// go.

#include <gtest/gtest.h>
#include <sabxml/com.h>

#include <random>
#include <vector>

namespace sab::testing {
namespace {

// Text that depends on its length, so that overlapping memory is seen.
std::u16string TextOf(std::size_t length) {
  return std::u16string(length, static_cast<char16_t>(0x100 + length));
}

BSTR NewString(std::size_t length) {
  return SysAllocStringLen(TextOf(length).c_str(), static_cast<UINT>(length));
}

bool IsWhole(BSTR string) {
  const std::size_t length = SysStringLen(string);
  return TextOf(length).compare(0, length, string, length) == 0 && string[length] == 0 &&
         reinterpret_cast<std::uintptr_t>(string) % 8 == 0;
}

// Strings come and go in any order. The program "threads" does the same on several threads.
TEST(SmallBlocks, StringsOfEverySizeStandApart) {
  std::mt19937 random(1);
  std::vector<BSTR> strings(3000);
  for (int round = 0; round < 100000; ++round) {
    BSTR& string = strings[random() % strings.size()];
    ASSERT_TRUE(!string || IsWhole(string));
    SysFreeString(string);
    string = NewString(random() % 300);
  }
  for (const BSTR string : strings) SysFreeString(string);
}

TEST(SmallBlocks, TaskMemoryKeepsItsBytesWhenItGrowsAndShrinks) {
  auto* memory = static_cast<unsigned char*>(CoTaskMemAlloc(0));
  ASSERT_TRUE(memory);
  std::size_t size = 0;
  for (const std::size_t wanted : {1U, 15U, 16U, 17U, 480U, 496U, 497U, 5000U, 400U, 3U}) {
    memory = static_cast<unsigned char*>(CoTaskMemRealloc(memory, wanted));
    ASSERT_TRUE(memory);
    EXPECT_EQ(0U, reinterpret_cast<std::uintptr_t>(memory) % 16);
    for (std::size_t i = 0; i < std::min(size, wanted); ++i) ASSERT_EQ(i % 251, memory[i]);
    for (std::size_t i = 0; i < wanted; ++i) memory[i] = static_cast<unsigned char>(i % 251);
    size = wanted;
  }
  EXPECT_EQ(nullptr, CoTaskMemRealloc(memory, 0));
  EXPECT_EQ(nullptr, CoTaskMemAlloc(static_cast<SIZE_T>(-8)));
}

}  // namespace
}  // namespace sab::testing
