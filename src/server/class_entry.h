#pragma once

#include <sabxml/com.h>

#include <span>
#include <string>
#include <string_view>

namespace sab {

/// What a class leaves in the registry.
enum class Registration {
  kNone,         ///< nothing; its owners create it
  kClassIdOnly,  ///< its class key
  kWithProgIds,  ///< its class key and both ProgIDs
};

/// One row of the class table: how a class is named, registered and created.
struct ClassEntry {
  const CLSID* clsid;
  std::string_view name;  ///< of the class, ASCII: "VeAppParser"
  Registration registration;
  /// Creates the object: plain, or aggregated when outer is given (then only as IUnknown).
  HRESULT (*create)(IUnknown* outer, REFIID riid, void** out);

  // Where a class was once registered under other names than its own, these hold them.
  std::string_view registered_description = {};
  std::string_view registered_prog_id = {};
  std::string_view registered_version_independent_prog_id = {};
  /// The identifier that the type library has for the class, where it is not the registered one.
  const CLSID* type_library_clsid = nullptr;

  /// Whether an object of this class is meant by the identifier.
  bool Answers(REFCLSID asked) const {
    return asked == *clsid || (type_library_clsid && asked == *type_library_clsid);
  }

  /// "VeAppParser Class"
  std::string Description() const {
    return registered_description.empty() ? std::string(name) + " Class"
                                          : std::string(registered_description);
  }
  /// "SabXmlParser.VeAppParser.1"
  std::string ProgId() const {
    return registered_prog_id.empty() ? "SabXmlParser." + std::string(name) + ".1"
                                      : std::string(registered_prog_id);
  }
  /// "SabXmlParser.VeAppParser"
  std::string VersionIndependentProgId() const {
    return registered_version_independent_prog_id.empty()
               ? "SabXmlParser." + std::string(name)
               : std::string(registered_version_independent_prog_id);
  }
};

/// Every class of the server, in the order in which they are registered. Defined where the library
/// is put together.
std::span<const ClassEntry> ClassTable();

/// Identifier of the server's AppID registry key.
inline constexpr GUID kServerAppId = {
    0x3BA792CA, 0x0D6B, 0x417E, {0x9C, 0xEE, 0x7C, 0xB0, 0x47, 0x90, 0x54, 0xE4}};

}  // namespace sab
