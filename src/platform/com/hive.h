#pragma once

#include <sabxml/com.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace sabcom {

/// A value of a key: its type and its bytes as the registry functions take them.
struct Value {
  std::u16string name;  ///< as it was written; empty for the default value
  DWORD type = REG_NONE;
  std::vector<BYTE> data;
};

/// A key with everything below it. Maps are ordered by folded name, so that a file that is written
/// twice is the same.
struct Key {
  std::u16string name;
  std::map<std::u16string, std::unique_ptr<Key>> subkeys;
  std::map<std::u16string, Value> values;

  /// The key at a path of names with backslashes; empty names are skipped. Null if there is none.
  Key* Find(std::u16string_view path);
  Key& FindOrCreate(std::u16string_view path, bool& created);
  /// Removes the key at the path with everything below it; false if there is none.
  bool Remove(std::u16string_view path);
};

/// Raised for a hive file that is not understood; the message names file and line.
struct HiveError {
  std::string message;
};

/// Reads the text of a hive: regedit's format, version 5.00, in UTF-8.
/// @param file name for messages
std::unique_ptr<Key> ParseHive(const std::string& file, std::string_view text);
std::string FormatHive(const Key& root);

/// The first name of a path, which is cut off it.
std::u16string_view NextName(std::u16string_view& path);

}  // namespace sabcom
