#pragma once

#include <sabxml/com.h>

#include <string>
#include <vector>

namespace sab::testing {

/// The parts of a text between separators.
std::vector<std::string> Split(const std::string& text, char separator);

/// A value reached by late binding, the way a script reaches it. A member that fails fails the
/// test.
class LateValue {
 public:
  static LateValue Of(IDispatch* object);
  LateValue(const LateValue& other);
  LateValue& operator=(const LateValue&) = delete;
  ~LateValue() { VariantClear(&value_); }

  /// A property of the object that this is.
  LateValue Get(const std::string& property) const;
  /// From property to property; "[0]" is the first element of a list.
  LateValue Follow(const std::string& path) const;
  /// Elements of the collection that this is.
  int Count() const;
  /// Numbers in decimal, truth values as -1 and 0.
  std::string Text() const;

 private:
  LateValue() { VariantInit(&value_); }
  LateValue Invoke(const std::string& name, WORD flags, const VARIANT* argument = nullptr) const;

  VARIANT value_;
};

}  // namespace sab::testing
