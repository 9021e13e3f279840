#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sab::xml {

/// The namespace declarations in scope (Namespaces in XML 1.0). Most documents have none, and then
/// nothing here costs anything; any number of them takes time in proportion.
class Namespaces {
 public:
  struct Declaration {
    std::uint32_t depth;
    std::string_view prefix;
    std::string_view uri;      // decoded
    std::uint32_t number = 0;  // of the URI; 0 until it is asked for
    std::uint32_t hidden = 0;  // the declaration of the same prefix that this one hides
  };

  bool IsUsed() const { return !declarations_.empty(); }

  /// Notes a declaration of the element at the depth.
  /// @param prefix empty for the default namespace
  /// @param value the attribute's value as it is written
  /// @return what is wrong with it, or null
  const char* Declare(std::uint32_t depth, std::string_view prefix, std::string_view value);

  /// What declares the prefix; null if nothing does.
  Declaration* Find(std::string_view prefix);

  /// Whether a name without a prefix has a namespace.
  bool HasDefault() {
    const Declaration* const declaration = IsUsed() ? Find({}) : nullptr;
    return declaration && !declaration->uri.empty();
  }

  /// A number for the URI of a declaration: the same for all that declare the same one.
  std::uint32_t NumberOf(Declaration& declaration);

  /// Forgets the declarations of the element at the depth.
  void Leave(std::uint32_t depth) {
    while (!declarations_.empty() && declarations_.back().depth == depth) ForgetLast();
  }

 private:
  static constexpr std::string_view kXml = "http://www.w3.org/XML/1998/namespace";

  using Numbers = std::map<std::string, std::uint32_t, std::less<>>;

  Numbers::value_type& Numbered(std::string uri) {
    return *numbers_.try_emplace(std::move(uri), static_cast<std::uint32_t>(numbers_.size() + 1))
                .first;
  }
  void ForgetLast();

  std::vector<Declaration> declarations_;
  Declaration xml_{0, "xml", kXml};  // which every document has
  // The last declaration of each prefix; the first few declarations are searched instead.
  std::map<std::string_view, std::uint32_t> last_of_prefix_;
  Numbers numbers_;
};

}  // namespace sab::xml
