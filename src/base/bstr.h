#pragma once

#include <new>
#include <utility>

#include "base/text.h"

namespace sab {

/// Owns one automation string. Null is a legal value and reads as the empty string.
class Bstr {
 public:
  Bstr() = default;
  /// A copy of the text; raises std::bad_alloc. Empty text gives an empty string, not null.
  explicit Bstr(TextView text) : value_(Allocate(text)) {}
  Bstr(const Bstr& other) : value_(other.Copy()) {}
  Bstr(Bstr&& other) noexcept : value_(std::exchange(other.value_, nullptr)) {}
  ~Bstr() {
    if (value_) SysFreeString(value_);
  }
  Bstr& operator=(Bstr other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }

  BSTR Get() const { return value_; }
  bool IsNull() const { return value_ == nullptr; }
  bool IsEmpty() const { return View().empty(); }
  TextView View() const { return ViewOf(value_); }

  /// Frees the string and gives the place where a callee stores a new one.
  BSTR* Put() {
    SysFreeString(std::exchange(value_, nullptr));
    return &value_;
  }
  /// Takes over a string that the caller owns.
  void Attach(BSTR value) { SysFreeString(std::exchange(value_, value)); }
  /// Hands the string to the caller, who frees it.
  BSTR Detach() { return std::exchange(value_, nullptr); }
  /// Replaces the string by a copy of the text; the old one stays if there is no memory.
  void Assign(TextView text) { Attach(Allocate(text)); }
  /// A new string for the caller: null for null; raises std::bad_alloc.
  BSTR Copy() const { return value_ ? Allocate(View()) : nullptr; }

  /// The text of a string that the caller owns.
  static TextView ViewOf(BSTR value) {
    return value ? TextView(value, SysStringLen(value)) : TextView();
  }
  /// A copy of a string that the caller owns: null for null.
  static Bstr CopyOf(BSTR value) {
    Bstr copy;
    if (value) copy.value_ = Allocate(ViewOf(value));
    return copy;
  }

 private:
  static BSTR Allocate(TextView text) {
    const BSTR value = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (!value) throw std::bad_alloc();
    return value;
  }

  BSTR value_ = nullptr;
};

}  // namespace sab
