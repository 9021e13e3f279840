#include <sabxml/com.h>
#include <sabxml/com/registry_change.h>

#include <cstring>
#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "sabcom/errors.h"
#include "sabcom/hive_file.h"
#include "sabcom/registry_reading.h"
#include "sabcom/utf.h"

// An open key is a path: the tree may be read again at any time, and a key that another
// process removed is no longer found.
struct HKEY_opaque {
  std::u16string path;
};

namespace {

using sabcom::HiveChange;
using sabcom::HiveFile;
using sabcom::Key;
using sabcom::Value;

std::recursive_mutex registry_lock;
thread_local int changes_of_thread = 0;  // begun and not ended; the lock is held so many times more

const char16_t* NameOfPredefined(HKEY key) {
  switch (reinterpret_cast<std::uintptr_t>(key)) {
    case 0x80000000U:
      return u"HKEY_CLASSES_ROOT";
    case 0x80000001U:
      return u"HKEY_CURRENT_USER";
    case 0x80000002U:
      return u"HKEY_LOCAL_MACHINE";
    case 0x80000003U:
      return u"HKEY_USERS";
    default:
      return nullptr;
  }
}

std::u16string PathOf(HKEY key, LPCWSTR path) {
  const char16_t* const predefined = NameOfPredefined(key);
  std::u16string full = predefined ? predefined : key->path;
  if (path && *path) full.append(u"\\").append(path);
  return full;
}

// Runs the body of a registry function, which nothing may leave but its result.
template <class Body>
LSTATUS Guarded(const Body& body) noexcept {
  try {
    const std::lock_guard guard(registry_lock);
    return body();
  } catch (const sabcom::HiveError& error) {
    sabcom::Explain(error.message);
    return error.code;
  } catch (const std::system_error&) {
    return ERROR_BADDB;
  } catch (const std::exception&) {  // no memory, or a length that none would hold
    return ERROR_OUTOFMEMORY;
  }
}

// Reads: the body gets the tree.
template <class Body>
LSTATUS WithHive(HKEY key, const Body& body) noexcept {
  if (!key) return ERROR_INVALID_HANDLE;
  return Guarded([&] { return body(HiveFile::Instance().Tree()); });
}

// Reads of a key that must exist.
template <class Body>
LSTATUS WithKey(HKEY key, const Body& body) noexcept {
  return WithHive(key, [&](Key& tree) -> LSTATUS {
    Key* const target = tree.Find(PathOf(key, nullptr));
    return target ? body(*target) : ERROR_FILE_NOT_FOUND;
  });
}

// Whether a key is found.
LSTATUS StatusOf(HKEY key, LPCWSTR path) noexcept {
  return WithHive(key, [&](Key& tree) -> LSTATUS {
    return tree.Find(PathOf(key, path)) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
  });
}

// Changes: the body gets the change, which reaches the file when it succeeds.
template <class Body>
LSTATUS WithChange(const Body& body) noexcept {
  return Guarded([&] {
    HiveChange change(HiveFile::Instance());
    const LSTATUS status = body(change);
    if (status == ERROR_SUCCESS) change.Keep();
    return status;
  });
}

// Whether the names below a key may be created: one that could not be read again is refused.
bool AreKeyNames(std::u16string_view path) {
  for (std::u16string_view name = sabcom::NextName(path); !name.empty();
       name = sabcom::NextName(path)) {
    if (name.size() > sabcom::kMaxKeyNameLength || !sabcom::IsWritableName(name)) return false;
  }
  return true;
}

LSTATUS CopyName(const std::u16string& name, LPWSTR out, LPDWORD length) {
  if (*length <= name.size()) return ERROR_MORE_DATA;
  std::memcpy(out, name.c_str(), (name.size() + 1) * sizeof(char16_t));
  *length = static_cast<DWORD>(name.size());
  return ERROR_SUCCESS;
}

LSTATUS CopyData(const Value& value, LPDWORD type, LPBYTE data, LPDWORD size) {
  if (type) *type = value.type;
  if (!size) return data ? ERROR_INVALID_PARAMETER : ERROR_SUCCESS;
  const auto needed = static_cast<DWORD>(value.data.size());
  const DWORD room = std::exchange(*size, needed);
  if (!data) return ERROR_SUCCESS;
  if (room < needed) return ERROR_MORE_DATA;
  if (needed > 0) std::memcpy(data, value.data.data(), needed);
  return ERROR_SUCCESS;
}

template <class Map>
auto Nth(const Map& map, DWORD index) {
  auto position = map.begin();
  while (index-- > 0 && position != map.end()) ++position;
  return position;
}

}  // namespace

