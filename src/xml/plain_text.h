#pragma once

#include <string>
#include <string_view>

namespace sab::xml {

/// The text of a plain text file in UTF-8, without its byte-order mark. The mark tells UTF-8 and
/// UTF-16 of either byte order; without one, bytes that are valid UTF-8 throughout are UTF-8, and
/// all others GBK, which is what Chinese editions of Windows call plain text. What the encoding
/// does not have becomes U+FFFD.
std::string DecodePlainText(std::string_view bytes);

}  // namespace sab::xml
