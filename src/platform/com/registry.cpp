#include <sabxml/com.h>

#include <cstring>
#include <mutex>
#include <new>
#include <string>
#include <utility>

#include "platform/com/errors.h"
#include "platform/com/hive_file.h"
#include "platform/com/utf.h"

// An open key is a path: the tree behind it may be read again at any time, and a key that somebody
// else removed is simply no longer found.
struct HKEY_opaque {
  std::u16string path;
};

namespace {

using sabcom::HiveFile;
using sabcom::Key;
using sabcom::Value;

std::recursive_mutex registry_lock;
int users = 0;  // open keys and calls under way

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

// The first user reads the hive, the last one writes it.
void Enter() {
  if (users == 0) {
    HiveFile::Instance().Begin();
  } else {
    HiveFile::Instance().Refresh();
  }
  ++users;
}

void Leave() {
  if (--users == 0) HiveFile::Instance().End();
}

// Runs the body of a registry function with the hive at hand.
template <class Body>
LSTATUS WithHive(HKEY key, const Body& body) noexcept {
  if (!key) return ERROR_INVALID_HANDLE;
  const std::lock_guard guard(registry_lock);
  try {
    Enter();
    LSTATUS status = ERROR_SUCCESS;
    try {
      status = body(HiveFile::Instance());
    } catch (...) {
      Leave();
      throw;
    }
    Leave();
    return status;
  } catch (const sabcom::HiveError& error) {
    sabcom::Explain(error.message);
    return ERROR_BADDB;
  } catch (const std::bad_alloc&) {
    return ERROR_OUTOFMEMORY;
  }
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

LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR path, DWORD, LPWSTR, DWORD, REGSAM,
                        const SECURITY_ATTRIBUTES*, PHKEY opened, LPDWORD disposition) {
  if (!opened) return ERROR_INVALID_PARAMETER;
  return WithHive(key, [&](HiveFile& hive) -> LSTATUS {
    auto handle = std::make_unique<HKEY_opaque>(HKEY_opaque{PathOf(key, path)});
    bool created = !hive.Tree().Find(handle->path);
    if (created) hive.TreeForChange().FindOrCreate(handle->path, created);
    if (disposition) *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
    Enter();
    *opened = handle.release();
    return ERROR_SUCCESS;
  });
}

LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR path, DWORD, REGSAM, PHKEY opened) {
  if (!opened) return ERROR_INVALID_PARAMETER;
  return WithHive(key, [&](HiveFile& hive) -> LSTATUS {
    auto handle = std::make_unique<HKEY_opaque>(HKEY_opaque{PathOf(key, path)});
    if (!hive.Tree().Find(handle->path)) return ERROR_FILE_NOT_FOUND;
    Enter();
    *opened = handle.release();
    return ERROR_SUCCESS;
  });
}

LSTATUS RegCloseKey(HKEY key) {
  if (NameOfPredefined(key)) return ERROR_SUCCESS;
  if (!key) return ERROR_INVALID_HANDLE;
  const std::lock_guard guard(registry_lock);
  delete key;
  try {
    Leave();
    return ERROR_SUCCESS;
  } catch (const sabcom::HiveError& error) {
    sabcom::Explain(error.message);
    return ERROR_CANTWRITE;
  } catch (const std::bad_alloc&) {
    return ERROR_OUTOFMEMORY;
  }
}

LSTATUS RegFlushKey(HKEY key) {
  return WithHive(key, [](HiveFile& hive) -> LSTATUS {
    hive.Flush();
    return ERROR_SUCCESS;
  });
}

LSTATUS RegSetValueExW(HKEY key, LPCWSTR name, DWORD, DWORD type, const BYTE* data, DWORD size) {
  if (!data && size > 0) return ERROR_INVALID_PARAMETER;
  return WithHive(key, [&](HiveFile& hive) -> LSTATUS {
    Key* const target = hive.TreeForChange().Find(PathOf(key, nullptr));
    if (!target) return ERROR_FILE_NOT_FOUND;
    Value value{name ? name : u"", type, std::vector<BYTE>(data, data + size)};
    std::u16string folded = sabcom::Folded(value.name);
    target->values[std::move(folded)] = std::move(value);
    return ERROR_SUCCESS;
  });
}

LSTATUS RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD, LPDWORD type, LPBYTE data, LPDWORD size) {
  return WithHive(key, [&](HiveFile& hive) -> LSTATUS {
    const Key* const target = hive.Tree().Find(PathOf(key, nullptr));
    if (!target) return ERROR_FILE_NOT_FOUND;
    const auto found = target->values.find(sabcom::Folded(name ? name : u""));
    return found == target->values.end() ? ERROR_FILE_NOT_FOUND
                                         : CopyData(found->second, type, data, size);
  });
}

