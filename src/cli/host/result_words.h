#pragma once

#include <sabxml/com.h>

#include <string>

namespace sabxml::cli {

/// "0x84000C06"
std::string ResultDigits(HRESULT code);

/// What a result code of the server or of the component runtime means; empty for one that is not
/// known here.
std::string ResultWords(HRESULT code);

}  // namespace sabxml::cli
