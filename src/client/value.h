#pragma once

#include <sabxml/com.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sab::client {

/// An automation value as a late-bound client has it, freed at the end. Raises ComError or
/// std::bad_alloc where a value cannot be made.
class Value {
 public:
  Value() { VariantInit(&variant_); }
  explicit Value(LONG number);
  explicit Value(LONGLONG number);
  explicit Value(double number);
  explicit Value(std::string_view utf8);
  explicit Value(const char* utf8) : Value(std::string_view(utf8)) {}
  explicit Value(const std::string& utf8) : Value(std::string_view(utf8)) {}
  /// A reference of its own to an object.
  static Value Of(IDispatch* object);
  /// An optional argument that is left out.
  static Value Missing();
  /// A reference to a variable of the caller, which outlives it.
  /// @param type of the variable; VT_VARIANT for one that holds anything, as scripts pass it
  static Value Reference(VARTYPE type, void* variable);
  Value(const Value& other);
  Value(Value&& other) noexcept : variant_(other.variant_) { VariantInit(&other.variant_); }
  Value& operator=(Value other) noexcept {
    std::swap(variant_, other.variant_);
    return *this;
  }
  ~Value() { VariantClear(&variant_); }

  const VARIANT& Get() const { return variant_; }
  VARIANT* Put() { return &variant_; }  ///< of an empty value

  /// UTF-8: numbers in decimal, truth values as -1 and 0, a null string as the empty text.
  std::string Text() const;
  /// Converted to 64 bits; 0 for what is no number.
  LONGLONG Number() const;
  /// The elements of a one-dimensional array; none for what is no array.
  std::vector<Value> Elements() const;

 private:
  VARIANT variant_;
};

}  // namespace sab::client
