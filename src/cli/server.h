#pragma once

#include <string>

#include "automation.h"

namespace sabxml::cli {

/// The component server as a host reaches it: through its registration, or, without one, through
/// the library beside the program.
class Server {
 public:
  /// @param library the server's library; empty to look for it
  explicit Server(const std::string& library) : library_path_(library) {}

  /// A new object of a class by its name ("VeAppParser") or ProgID. Raises Failure.
  Reference<IDispatch> Create(const std::string& class_name);

  /// The server's type library. Raises Failure.
  Reference<ITypeLib> TypeLibrary();

  /// Where the library is that would be loaded or registered.
  std::string LibraryPath() const;
  /// An entry point without arguments of the library, run. Raises Failure.
  void RunEntryPoint(const char* name);

 private:
  void* Library();
  Reference<IDispatch> CreateFromLibrary(REFCLSID clsid);
  /// The identifier of one of the server's classes. Raises Failure for a name that it does not
  /// know.
  CLSID ClassNamed(const std::string& class_name);

  std::string library_path_;
  void* library_ = nullptr;
};

}  // namespace sabxml::cli
