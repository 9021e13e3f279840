#pragma once

#include <string>

#include "base/text.h"

namespace sab {

/// The text of a plain text file, without its byte-order mark. The mark identifies UTF-8 and UTF-16
/// of either byte order; without one, bytes that are valid UTF-8 throughout are UTF-8, and all
/// others GBK, which is what Chinese editions of Windows call plain text. What the encoding does
/// not have becomes U+FFFD.
Text DecodePlainText(const std::string& bytes);

}  // namespace sab
