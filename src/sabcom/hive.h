#pragma once

#include <sabxml/com.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace sabcom {

/// The most levels of keys below a root key, as on Windows. Code that walks a tree may nest so
/// deeply.
inline constexpr std::size_t kMaxLevels = 512;
/// The longest names, in UTF-16 units, without the final zero.
inline constexpr std::size_t kMaxKeyNameLength = 255;
inline constexpr std::size_t kMaxValueNameLength = 16383;

/// A value of a key: its type and its bytes as the registry functions take them.
struct Value {
  std::u16string name;  ///< as it was written; empty for the default value
  DWORD type = REG_NONE;
  std::vector<BYTE> data;

  bool operator==(const Value&) const = default;
};

/// A key with everything below it. Maps are ordered by folded name, so that a file that is written
/// twice is the same. A change that fails for want of memory has changed nothing.
struct Key {
  std::u16string name;
  std::map<std::u16string, std::unique_ptr<Key>> subkeys;
  std::map<std::u16string, Value> values;

  /// The key at a path of names with backslashes; empty names are skipped. Null for an unknown one.
  Key* Find(std::u16string_view path);
  Key& FindOrCreate(std::u16string_view path, bool& created);
  /// @return whether the key has changed by it
  bool SetValue(Value value);
  /// Removes the key at the path with everything below it; false for an unknown one.
  bool Remove(std::u16string_view path);
};

/// Raised for a hive that cannot be read or written; the message names the file, the place in it
/// and what to do.
struct HiveError {
  std::string message;
  LSTATUS code = ERROR_BADDB;
};

/// The first name of a path, which is cut off it.
std::u16string_view NextName(std::u16string_view& path);

/// The names in a path.
std::size_t CountNames(std::u16string_view path);

/// Whether a name can be written in a line of the file and read again as it was: it holds no
/// control character and no half of a surrogate pair.
bool IsWritableName(std::u16string_view name);

}  // namespace sabcom
