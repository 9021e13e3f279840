#include "common/named_values.h"

#include <unordered_set>

namespace sab {

bool IsLeaf(const ConfigElement& element) { return element.Children().begin() == nullptr; }

std::optional<TextView> NamedValues::Find(TextView name) const {
  const auto found = index_of_name_.find(Text(name));
  if (found == index_of_name_.end()) return std::nullopt;
  return values_[found->second].text;
}

void NamedValues::Set(TextView name, TextView text) {
  Value value{Text(name), Text(text)};
  const auto known = index_of_name_.find(value.name);
  if (known != index_of_name_.end()) {
    values_[known->second].text = std::move(value.text);
    return;
  }
  values_.reserve(values_.size() + 1);
  index_of_name_.emplace(value.name, values_.size());
  values_.push_back(std::move(value));
}

bool NamedValues::Remove(TextView name) {
  const auto found = index_of_name_.find(Text(name));
  if (found == index_of_name_.end()) return false;
  const std::size_t index = found->second;
  index_of_name_.erase(found);
  values_.erase(values_.begin() + static_cast<std::ptrdiff_t>(index));
  for (auto& [other, place] : index_of_name_) {
    if (place > index) --place;
  }
  return true;
}

void NamedValues::Clear() {
  values_.clear();
  index_of_name_.clear();
}

void NamedValues::Read(const std::vector<ConfigElement>& elements) {
  std::unordered_set<Text> seen;
  Text name;
  Text text;
  for (const ConfigElement& element : elements) {
    if (!IsLeaf(element)) continue;
    element.ReadLocalName(name);
    if (seen.insert(name).second) Set(name, element.ReadText(text));
  }
}

}  // namespace sab
