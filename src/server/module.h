#pragma once

#include <sabxml/com.h>

#include <memory>
#include <mutex>
#include <vector>

#include "server/class_entry.h"
#include "server/class_factory.h"

namespace sab {

/// The library in the process: its class table and the class factories made from it. There is one,
/// from the moment the library is loaded until it is unloaded.
class Module {
 public:
  Module();
  ~Module();
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  /// The module, or null before the library is initialised and after it is torn down.
  static Module* Current() { return current_; }

  /// Finds the class and asks its factory, made at the first request, for an interface.
  /// @return CLASS_E_CLASSNOTAVAILABLE for a class that the table lacks; E_OUTOFMEMORY
  HRESULT ClassObject(REFCLSID clsid, REFIID riid, void** object) noexcept;
  /// The class that a factory creates, if the factory is one of the module's own.
  const ClassEntry* EntryOf(REFCLSID clsid, const IClassFactory* factory) noexcept;

 private:
  static constinit inline Module* current_ = nullptr;

  std::mutex making_factories_;
  // In the order of the class table; empty until the first is asked for.
  std::vector<std::unique_ptr<ClassFactory>> factories_;
};

}  // namespace sab
