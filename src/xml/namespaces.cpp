#include "xml/namespaces.h"

#include <algorithm>

#include "xml/text.h"

namespace sab::xml {
namespace {

constexpr std::string_view kXmlns = "http://www.w3.org/2000/xmlns/";
constexpr std::uint32_t kLinearSearchLimit = 8;

}  // namespace

const char* Namespaces::Declare(std::uint32_t depth, std::string_view prefix,
                                std::string_view value) {
  if (NeedsDecoding(value, true)) {
    std::string decoded;
    AppendDecoded(value, true, decoded);
    value = Numbered(std::move(decoded)).first;
  }
  if (prefix == "xmlns") return "the prefix xmlns may not be declared";
  if ((prefix == "xml") != (value == kXml)) return "the prefix xml has a namespace of its own";
  if (value == kXmlns) return "this namespace may not be declared";
  if (!prefix.empty() && value.empty()) return "a prefix may not be undeclared";
  const auto index = static_cast<std::uint32_t>(declarations_.size());
  std::uint32_t hidden = 0;
  if (index >= kLinearSearchLimit) hidden = std::exchange(last_of_prefix_[prefix], index);
  declarations_.push_back({depth, prefix, value, 0, hidden});
  return nullptr;
}

Namespaces::Declaration* Namespaces::Find(std::string_view prefix) {
  if (!last_of_prefix_.empty()) {
    const auto last = last_of_prefix_.find(prefix);
    if (last != last_of_prefix_.end()) return &declarations_[last->second];
  }
  for (std::size_t i = std::min<std::size_t>(declarations_.size(), kLinearSearchLimit); i-- > 0;) {
    if (declarations_[i].prefix == prefix) return &declarations_[i];
  }
  return prefix == "xml" ? &xml_ : nullptr;
}

std::uint32_t Namespaces::NumberOf(Declaration& declaration) {
  if (declaration.number == 0) declaration.number = Numbered(std::string(declaration.uri)).second;
  return declaration.number;
}

void Namespaces::ForgetLast() {
  const Declaration& last = declarations_.back();
  if (last.hidden != 0) {
    last_of_prefix_[last.prefix] = last.hidden;
  } else if (declarations_.size() > kLinearSearchLimit) {
    last_of_prefix_.erase(last.prefix);
  }
  declarations_.pop_back();
}

}  // namespace sab::xml
