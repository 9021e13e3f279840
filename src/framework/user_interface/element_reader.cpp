#include "framework/user_interface/element_reader.h"

#include <cstring>

namespace sab {

BSTR ReusedString::Set(TextView text) {
  constexpr std::size_t kPrefix = sizeof(UINT) / sizeof(OLECHAR);
  const std::size_t needed = kPrefix + text.size() + 1;
  if (memory_.size() < needed) memory_.resize(needed);
  const UINT bytes = static_cast<UINT>(text.size() * sizeof(OLECHAR));
  std::memcpy(memory_.data(), &bytes, sizeof bytes);
  OLECHAR* const copy = memory_.data() + kPrefix;
  std::memcpy(copy, text.data(), bytes);
  copy[text.size()] = 0;
  return copy;
}

namespace {

// An element that is open: what is left of it, and where it goes when it is done.
struct OpenElement {
  ConfigElement::Iterator rest;
  const ElementGrammar* grammar;
  ComPtr<IDispatch> object;
  const ChildRule* rule;
  std::size_t next_value = 0;  // the rules that are looked at first
  std::size_t next_child = 0;
};

// The rule for an element. Files mostly keep to one order, so the search begins behind the rule
// that was found last.
template <class Rule>
const Rule* RuleFor(std::span<const Rule> rules, std::size_t& next, const ConfigElement& element) {
  for (std::size_t looked_at = 0; looked_at < rules.size(); ++looked_at) {
    const Rule& rule = rules[next];
    if (++next == rules.size()) next = 0;
    if (element.Is(rule.name)) return &rule;
  }
  return nullptr;
}

}  // namespace

void ReadElements(ReadingContext& context, const ConfigElement& element,
                  const ElementGrammar& grammar, IDispatch& object) {
  std::vector<OpenElement> open;
  open.push_back({element.Children().begin(), &grammar, ComPtr<IDispatch>(&object), nullptr});
  while (!open.empty()) {
    OpenElement& top = open.back();
    if (top.rest == nullptr) {
      const OpenElement done = std::move(top);
      open.pop_back();
      if (done.rule && done.rule->append) done.rule->append(*open.back().object, *done.object);
      continue;
    }
    const ConfigElement child = *top.rest;
    ++top.rest;
    if (const ValueRule* const value = RuleFor(top.grammar->values, top.next_value, child)) {
      child.ReadText(context.text);
      value->put(context, *top.object);
    } else if (const ChildRule* const rule =
                   RuleFor(top.grammar->children, top.next_child, child)) {
      ComPtr<IDispatch> opened = rule->open(context, *top.object, child);
      if (rule->grammar) {
        open.push_back({child.Children().begin(), rule->grammar, std::move(opened), rule});
      } else if (rule->append) {
        rule->append(*top.object, *opened);
      }
    }
  }
}

}  // namespace sab
