#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "base/text.h"

namespace sab {

// Reading and replacing whole files. A name is a path of the platform or a "file:" address; other
// addresses ("http:", "https:", "ftp:") are refused, because nothing is ever read from a network
// address. On POSIX a name that does not exist as written is tried with every backslash taken as
// a separator, since configuration files carry paths written on Windows.

/// The largest file that is read, in bytes.
inline constexpr std::size_t kMaxFileSize = 0x7FFFFFFF;

/// Reads a regular file. The string has spare capacity, so that a reader can append its padding
/// without a copy.
/// @param reason receives why there are no bytes, in words; untouched on success
/// @return nothing for a file that is missing, unreadable, too large or not a regular file
std::optional<std::string> ReadFileBytes(TextView name, std::string& reason);

/// Whether anything, file or not, has the name.
bool FileExists(TextView name);

/// Raises what replacing a file would raise before it writes: for a folder that does not exist, a
/// file or a folder that may not be written.
void CheckReplaceable(TextView name);

/// Puts new bytes in the place of a file, or makes the file, as one step: the bytes go to a
/// temporary file in the same folder, are flushed to the disk and take over the name. Symbolic
/// links are followed; mode and owner (on Windows attributes and access list) of an existing file
/// are kept, with them access lists and extended attributes; of several hard links the named one
/// leads to the new file, the others keep the old. On failure the old file is as it was and no
/// temporary file stays; those of writers that were killed are removed from the folder.
/// Raises ComError with the result code that Windows has for the reason (E_ACCESSDENIED,
/// HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND), …); the message names the file and the reason.
void ReplaceFileBytes(TextView name, std::string_view bytes);

}  // namespace sab
