#pragma once

#include "common/named_values.h"

namespace sab {

/// The fields of an object that keeps named values, whatever they are about. Asking for an unknown
/// name or index gives E_INVALIDARG and null.
struct NamedValueFields {
  NamedValues values;

  INT ValueCount() const noexcept { return static_cast<INT>(values.Count()); }
  TextView ValueName(INT index) const;
  TextView Value(TextView name) const;
  /// A new name adds a value at the end. Raises ComError(E_INVALIDARG) for what cannot name an
  /// element.
  void SetValue(TextView name, TextView text);
  void RemoveValue(TextView name);
  void RemoveAllValues() noexcept { values.Clear(); }
};

}  // namespace sab
