#include "common/named_value_fields.h"

#include "common/indexes.h"

namespace sab {
namespace {

[[noreturn]] void RaiseUnknown(TextView name) {
  throw ComError(E_INVALIDARG, "There is no value named \"" + ToUtf8(name) + "\".");
}

}  // namespace

TextView NamedValueFields::ValueName(INT index) const {
  return values.NameAt(CheckedIndex(index, values.Count(), "value"));
}

TextView NamedValueFields::Value(TextView name) const {
  const std::optional<TextView> value = values.Find(name);
  if (!value) RaiseUnknown(name);
  return *value;
}

void NamedValueFields::SetValue(TextView name, TextView text) {
  CheckElementName(ToUtf8(name));
  values.Set(name, text);
}

void NamedValueFields::RemoveValue(TextView name) {
  if (!values.Remove(name)) RaiseUnknown(name);
}

}  // namespace sab