LSTATUS SabComBeginRegistryChange() {
  return Guarded([] {
    HiveFile::Instance().Begin();
    registry_lock.lock();  // until the end
    ++changes_of_thread;
    return ERROR_SUCCESS;
  });
}

LSTATUS SabComEndRegistryChange(BOOL keep) {
  if (changes_of_thread == 0) return ERROR_INVALID_PARAMETER;
  const LSTATUS status = Guarded([keep] {
    if (keep) HiveFile::Instance().Keep();
    return ERROR_SUCCESS;
  });
  HiveFile::Instance().End();
  --changes_of_thread;
  registry_lock.unlock();
  return status;
}

ULONGLONG SabComRegistryGeneration() {
  ULONGLONG current = 0;
  sabcom::ReadRegistry([&current](Key&, ULONGLONG generation) { current = generation; });
  return current;
}

LSTATUS sabcom::ReadRegistry(
    const std::function<void(Key& tree, ULONGLONG generation)>& body) noexcept {
  return Guarded([&body] {
    HiveFile& hive = HiveFile::Instance();
    body(hive.Tree(), hive.Generation());
    return ERROR_SUCCESS;
  });
}

LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR path, DWORD, LPWSTR, DWORD, REGSAM,
                        const SECURITY_ATTRIBUTES*, PHKEY opened, LPDWORD disposition) {
  if (!opened) return ERROR_INVALID_PARAMETER;
  if (path && !AreKeyNames(path)) return ERROR_INVALID_PARAMETER;
  std::unique_ptr<HKEY_opaque> handle;
  bool created = false;
  LSTATUS status = WithHive(key, [&](Key& tree) -> LSTATUS {
    handle = std::make_unique<HKEY_opaque>(HKEY_opaque{PathOf(key, path)});
    created = !tree.Find(handle->path);
    return sabcom::CountNames(handle->path) > sabcom::kMaxLevels + 1 ? ERROR_INVALID_PARAMETER
                                                                     : ERROR_SUCCESS;
  });
  if (status == ERROR_SUCCESS && created) {
    status = WithChange([&](HiveChange& change) -> LSTATUS {
      change.Tree().FindOrCreate(handle->path, created);
      return ERROR_SUCCESS;
    });
  }
  if (status != ERROR_SUCCESS) return status;
  if (disposition) *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
  *opened = handle.release();
  return ERROR_SUCCESS;
}

LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR path, DWORD, REGSAM, PHKEY opened) {
  if (!opened) return ERROR_INVALID_PARAMETER;
  return WithHive(key, [&](Key& tree) -> LSTATUS {
    auto handle = std::make_unique<HKEY_opaque>(HKEY_opaque{PathOf(key, path)});
    if (!tree.Find(handle->path)) return ERROR_FILE_NOT_FOUND;
    *opened = handle.release();
    return ERROR_SUCCESS;
  });
}

LSTATUS RegCloseKey(HKEY key) {
  if (!key) return ERROR_INVALID_HANDLE;
  if (!NameOfPredefined(key)) delete key;
  return ERROR_SUCCESS;
}

// What was changed is in the file already.
LSTATUS RegFlushKey(HKEY key) {
  return WithHive(key, [](Key&) -> LSTATUS { return ERROR_SUCCESS; });
}

LSTATUS RegSetValueExW(HKEY key, LPCWSTR name, DWORD, DWORD type, const BYTE* data, DWORD size) {
  if (!key) return ERROR_INVALID_HANDLE;
  if (!data && size > 0) return ERROR_INVALID_PARAMETER;
  const std::u16string_view name_view = name ? name : u"";
  if (name_view.size() > sabcom::kMaxValueNameLength || !sabcom::IsWritableName(name_view)) {
    return ERROR_INVALID_PARAMETER;
  }
  return WithChange([&](HiveChange& change) -> LSTATUS {
    Value value{std::u16string(name_view), type, {}};
    if (size > 0) value.data.assign(data, data + size);
    Key* const target = change.Tree().Find(PathOf(key, nullptr));
    if (!target) return ERROR_FILE_NOT_FOUND;
    target->SetValue(std::move(value));
    return ERROR_SUCCESS;
  });
}

