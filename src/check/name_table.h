#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace sab::check {

/// Numbers found by the hashes of names, in 8 bytes each: the names themselves are where the caller
/// has them. A key may be added to a name, so that the same name counts once for each key.
class NameTable {
 public:
  static constexpr std::uint32_t kNone = UINT32_MAX;

  static std::uint32_t HashOf(std::string_view name, std::uint64_t key = 0) {
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;
    std::uint64_t hash = key * kFactor + name.size();
    const char* p = name.data();
    std::size_t left = name.size();
    for (; left >= 8; left -= 8, p += 8) {
      std::uint64_t word;
      std::memcpy(&word, p, 8);
      hash = std::rotl((hash ^ word) * kFactor, 29);
    }
    std::uint64_t word = 0;
    if (left > 0) std::memcpy(&word, p, left);
    hash = (hash ^ word) * kFactor;
    return static_cast<std::uint32_t>(hash >> 32);
  }

  /// The number of the same name that is there already; otherwise the name gets the number, and the
  /// result is kNone.
  /// @param is_same whether the name of a number is this one, with its key
  template <class IsSame>
  std::uint32_t Add(std::uint32_t hash, std::uint32_t number, const IsSame& is_same) {
    if (2 * (count_ + 1) > entries_.size()) Grow();
    Entry& entry = entries_[FindPlace(hash, is_same)];
    if (entry.number != kNone) return entry.number;
    entry = {hash, number};
    ++count_;
    return kNone;
  }

  template <class IsSame>
  std::uint32_t Find(std::uint32_t hash, const IsSame& is_same) const {
    return entries_.empty() ? kNone : entries_[FindPlace(hash, is_same)].number;
  }

 private:
  struct Entry {
    std::uint32_t hash = 0;
    std::uint32_t number = kNone;
  };

  template <class IsSame>
  std::size_t FindPlace(std::uint32_t hash, const IsSame& is_same) const {
    const std::size_t mask = entries_.size() - 1;
    for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
      const Entry& entry = entries_[at];
      if (entry.number == kNone || (entry.hash == hash && is_same(entry.number))) return at;
    }
  }

  void Grow() {
    std::vector<Entry> old(entries_.empty() ? 16 : 4 * entries_.size());
    std::swap(old, entries_);
    for (const Entry& entry : old) {
      if (entry.number == kNone) continue;
      entries_[FindPlace(entry.hash, [](std::uint32_t) { return false; })] = entry;
    }
  }

  std::vector<Entry> entries_;
  std::size_t count_ = 0;
};

}  // namespace sab::check
