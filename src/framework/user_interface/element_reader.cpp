#include "framework/user_interface/element_reader.h"

#include <cstring>

namespace sab {

BSTR ReusedString::Set(TextView text) {
  constexpr std::size_t kPrefix = sizeof(UINT) / sizeof(OLECHAR);
  memory_.resize(kPrefix + text.size() + 1);
  const UINT bytes = static_cast<UINT>(text.size() * sizeof(OLECHAR));
  std::memcpy(memory_.data(), &bytes, sizeof bytes);
  std::memcpy(memory_.data() + kPrefix, text.data(), bytes);
  memory_.back() = 0;
  return memory_.data() + kPrefix;
}

namespace {

// An element that is open: what is left of it, and where it goes when it is done.
struct OpenElement {
  ConfigElement::Iterator rest;
  const ElementGrammar* grammar;
  ComPtr<IDispatch> object;
  const ChildRule* rule;
};

template <class Rule>
const Rule* RuleFor(std::span<const Rule> rules, const ConfigElement& element) {
  for (const Rule& rule : rules) {
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
    if (const ValueRule* const value = RuleFor(top.grammar->values, child)) {
      child.ReadText(context.text);
      value->put(context, *top.object);
    } else if (const ChildRule* const rule = RuleFor(top.grammar->children, child)) {
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
