#include "project/rule_words.h"

#include <set>

namespace sab::project {

std::string NeedOf(const formats::Rule& rule) {
  if (rule.IsRequired()) return "must be there";
  if (rule.IsForItem()) return "an entry without it is dropped";
  if (rule.is_expected) return "the entry is of no use without it";
  return rule.IsList() ? "any number" : "may be left out";
}

std::string WhichCounts(const formats::Rule& rule) {
  switch (rule.count) {
    case formats::Count::kFirst:
      return "the first";
    case formats::Count::kLast:
      return "the last";
    case formats::Count::kSticky:
      return "one with the deciding text";
    default:
      return "";
  }
}

std::string PlacesOf(const Schema& schema, ContentId content) {
  if (content == schema.RootContent()) return std::string(schema.Form().root);
  std::set<std::string_view> known;
  std::string places;
  for (RuleId id = 1; id < schema.RuleCount(); ++id) {
    if (schema.ContentOf(id) != content || !known.insert(schema.At(id).name).second) continue;
    places += (places.empty() ? "" : ", ") + std::string(schema.At(id).name);
  }
  return places;
}

std::string WithArticle(std::string_view what) {
  const std::size_t first = what.starts_with('<') ? 1 : 0;
  // A user interface is the only u.
  const bool has_vowel = what.find_first_of("aeioAEIO", first) == first;
  return (has_vowel ? "an " : "a ") + std::string(what);
}

}  // namespace sab::project
