#pragma once

#include <cstddef>
#include <string>

namespace sab::bench {

/// What a user-interface file is made of.
enum class Kind {
  kPlain,  ///< ribbon tabs of one shape over and over, a fifth of the texts in Chinese
  kRich,   ///< ribbon, menus, toolbars and commands in turn: nested, in changing order, with
           ///< references, CDATA sections and comments, a third of the texts in Chinese
};
inline constexpr const char* kKindNames[] = {"plain", "rich"};

/// A user-interface file of about so many bytes, two spaces of indentation a level; the same
/// whenever it is made.
std::string UserInterfaceFile(Kind kind, std::size_t bytes);

/// Writes a sample to the temporary folder, unless an earlier process has left it, and gives its
/// name.
std::string UserInterfaceSample(Kind kind, std::size_t bytes);

/// Writes a sample to the temporary folder and gives its name.
std::string WriteSample(const std::string& name, const std::string& content);

}  // namespace sab::bench
