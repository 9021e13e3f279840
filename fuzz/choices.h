#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>

namespace sab::fuzz {

/// Ends the run where a property does not hold.
inline void Require(bool holds) {
  if (!holds) std::abort();
}

/// An input taken apart into choices; zeros follow its end.
class Choices {
 public:
  Choices(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}

  bool IsEmpty() const { return next_ == end_; }

  template <class Value>
  Value Take() {
    Value value{};
    for (std::size_t i = 0; i < sizeof value && next_ != end_; ++i)
      reinterpret_cast<std::uint8_t*>(&value)[i] = *next_++;
    return value;
  }
  bool Flip() { return Below(2) == 1; }
  std::size_t Below(std::size_t bound) { return Take<std::uint16_t>() % bound; }
  template <class Values>
  const auto& Pick(const Values& values) {
    return values[Below(std::size(values))];
  }
  std::string Text(std::size_t most) {
    std::string text(Below(most + 1), '\0');
    for (char& byte : text) byte = Take<char>();
    return text;
  }

 private:
  const std::uint8_t* next_;
  const std::uint8_t* const end_;
};

}  // namespace sab::fuzz
