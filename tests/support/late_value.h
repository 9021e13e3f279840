#pragma once

#include <sabxml/com.h>

#include <string>
#include <utility>
#include <vector>

namespace sab::testing {

/// The parts of a text between separators.
std::vector<std::string> Split(const std::string& text, char separator);

/// A value as a script has it.
class LateValue {
 public:
  LateValue() { VariantInit(&value_); }
  explicit LateValue(LONG number);
  explicit LateValue(double number);
  explicit LateValue(const std::string& utf8);
  static LateValue Of(IDispatch* object);
  /// An argument that is left out.
  static LateValue Missing();
  /// A reference to a variable of the type, VT_VARIANT for one that holds anything.
  static LateValue Reference(VARTYPE type, void* variable);
  LateValue(const LateValue& other);
  LateValue(LateValue&& other) noexcept : value_(std::exchange(other.value_, VARIANT{})) {}
  LateValue& operator=(LateValue other) {
    std::swap(value_, other.value_);
    return *this;
  }
  ~LateValue() { VariantClear(&value_); }

  const VARIANT& Get() const { return value_; }
  VARIANT* Put() { return &value_; }  ///< of an empty value

  /// A property of the object that this is; fails the test if there is none.
  LateValue Get(const std::string& property) const;
  /// Numbers in decimal, truth values as -1 and 0.
  std::string Text() const;

 private:
  VARIANT value_;
};

/// Arguments as Invoke takes them: the last one first, and the value of a put named.
struct InvokeParameters {
  InvokeParameters(const std::vector<LateValue>& arguments, bool is_put);
  InvokeParameters(const InvokeParameters&) = delete;
  InvokeParameters& operator=(const InvokeParameters&) = delete;

  std::vector<VARIANT> reversed;  ///< owned by the arguments
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters;
};

/// What a late-bound call gives back.
struct LateResult {
  HRESULT code;
  LateValue value;
  SCODE scode = S_OK;  ///< of the exception, as are the texts
  std::string source;
  std::string description;
  UINT bad_argument = 99;  ///< as it was before the call unless an argument is refused

  /// The member's own failure, if it was called and failed.
  HRESULT Outcome() const { return code == DISP_E_EXCEPTION ? scode : code; }
};

/// Calls a member; the value of a put is the last argument, and named.
LateResult Call(IDispatch& object, DISPID member, WORD flags,
                const std::vector<LateValue>& arguments = {});

}  // namespace sab::testing
