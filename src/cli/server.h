#pragma once

#include <string>

#include "automation.h"

namespace sabxml::cli {

/// The component server as a host reaches it: through its registration, or, without one, through
/// the library beside the program. A library that is named is taken instead of both.
class Server {
 public:
  /// @param library path of the library; empty for what SABXML_SERVER names, if anything
  explicit Server(const std::string& library);

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
  Reference<IDispatch> CreateClass(REFCLSID clsid);
  Reference<IDispatch> CreateFromLibrary(REFCLSID clsid);
  /// The identifier of one of the server's classes. Raises Failure for a name that it does not
  /// know.
  CLSID ClassNamed(const std::string& class_name);

  std::string named_library_;
  void* library_ = nullptr;
};

}  // namespace sabxml::cli
