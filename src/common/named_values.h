#pragma once

#include <optional>
#include <unordered_map>
#include <vector>

#include "base/bstr.h"
#include "common/config_document.h"

namespace sab {

/// Texts under the names of elements, in the order in which they came.
class NamedValues {
 public:
  std::size_t Count() const { return values_.size(); }
  TextView NameAt(std::size_t index) const { return values_[index].name; }
  TextView ValueAt(std::size_t index) const { return values_[index].text; }
  std::optional<TextView> Find(TextView name) const;

  /// A new name comes last.
  void Set(TextView name, TextView text);
  bool Remove(TextView name);
  void Clear();

  /// Takes the elements without elements of their own, the first of each name; values whose names
  /// do not occur stay.
  void Read(const std::vector<ConfigElement>& elements);
  /// Adds all values as children of an element, whose names theirs must be able to be.
  template <class Element>
  void Write(Element& element) const {
    for (const Value& value : values_) element.Append(ToUtf8(value.name), value.text);
  }

 private:
  struct Value {
    Text name;
    Text text;
  };

  std::vector<Value> values_;
  std::unordered_map<Text, std::size_t> index_of_name_;
};

/// Whether an element has no elements of its own.
bool IsLeaf(const ConfigElement& element);

}  // namespace sab