LSTATUS RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD, LPDWORD type, LPBYTE data, LPDWORD size) {
  return WithKey(key, [&](Key& target) -> LSTATUS {
    const auto found = target.values.find(sabcom::Folded(name ? name : u""));
    return found == target.values.end() ? ERROR_FILE_NOT_FOUND
                                        : CopyData(found->second, type, data, size);
  });
}

LSTATUS RegDeleteValueW(HKEY key, LPCWSTR name) {
  const LSTATUS status = RegQueryValueExW(key, name, nullptr, nullptr, nullptr, nullptr);
  if (status != ERROR_SUCCESS) return status;  // nothing to change needs no right to write
  return WithChange([&](HiveChange& change) -> LSTATUS {
    Key* const target = change.Tree().Find(PathOf(key, nullptr));
    return target && target->values.erase(sabcom::Folded(name ? name : u"")) ? ERROR_SUCCESS
                                                                             : ERROR_FILE_NOT_FOUND;
  });
}

LSTATUS RegDeleteKeyW(HKEY key, LPCWSTR path) {
  if (!path || !*path) return ERROR_INVALID_PARAMETER;
  const LSTATUS status = StatusOf(key, path);
  if (status != ERROR_SUCCESS) return status;
  return WithChange([&](HiveChange& change) -> LSTATUS {
    const std::u16string full = PathOf(key, path);
    const Key* const target = change.Tree().Find(full);
    if (!target) return ERROR_FILE_NOT_FOUND;
    if (!target->subkeys.empty()) return ERROR_ACCESS_DENIED;
    return change.Tree().Remove(full) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
  });
}

LSTATUS RegDeleteTreeW(HKEY key, LPCWSTR path) {
  const LSTATUS status = StatusOf(key, path);
  if (status != ERROR_SUCCESS) return status;
  return WithChange([&](HiveChange& change) -> LSTATUS {
    const std::u16string full = PathOf(key, path);
    Key* const target = change.Tree().Find(full);
    if (!target) return ERROR_FILE_NOT_FOUND;
    if (path && *path) {
      return change.Tree().Remove(full) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
    }
    target->subkeys.clear();
    target->values.clear();
    return ERROR_SUCCESS;
  });
}

LSTATUS RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD length, LPDWORD, LPWSTR, LPDWORD,
                      FILETIME*) {
  if (!name || !length) return ERROR_INVALID_PARAMETER;
  return WithKey(key, [&](Key& target) -> LSTATUS {
    const auto found = Nth(target.subkeys, index);
    return found == target.subkeys.end() ? ERROR_NO_MORE_ITEMS
                                         : CopyName(found->second->name, name, length);
  });
}

LSTATUS RegEnumValueW(HKEY key, DWORD index, LPWSTR name, LPDWORD length, LPDWORD, LPDWORD type,
                      LPBYTE data, LPDWORD size) {
  if (!name || !length) return ERROR_INVALID_PARAMETER;
  return WithKey(key, [&](Key& target) -> LSTATUS {
    const auto found = Nth(target.values, index);
    if (found == target.values.end()) return ERROR_NO_MORE_ITEMS;
    const LSTATUS status = CopyName(found->second.name, name, length);
    return status == ERROR_SUCCESS ? CopyData(found->second, type, data, size) : status;
  });
}

LSTATUS RegQueryInfoKeyW(HKEY key, LPWSTR, LPDWORD, LPDWORD, LPDWORD subkeys,
                         LPDWORD longest_subkey, LPDWORD, LPDWORD values,
                         LPDWORD longest_value_name, LPDWORD longest_value, LPDWORD, FILETIME*) {
  return WithKey(key, [&](Key& target) -> LSTATUS {
    const auto keep_longest = [](LPDWORD place, std::size_t length) {
      if (place && length > *place) *place = static_cast<DWORD>(length);
    };
    for (LPDWORD place : {longest_subkey, longest_value_name, longest_value}) {
      if (place) *place = 0;
    }
    if (subkeys) *subkeys = static_cast<DWORD>(target.subkeys.size());
    if (values) *values = static_cast<DWORD>(target.values.size());
    for (const auto& [folded, subkey] : target.subkeys) {
      keep_longest(longest_subkey, subkey->name.size());
    }
    for (const auto& [folded, value] : target.values) {
      keep_longest(longest_value_name, value.name.size());
      keep_longest(longest_value, value.data.size());
    }
    return ERROR_SUCCESS;
  });
}
