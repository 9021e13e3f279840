#pragma once

#include <sabxml/com.h>

#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"

namespace sab {

/// A place in the registry: a root and the names below it. Texts are UTF-8.
struct RegistryPath {
  HKEY root = nullptr;
  std::string key;  ///< names with backslashes between them
};

/// What the registrar writes to. The one that matters is the system's registry.
class RegistryTarget {
 public:
  virtual ~RegistryTarget() = default;

  virtual void CreateKey(const RegistryPath& path) = 0;
  /// @param data as the registry holds it, texts with their zero
  virtual void SetValue(const RegistryPath& path, const std::string& name, DWORD type,
                        const std::vector<BYTE>& data) = 0;
  // Removing what does not exist is no failure.
  /// Removes a value that is still what was written; any other is not ours.
  virtual void DeleteValue(const RegistryPath& path, const std::string& name, DWORD type,
                           const std::vector<BYTE>& data) = 0;
  virtual void DeleteTree(const RegistryPath& path) = 0;
  /// Removes the key if it has neither values nor subkeys.
  virtual void DeleteKeyIfEmpty(const RegistryPath& path) = 0;
  /// The default value of a key where it is a text; empty otherwise.
  virtual Text DefaultText(const RegistryPath& path) = 0;
};

/// The system's registry. Failures are raised as ComError that names the key.
class SystemRegistry final : public RegistryTarget {
 public:
  void CreateKey(const RegistryPath& path) override;
  void SetValue(const RegistryPath& path, const std::string& name, DWORD type,
                const std::vector<BYTE>& data) override;
  void DeleteValue(const RegistryPath& path, const std::string& name, DWORD type,
                   const std::vector<BYTE>& data) override;
  void DeleteTree(const RegistryPath& path) override;
  void DeleteKeyIfEmpty(const RegistryPath& path) override;
  Text DefaultText(const RegistryPath& path) override;
};

/// The classes of the current user, in place of those of the machine: what is written below
/// HKEY_CLASSES_ROOT goes below HKEY_CURRENT_USER\Software\Classes, which needs no rights.
class UserClasses final : public RegistryTarget {
 public:
  /// @param registry outlives this
  explicit UserClasses(RegistryTarget& registry) : registry_(registry) {}

  void CreateKey(const RegistryPath& path) override { registry_.CreateKey(Moved(path)); }
  void SetValue(const RegistryPath& path, const std::string& name, DWORD type,
                const std::vector<BYTE>& data) override {
    registry_.SetValue(Moved(path), name, type, data);
  }
  void DeleteValue(const RegistryPath& path, const std::string& name, DWORD type,
                   const std::vector<BYTE>& data) override {
    registry_.DeleteValue(Moved(path), name, type, data);
  }
  void DeleteTree(const RegistryPath& path) override { registry_.DeleteTree(Moved(path)); }
  void DeleteKeyIfEmpty(const RegistryPath& path) override {
    registry_.DeleteKeyIfEmpty(Moved(path));
  }
  Text DefaultText(const RegistryPath& path) override { return registry_.DefaultText(Moved(path)); }

 private:
  static RegistryPath Moved(const RegistryPath& path);

  RegistryTarget& registry_;
};

}  // namespace sab
