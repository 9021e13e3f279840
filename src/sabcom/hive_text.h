#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "sabcom/hive.h"

namespace sabcom {

/// Reads the text of a hive: regedit's format, version 5.00, in UTF-8. Raises HiveError.
/// @param file name for messages
std::unique_ptr<Key> ParseHive(const std::string& file, std::string_view text);

/// Writes a hive so that it reads as it is; values that a line of text cannot hold become bytes.
/// @param root its names are writable or come from ParseHive
std::string FormatHive(const Key& root);

}  // namespace sabcom
