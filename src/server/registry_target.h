#pragma once

#include <sabxml/com.h>

#include <string>
#include <string_view>
#include <vector>

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
  // Removing what is not there is no failure.
  virtual void DeleteValue(const RegistryPath& path, const std::string& name) = 0;
  virtual void DeleteTree(const RegistryPath& path) = 0;
  /// Removes the key if it has neither values nor subkeys.
  virtual void DeleteKeyIfEmpty(const RegistryPath& path) = 0;
};

/// The system's registry. Failures are raised as ComError that names the key.
class SystemRegistry final : public RegistryTarget {
 public:
  /// Keeps a key open, so that a registry that is a file is written once.
  SystemRegistry();
  SystemRegistry(const SystemRegistry&) = delete;
  SystemRegistry& operator=(const SystemRegistry&) = delete;
  ~SystemRegistry() override;

  /// Ends the writing; raises ComError when it cannot be brought to where it is kept.
  void Close();

  void CreateKey(const RegistryPath& path) override;
  void SetValue(const RegistryPath& path, const std::string& name, DWORD type,
                const std::vector<BYTE>& data) override;
  void DeleteValue(const RegistryPath& path, const std::string& name) override;
  void DeleteTree(const RegistryPath& path) override;
  void DeleteKeyIfEmpty(const RegistryPath& path) override;

 private:
  HKEY kept_open_ = nullptr;
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
  void DeleteValue(const RegistryPath& path, const std::string& name) override {
    registry_.DeleteValue(Moved(path), name);
  }
  void DeleteTree(const RegistryPath& path) override { registry_.DeleteTree(Moved(path)); }
  void DeleteKeyIfEmpty(const RegistryPath& path) override {
    registry_.DeleteKeyIfEmpty(Moved(path));
  }

 private:
  static RegistryPath Moved(const RegistryPath& path);

  RegistryTarget& registry_;
};

}  // namespace sab
