#pragma once

#include <sabxml/com.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/text.h"

namespace sabxml::cli {

using sab::FromUtf8;
using sab::ToUtf8;
std::string ToUtf8(BSTR text);

/// A failure that a person reads; the program then ends with the exit code 1.
class Failure : public std::runtime_error {
 public:
  /// @param code what the server or the system answered; S_OK if neither was asked
  explicit Failure(const std::string& reason, HRESULT code = S_OK)
      : std::runtime_error(reason), code_(code) {}

  HRESULT Code() const { return code_; }
  /// The reason, and the code in digits and words where there is one.
  std::string Explanation() const;

 private:
  HRESULT code_;
};

/// Raises Failure with the thread's error description where there is one, else with the action.
[[noreturn]] void Fail(HRESULT code, const std::string& action);

/// One reference to an interface.
template <class Interface>
class Reference {
 public:
  Reference() = default;
  explicit Reference(Interface* pointer) : pointer_(pointer) {}  ///< takes the reference over
  Reference(Reference&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  Reference& operator=(Reference&& other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~Reference() {
    if (pointer_) pointer_->Release();
  }

  Interface* Get() const { return pointer_; }
  Interface* operator->() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }
  Interface** Put() { return &pointer_; }
  void** PutVoid() { return reinterpret_cast<void**>(&pointer_); }

 private:
  Interface* pointer_ = nullptr;
};

/// One automation value, freed at the end.
class Value {
 public:
  Value() { VariantInit(&variant_); }
  explicit Value(std::string_view text);
  explicit Value(LONGLONG number);
  Value(Value&& other) noexcept : variant_(other.variant_) { VariantInit(&other.variant_); }
  Value& operator=(Value&& other) noexcept {
    std::swap(variant_, other.variant_);
    return *this;
  }
  ~Value() { VariantClear(&variant_); }

  VARIANT& Get() { return variant_; }
  const VARIANT& Get() const { return variant_; }

 private:
  VARIANT variant_;
};

/// Calls a member by its dispid. Raises Failure with what the member says of its failure.
/// @param arguments in their order
Value Call(IDispatch& object, DISPID member, WORD flags, std::vector<Value> arguments = {});
/// The same by name. Raises Failure for a name that the object does not have.
Value Call(IDispatch& object, std::string_view name, WORD flags, std::vector<Value> arguments = {});

}  // namespace sabxml::cli
