#pragma once

#include <string>

#include "cli/host/automation.h"

namespace sabxml::cli {

/// The component server as a host reaches it: through its registration, or, without one, through
/// the library beside the program. A library that is named is taken instead of both.
class Server {
 public:
  /// @param library path of the library; empty for what SABXML_SERVER names, if anything
  explicit Server(const std::string& library);

  /// The identifier of one of the server's classes, by its name ("VeAppParser"), its ProgID or the
  /// identifier itself in braces. Raises Failure for one that the server does not know.
  CLSID ClassNamed(const std::string& class_name);

  /// A new object of a class that is named so. Raises Failure.
  ComPtr<IDispatch> Create(const std::string& class_name);

  /// The server's type library. Raises Failure.
  ComPtr<ITypeLib> TypeLibrary();

  /// Where the library is that would be loaded or registered.
  std::string LibraryPath() const;
  /// Enters the library's classes in the registry, or removes them; for the current user alone
  /// where `for_user`. Raises Failure.
  void Register(bool for_user);
  void Unregister(bool for_user);

 private:
  void* Library();
  /// An entry point of the library, called. Raises Failure.
  template <typename Function, typename... Arguments>
  void Call(const char* name, Arguments... arguments);
  void TraceChoice(REFCLSID clsid, HRESULT registered);
  ComPtr<IDispatch> CreateClass(REFCLSID clsid);
  ComPtr<IDispatch> CreateFromLibrary(REFCLSID clsid);

  std::string named_library_;
  void* library_ = nullptr;
  bool is_choice_traced_ = false;
};

/// The default value of a key of the registry; empty without a text.
/// @param path of the key, its parts with backslashes between them
std::string DefaultTextOf(HKEY parent, const std::string& path);

/// What the registry has of a class.
struct RegisteredLibrary {
  std::string key;    ///< of the class, with its root
  std::string path;   ///< empty for a class that is not registered
  std::string since;  ///< as LastChangeOf has it
};

/// The library that the system loads for a class, or the one that is registered for the user alone.
/// Raises Failure for a registry that cannot be read.
/// @param clsid in braces
RegisteredLibrary RegisteredLibraryOf(const std::string& clsid, bool only_for_user = false);

/// Which registry is used, for a message: a file, or that of the system.
std::string RegistryName();

/// A name with braces around it where it is an identifier without them.
std::string WithBraces(const std::string& name);

}  // namespace sabxml::cli
