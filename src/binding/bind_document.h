#pragma once

#include "binding/bind.h"
#include "binding/document_reader.h"

namespace sab {

namespace binding {

// How many elements precede the one at a path when a format is read from its beginning; groups are
// descended into, since their values are found by paths.
constexpr std::size_t PlaceOf(std::span<const formats::Rule> rules, std::string_view path) {
  const std::string_view name = path.substr(0, path.find('/'));
  std::size_t place = 0;
  for (const formats::Rule& rule : rules) {
    if (rule.name == name) {
      return name == path ? place : place + PlaceOf(rule.Content(), path.substr(name.size() + 1));
    }
    place += 1 + PlaceOf(rule.Content(), {});
  }
  return place;
}

// The path of an element while a format is descended into.
struct Place {
  std::array<std::string_view, 8> names;
  std::size_t depth;

  constexpr Place Inside(std::string_view name) const {
    Place inner = *this;
    inner.names[inner.depth++] = name;
    return inner;
  }
  constexpr bool Is(std::string_view path) const {
    for (std::size_t i = 0; i < depth; ++i) {
      if (i > 0 && !path.starts_with('/')) return false;
      if (i > 0) path.remove_prefix(1);
      if (!path.starts_with(names[i])) return false;
      path.remove_prefix(names[i].size());
    }
    return path.empty();
  }
};

// Whether every value and list that is found by its path is bound.
template <class... Bindings>
constexpr bool AreBound(std::span<const formats::Rule> rules, const Place& outer) {
  for (const formats::Rule& rule : rules) {
    const Place place = outer.Inside(rule.name);
    if ((place.Is(Bindings::kName.View()) || ...)) continue;
    const bool is_group = !rule.Content().empty() && rule.count == formats::Count::kFirst;
    if (!is_group || !AreBound<Bindings...>(rule.Content(), place)) return false;
  }
  return true;
}

// Whether the lists that the bindings of an element append to are empty.
template <Name kName, auto kMember>
bool IsEmpty(void* owner, const Bind<kName, kMember>&) {
  return (In<kMember>(owner).*kMember).IsEmpty();
}
template <Name kName, class... Inner>
bool IsEmpty(void* owner, const Within<kName, Inner...>&) {
  return (IsEmpty(owner, Inner()) && ...);
}

template <const auto& kFormat, class Binding>
constexpr BoundPath PathOf() {
  constexpr const formats::Rule& kRule = RuleOf<kFormat, Binding::kName>();
  BoundPath path;
  path.path = Binding::kName.View();
  path.rule = &kRule;
  path.bound = Binding::template Rule<kFormat, kNoPath>();
  if constexpr (!kRule.Content().empty() && kRule.need != formats::Need::kOptional) {
    path.is_empty = [](void* owner) { return IsEmpty(owner, Binding()); };
  }
  return path;
}

}  // namespace binding

/// A table of bindings for a document whose elements are found by their paths: Bind<"A/B", …> for
/// the text of the first B in any A, Within<"A", …> for the content of the first A.
template <const formats::Document& kForm, class... Bindings>
struct BoundPaths {
  static_assert(binding::AreBound<Bindings...>(kForm.content, {}), "an element is unbound");

  static constexpr auto kPaths = [] {
    std::array<BoundPath, sizeof...(Bindings)> paths = {binding::PathOf<kForm, Bindings>()...};
    std::ranges::sort(paths, {}, [](const BoundPath& path) {
      return binding::PlaceOf(kForm.content, path.path);
    });
    return paths;
  }();
  static constexpr BoundDocument kDocument = {&kForm, kPaths};
};

}  // namespace sab
