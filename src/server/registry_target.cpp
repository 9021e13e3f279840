#include "server/registry_target.h"

#include <cstring>
#include <optional>

#include "base/com_error.h"
#include "base/error_info.h"
#include "base/registry_key.h"

namespace sab {
namespace {

// The description of the system itself, if it gave one.
std::string Explanation(LSTATUS status) {
  const std::string description = TakeErrorInfo();
  return description.empty() ? "error " + std::to_string(status) + "." : description;
}

void CheckStatus(LSTATUS status, const RegistryPath& path, const char* action) {
  if (status == ERROR_SUCCESS) return;
  throw ComError(
      HRESULT_FROM_WIN32(static_cast<DWORD>(status)),
      std::string("The registry key ") + path.key + " could not be " + action + ": " +
          Explanation(status) +
          (status == ERROR_ACCESS_DENIED ? " Registering needs the right to write the registry."
                                         : ""));
}

OpenKey Open(const RegistryPath& path, REGSAM access) {
  return OpenKey(path.root, FromUtf8(path.key), access);
}

bool IsAbsent(LSTATUS status) {
  return status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND;
}

// Where a value without a name has none, the system wants null.
const OLECHAR* NameOrNull(const Text& name) { return name.empty() ? nullptr : name.c_str(); }

struct RegistryValue {
  DWORD type = REG_NONE;
  std::vector<BYTE> data;
};

std::optional<RegistryValue> ReadValue(HKEY key, const OLECHAR* name, const RegistryPath& path) {
  RegistryValue value;
  DWORD size = 0;
  LSTATUS status = RegQueryValueExW(key, name, nullptr, &value.type, nullptr, &size);
  // Another process may write a longer one meanwhile.
  while (status == ERROR_MORE_DATA || (status == ERROR_SUCCESS && value.data.size() < size)) {
    value.data.resize(size);
    status = RegQueryValueExW(key, name, nullptr, &value.type, value.data.data(), &size);
  }
  if (IsAbsent(status)) return std::nullopt;
  CheckStatus(status, path, "read");
  value.data.resize(size);
  return value;
}

}  // namespace

void SystemRegistry::CreateKey(const RegistryPath& path) {
  HKEY key = nullptr;
  CheckStatus(RegCreateKeyExW(path.root, FromUtf8(path.key).c_str(), 0, nullptr,
                              REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, &key, nullptr),
              path, "created");
  RegCloseKey(key);
}

void SystemRegistry::SetValue(const RegistryPath& path, const std::string& name, DWORD type,
                              const std::vector<BYTE>& data) {
  const OpenKey key = Open(path, KEY_SET_VALUE);
  CheckStatus(key.Status(), path, "opened");
  CheckStatus(RegSetValueExW(key.Get(), NameOrNull(FromUtf8(name)), 0, type, data.data(),
                             static_cast<DWORD>(data.size())),
              path, "written");
}

void SystemRegistry::DeleteValue(const RegistryPath& path, const std::string& name, DWORD type,
                                 const std::vector<BYTE>& data) {
  const OpenKey key = Open(path, KEY_QUERY_VALUE | KEY_SET_VALUE);
  if (IsAbsent(key.Status())) return;
  CheckStatus(key.Status(), path, "opened");
  const Text wide = FromUtf8(name);
  const std::optional<RegistryValue> found = ReadValue(key.Get(), NameOrNull(wide), path);
  if (!found || found->type != type || found->data != data) return;
  const LSTATUS status = RegDeleteValueW(key.Get(), NameOrNull(wide));
  if (!IsAbsent(status)) CheckStatus(status, path, "written");
}

Text SystemRegistry::DefaultText(const RegistryPath& path) {
  const OpenKey key = Open(path, KEY_QUERY_VALUE);
  if (IsAbsent(key.Status())) return {};
  CheckStatus(key.Status(), path, "opened");
  const std::optional<RegistryValue> found = ReadValue(key.Get(), nullptr, path);
  if (!found || found->type != REG_SZ) return {};
  Text text(found->data.size() / sizeof(OLECHAR), 0);
  if (!text.empty()) std::memcpy(text.data(), found->data.data(), text.size() * sizeof(OLECHAR));
  return text.substr(0, text.find(OLECHAR{0}));
}

void SystemRegistry::DeleteTree(const RegistryPath& path) {
  const LSTATUS status = RegDeleteTreeW(path.root, FromUtf8(path.key).c_str());
  if (!IsAbsent(status)) CheckStatus(status, path, "removed");
}

void SystemRegistry::DeleteKeyIfEmpty(const RegistryPath& path) {
  {
    const OpenKey key = Open(path, KEY_READ);
    if (IsAbsent(key.Status())) return;
    CheckStatus(key.Status(), path, "opened");
    DWORD subkeys = 0;
    DWORD values = 0;
    CheckStatus(RegQueryInfoKeyW(key.Get(), nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr,
                                 &values, nullptr, nullptr, nullptr, nullptr),
                path, "read");
    if (subkeys != 0 || values != 0) return;
  }
  CheckStatus(RegDeleteKeyW(path.root, FromUtf8(path.key).c_str()), path, "removed");
}

RegistryPath UserClasses::Moved(const RegistryPath& path) {
  if (path.root != HKEY_CLASSES_ROOT) return path;
  return {HKEY_CURRENT_USER, "Software\\Classes\\" + path.key};
}

}  // namespace sab
