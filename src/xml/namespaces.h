#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace sab::xml {

/// The namespace declarations in scope (Namespaces in XML 1.0). Most documents have none, and then
/// nothing here costs anything.
class Namespaces {
 public:
  bool IsUsed() const { return !declarations_.empty(); }

  /// Notes a declaration of the element at the depth.
  /// @param prefix empty for the default namespace
  /// @param value the attribute's value as it is written
  /// @return what is wrong with it, or null
  const char* Declare(std::uint32_t depth, std::string_view prefix, std::string_view value);

  /// What the prefix stands for; nothing if it is not declared.
  std::optional<std::string_view> Find(std::string_view prefix) const;

  /// Forgets the declarations of the element at the depth.
  void Leave(std::uint32_t depth) {
    while (!declarations_.empty() && declarations_.back().depth == depth) declarations_.pop_back();
  }

 private:
  struct Declaration {
    std::uint32_t depth;
    std::string_view prefix;
    std::string_view value;
  };

  std::vector<Declaration> declarations_;
};

}  // namespace sab::xml
