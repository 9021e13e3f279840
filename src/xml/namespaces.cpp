#include "xml/namespaces.h"

#include <algorithm>

namespace sab::xml {
namespace {

constexpr std::string_view kXml = "http://www.w3.org/XML/1998/namespace";
constexpr std::string_view kXmlns = "http://www.w3.org/2000/xmlns/";

}  // namespace

const char* Namespaces::Declare(std::uint32_t depth, std::string_view prefix,
                                std::string_view value) {
  if (prefix == "xmlns") return "the prefix xmlns may not be declared";
  if ((prefix == "xml") != (value == kXml)) return "the prefix xml has a namespace of its own";
  if (value == kXmlns) return "this namespace may not be declared";
  if (!prefix.empty() && value.empty()) return "a prefix may not be undeclared";
  declarations_.push_back({depth, prefix, value});
  return nullptr;
}

std::optional<std::string_view> Namespaces::Find(std::string_view prefix) const {
  const auto found = std::find_if(declarations_.rbegin(), declarations_.rend(),
                                  [prefix](const auto& known) { return known.prefix == prefix; });
  if (found != declarations_.rend()) return found->value;
  if (prefix == "xml") return kXml;
  return std::nullopt;
}

}  // namespace sab::xml
