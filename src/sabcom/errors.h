#pragma once

#include <sabxml/com.h>

#include <string_view>

namespace sabcom {

/// Gives the thread's error object what the code alone does not say. Without memory it stays as it
/// was.
/// @param message UTF-8
void Explain(std::string_view message) noexcept;

}  // namespace sabcom
