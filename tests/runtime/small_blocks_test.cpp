// The memory of strings and objects, as clients see it: through strings of every size that come and
// go on several threads.

#include <gtest/gtest.h>
#include <sabxml/com.h>

#include <mutex>
#include <random>
#include <thread>
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

TEST(SmallBlocks, StringsOfEverySizeStandApart) {
  std::mt19937 random(11);
  std::vector<BSTR> strings;
  for (int round = 0; round < 200000; ++round) {
    const std::size_t place = random() % 3000;
    if (place < strings.size()) {
      ASSERT_TRUE(IsWhole(strings[place]));
      SysFreeString(std::exchange(strings[place], NewString(random() % 300)));
    } else {
      strings.push_back(NewString(random() % 300));
    }
  }
  for (const BSTR string : strings) {
    ASSERT_TRUE(IsWhole(string));
    SysFreeString(string);
  }
}

// Each thread frees what others allocated, and ends while others still hold its strings.
TEST(SmallBlocks, StringsWanderBetweenThreads) {
  std::mutex mutex;
  std::vector<BSTR> shared;
  const auto work = [&](unsigned seed) {
    std::mt19937 random(seed);
    for (int round = 0; round < 3000; ++round) {
      const BSTR mine = NewString(random() % 200);
      BSTR other = nullptr;
      {
        const std::lock_guard lock(mutex);
        shared.push_back(mine);
        std::swap(shared[random() % shared.size()], shared.back());
        if (shared.size() > 500) {
          other = shared.back();
          shared.pop_back();
        }
      }
      if (other) {
        EXPECT_TRUE(IsWhole(other));
        SysFreeString(other);
      }
    }
  };
  for (unsigned generation = 0; generation < 5; ++generation) {
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < 4; ++i) threads.emplace_back(work, generation * 10 + i);
    for (std::thread& thread : threads) thread.join();
  }
  for (const BSTR string : shared) {
    EXPECT_TRUE(IsWhole(string));
    SysFreeString(string);
  }
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
