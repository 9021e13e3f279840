#pragma once

#include <cstdint>
#include <string_view>

namespace sab::bench {

/// What a walk has seen, whatever the order: equal for trees of equal properties.
class Fingerprint {
 public:
  void Add(std::u16string_view text) {
    if (text.empty()) return;
    value_ += text.size() * 0x9E3779B97F4A7C15 + std::uint64_t{text.front()} * 31 + text.back();
  }
  void Add(bool value) { value_ += value ? 0x51ED27 : 0; }
  void Add(int value) { value_ += static_cast<std::uint64_t>(value) * 0xC2B2AE35; }

  std::uint64_t Value() const { return value_; }

 private:
  std::uint64_t value_ = 0;
};

}  // namespace sab::bench
