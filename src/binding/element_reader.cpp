#include "binding/element_reader.h"

namespace sab {

namespace {

// An element that is open: what is left of it, and where it goes when it is done.
struct OpenElement {
  ConfigElement::Iterator rest;
  const BoundContent* content;
  void* owner;
  void* own_fields;          // of the owner; null for an object of a foreign class
  ComPtr<IDispatch> object;  // the owner, where the element has an object of its own
  const BoundRule* rule;     // null for the outermost
  std::size_t next = 0;      // the rule that is looked at first
};

// The rule for an element. Files mostly keep to one order, so the search begins after the rule that
// was found last, or with it if it is that of a list.
const BoundRule* RuleFor(OpenElement& open, const ConfigElement& element) {
  const std::span<const BoundRule> rules = open.content->rules;
  for (std::size_t looked_at = 0; looked_at < rules.size(); ++looked_at) {
    const BoundRule& rule = rules[open.next];
    const bool is_found = element.Is(rule.name);
    if ((!is_found || !rule.is_list) && ++open.next == rules.size()) open.next = 0;
    if (is_found) return &rule;
  }
  return nullptr;
}

void Append(const BoundRule& rule, const OpenElement& owner, IDispatch& object) {
  if (rule.append_own && owner.own_fields) {
    rule.append_own(owner.own_fields, object);
  } else {
    rule.append(owner.owner, object);
  }
}

bool IsClassIdentifier(const Text& text) {
  CLSID clsid;
  return !text.empty() && text.front() == '{' && SUCCEEDED(CLSIDFromString(text.c_str(), &clsid));
}

void TakeValue(Reading& reading, void* owner, const ConfigElement& element, const BoundRule& rule) {
  if (rule.taking == Taking::kEachNode) {
    element.ForEachChildText(reading.text, [&](TextView text) {
      if (!text.empty()) rule.put(reading, owner);
    });
    return;
  }
  element.ReadText(reading.text);
  if (rule.taking == Taking::kWhole || !reading.text.empty()) rule.put(reading, owner);
}

// Reads an element whose object is made only if it is complete; of a name that occurs twice the
// later text stays. Every value is put, a missing one as an empty text.
void TakeItem(Reading& reading, void* owner, const ConfigElement& element, const BoundRule& item) {
  const std::span<const BoundRule> rules = item.content->rules;
  std::vector<Text> texts(rules.size());
  for (const ConfigElement child : element.Children()) {
    for (std::size_t i = 0; i < rules.size(); ++i) {
      if (!child.Is(rules[i].name)) continue;
      child.ReadText(reading.text);
      if (!rules[i].must_be_guid || IsClassIdentifier(reading.text)) texts[i] = reading.text;
    }
  }
  for (std::size_t i = 0; i < rules.size(); ++i) {
    if (rules[i].completes_item && texts[i].empty()) return;
  }
  const ComPtr<IDispatch> object = item.open(reading, owner, element);
  for (std::size_t i = 0; i < rules.size(); ++i) {
    reading.text = std::move(texts[i]);
    rules[i].put(reading, object.Get());
  }
  item.append(owner, *object);
}

}  // namespace

void binding::CheckPut(HRESULT result, std::string_view element) {
  if (FAILED(result)) throw ComError(result, std::string(element) + " could not be put");
}

void ReadElements(Reading& reading, const ConfigElement& element, const BoundContent& content,
                  void* owner) {
  std::vector<OpenElement> open;
  open.push_back({element.Children().begin(), &content, owner, nullptr, {}, nullptr});
  while (!open.empty()) {
    OpenElement& top = open.back();
    if (top.rest == nullptr) {
      const OpenElement done = std::move(top);
      open.pop_back();
      if (done.rule && done.rule->append) Append(*done.rule, open.back(), *done.object);
      continue;
    }
    const ConfigElement child = *top.rest;
    ++top.rest;
    const BoundRule* const rule = RuleFor(top, child);
    if (!rule) continue;
    if (rule->store && top.own_fields) {
      rule->store(reading, top.own_fields, child);
      continue;
    }
    if (rule->put) {
      TakeValue(reading, top.owner, child, *rule);
      continue;
    }
    if (rule->is_item) {
      TakeItem(reading, top.owner, child, *rule);
      continue;
    }
    ComPtr<IDispatch> object;
    reading.own_fields = nullptr;
    if (rule->open) object = rule->open(reading, top.owner, child);
    if (rule->content) {
      void* const inner = object ? object.Get() : top.owner;
      void* const own_fields = object ? reading.own_fields : top.own_fields;
      open.push_back(
          {child.Children().begin(), rule->content, inner, own_fields, std::move(object), rule});
    } else if (rule->append) {
      Append(*rule, top, *object);
    }
  }
}

}  // namespace sab
