#pragma once

#include <array>

#include "base/interface_info.h"

namespace sab {

/// The arguments of one late-bound call: brought from the caller's variants into the slots that the
/// method reads, and, after it, from the slots to where the caller wants the results. Whatever is
/// left over is freed.
class DispatchArguments {
 public:
  static constexpr std::size_t kMaxParameters = 8;

  DispatchArguments(const MemberInfo& member, const DISPPARAMS& given)
      : member_(member), given_(given) {}
  DispatchArguments(const DispatchArguments&) = delete;
  DispatchArguments& operator=(const DispatchArguments&) = delete;
  ~DispatchArguments();

  /// Finds the argument of each parameter and converts it, and looks at where results will go.
  /// @param bad_argument receives the number of the argument that does not fit; may be null
  HRESULT Prepare(UINT* bad_argument) noexcept;
  Slot* Slots() { return slots_.data(); }
  /// Writes results back. @param result receives the return value; may be null
  HRESULT Deliver(VARIANT* result, UINT* bad_argument) noexcept;

 private:
  static constexpr int kNoArgument = -1;

  HRESULT Assign(UINT* bad_argument);
  HRESULT Read(const ParameterInfo& parameter, VARIANTARG& argument, std::size_t index);
  HRESULT ReadNumberOrText(VARTYPE type, const VARIANTARG& value, std::size_t index);
  HRESULT ReadObject(const InterfaceInfo& wanted, const VARIANTARG& value, std::size_t index);
  HRESULT TakeResult(const ParameterInfo& parameter, std::size_t index, VARIANT& value);

  const MemberInfo& member_;
  const DISPPARAMS& given_;
  std::array<Slot, kMaxParameters> slots_{};
  // The index in given_.rgvarg for each parameter.
  std::array<int, kMaxParameters> argument_of_{};
  // Whether the slot holds a string, object or array to be freed.
  std::array<bool, kMaxParameters> is_owned_{};
};

}  // namespace sab