LSTATUS RegDeleteValueW(HKEY key, LPCWSTR name) {
  return WithHive(key, [&](HiveFile& hive) -> LSTATUS {
    const std::u16string folded = sabcom::Folded(name ? name : u"");
    const Key* const target = hive.Tree().Find(PathOf(key, nullptr));
    if (!target || !target->values.contains(folded)) return ERROR_FILE_NOT_FOUND;
    Key* const changed = hive.TreeForChange().Find(PathOf(key, nullptr));
    return changed && changed->values.erase(folded) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
  });
}

LSTATUS RegDeleteKeyW(HKEY key, LPCWSTR path) {
  if (!path || !*path) return ERROR_INVALID_PARAMETER;
  return WithHive(key, [&](HiveFile& hive) -> LSTATUS {
    const std::u16string full = PathOf(key, path);
    const Key* const target = hive.Tree().Find(full);
    if (!target) return ERROR_FILE_NOT_FOUND;
    if (!target->subkeys.empty()) return ERROR_ACCESS_DENIED;
    return hive.TreeForChange().Remove(full) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
  });
}

LSTATUS RegDeleteTreeW(HKEY key, LPCWSTR path) {
  return WithHive(key, [&](HiveFile& hive) -> LSTATUS {
    const std::u16string full = PathOf(key, path);
    if (!hive.Tree().Find(full)) return ERROR_FILE_NOT_FOUND;
    Key& tree = hive.TreeForChange();
    if (path && *path) return tree.Remove(full) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
    Key* const target = tree.Find(full);
    if (!target) return ERROR_FILE_NOT_FOUND;
    target->subkeys.clear();
    target->values.clear();
    return ERROR_SUCCESS;
  });
}

LSTATUS RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD length, LPDWORD, LPWSTR, LPDWORD,
                      FILETIME*) {
  if (!name || !length) return ERROR_INVALID_PARAMETER;
  return WithHive(key, [&](HiveFile& hive) -> LSTATUS {
    const Key* const target = hive.Tree().Find(PathOf(key, nullptr));
    if (!target) return ERROR_FILE_NOT_FOUND;
    const auto found = Nth(target->subkeys, index);
    return found == target->subkeys.end() ? ERROR_NO_MORE_ITEMS
                                          : CopyName(found->second->name, name, length);
  });
}

LSTATUS RegEnumValueW(HKEY key, DWORD index, LPWSTR name, LPDWORD length, LPDWORD, LPDWORD type,
                      LPBYTE data, LPDWORD size) {
  if (!name || !length) return ERROR_INVALID_PARAMETER;
  return WithHive(key, [&](HiveFile& hive) -> LSTATUS {
    const Key* const target = hive.Tree().Find(PathOf(key, nullptr));
    if (!target) return ERROR_FILE_NOT_FOUND;
    const auto found = Nth(target->values, index);
    if (found == target->values.end()) return ERROR_NO_MORE_ITEMS;
    const LSTATUS status = CopyName(found->second.name, name, length);
    return status == ERROR_SUCCESS ? CopyData(found->second, type, data, size) : status;
  });
}

LSTATUS RegQueryInfoKeyW(HKEY key, LPWSTR, LPDWORD, LPDWORD, LPDWORD subkeys,
                         LPDWORD longest_subkey, LPDWORD, LPDWORD values,
                         LPDWORD longest_value_name, LPDWORD longest_value, LPDWORD, FILETIME*) {
  return WithHive(key, [&](HiveFile& hive) -> LSTATUS {
    const Key* const target = hive.Tree().Find(PathOf(key, nullptr));
    if (!target) return ERROR_FILE_NOT_FOUND;
    const auto keep_longest = [](LPDWORD place, std::size_t length) {
      if (place && length > *place) *place = static_cast<DWORD>(length);
    };
    for (LPDWORD place : {longest_subkey, longest_value_name, longest_value}) {
      if (place) *place = 0;
    }
    if (subkeys) *subkeys = static_cast<DWORD>(target->subkeys.size());
    if (values) *values = static_cast<DWORD>(target->values.size());
    for (const auto& [folded, subkey] : target->subkeys) {
      keep_longest(longest_subkey, subkey->name.size());
    }
    for (const auto& [folded, value] : target->values) {
      keep_longest(longest_value_name, value.name.size());
      keep_longest(longest_value, value.data.size());
    }
    return ERROR_SUCCESS;
  });
}
