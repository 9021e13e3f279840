#pragma once

#include <string_view>

namespace sab::preview {

/// The style sheet of all pages: style.css.
extern const std::string_view kStyle;

}  // namespace sab::preview
