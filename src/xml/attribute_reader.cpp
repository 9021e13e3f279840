#include "xml/attribute_reader.h"

#include <algorithm>
#include <string>
#include <tuple>

#include "xml/characters.h"
#include "xml/node.h"
#include "xml/text.h"

namespace sab::xml {

std::uint8_t AttributeReader::ReadAttributes(std::uint32_t depth, std::uint8_t flags) {
  attributes_.clear();
  while (SkipSpace() && *p_ != '>' && *p_ != '/') {
    const std::string_view name = ReadName("an attribute's name");
    attributes_.push_back({name, PrefixOf(name)});
    SkipSpace();
    Expect("=", "an attribute needs = and a value in quotes");
    SkipSpace();
    const std::string_view value = ReadValue();
    if (name == "xml:space") {
      std::string decoded;
      AppendDecoded(value, true, decoded);
      flags = static_cast<std::uint8_t>(decoded == "preserve" ? flags | kPreservesSpace
                                                              : flags & ~kPreservesSpace);
    } else if (name == "xmlns" || name.starts_with("xmlns:")) {
      const std::string_view prefix = name == "xmlns" ? std::string_view() : name.substr(6);
      if (const char* const problem = namespaces_.Declare(depth, prefix, value))
        FailAt(name.data(), problem);
    }
  }
  if (attributes_.empty() && *p_ != '>' && *p_ != '/') Fail("the tag is not closed: > is expected");
  CheckUnique();
  return flags;
}

void AttributeReader::FailUndeclared(std::string_view prefix) const {
  FailAt(prefix.data(), "the prefix " + std::string(prefix) + " is not declared");
}

std::string_view AttributeReader::ReadValue() {
  const char quote = *p_;
  if (quote != '"' && quote != '\'') Fail("an attribute's value needs quotes");
  const char* const start = ++p_;
  for (;;) {
    while (Has(*p_, kPlainValue) && *p_ != quote) ++p_;
    if (*p_ == quote) break;
    if (*p_ == '<') Fail("< in an attribute's value: write &lt;");
    if (*p_ == '&') {
      ReadReference();
    } else {
      ReadCharacter();
    }
  }
  const std::string_view value(start, static_cast<std::size_t>(p_ - start));
  ++p_;
  return value;
}

void AttributeReader::CheckUnique() {
  constexpr std::size_t kLinearSearchLimit = 8;
  if (attributes_.size() > kLinearSearchLimit) {
    std::vector<ExpandedName> names;
    for (const Attribute& attribute : attributes_) names.push_back({0, attribute.name});
    CheckUnique(names);
  } else {
    for (std::size_t i = 1; i < attributes_.size(); ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        if (attributes_[i].name == attributes_[j].name) FailRepeated(attributes_[i].name);
      }
    }
  }
  // Two prefixes may name one namespace.
  std::vector<ExpandedName> names;
  for (const Attribute& attribute : attributes_) {
    if (attribute.prefix_length == 0 || attribute.name.starts_with("xmlns:")) continue;
    const std::string_view prefix = attribute.name.substr(0, attribute.prefix_length);
    Namespaces::Declaration* const declaration = namespaces_.Find(prefix);
    if (!declaration) FailUndeclared(prefix);
    names.push_back(
        {namespaces_.NumberOf(*declaration), attribute.name.substr(attribute.prefix_length + 1)});
  }
  CheckUnique(names);
}

// Sorting takes little longer than hashing, whatever names a file has.
void AttributeReader::CheckUnique(std::vector<ExpandedName>& names) const {
  if (names.size() < 2) return;
  std::sort(names.begin(), names.end(), [](const ExpandedName& a, const ExpandedName& b) {
    const auto key = [](const ExpandedName& name) {
      return std::make_tuple(name.namespace_number, name.local_name, name.local_name.data());
    };
    return key(a) < key(b);
  });
  const ExpandedName* repeated = nullptr;  // the first one in the text
  for (std::size_t i = 1; i < names.size(); ++i) {
    if (names[i].namespace_number == names[i - 1].namespace_number &&
        names[i].local_name == names[i - 1].local_name &&
        (!repeated || names[i].local_name.data() < repeated->local_name.data()))
      repeated = &names[i];
  }
  if (!repeated) return;
  const auto attribute =
      std::find_if(attributes_.begin(), attributes_.end(), [repeated](const Attribute& candidate) {
        return candidate.name.data() + candidate.name.size() ==
               repeated->local_name.data() + repeated->local_name.size();
      });
  FailRepeated(attribute->name);
}

void AttributeReader::FailRepeated(std::string_view name) const {
  FailAt(name.data(), "the attribute " + std::string(name) + " is there twice");
}

}  // namespace sab::xml
