#pragma once

#include <sabxml/com.h>

#include <string_view>

namespace sabcom {

/// Makes the thread's error object tell what the code alone does not. Without memory it stays as it
/// was.
/// @param message UTF-8
void Explain(std::string_view message) noexcept;

}  // namespace sabcom
