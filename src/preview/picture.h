#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace sab::preview {

/// What the bytes of a picture are, whatever its file is called.
struct PictureType {
  std::string_view media_type;  ///< "image/png"; empty for what is no picture
  std::uint32_t width = 0;      ///< in pixels; 0 where the type does not tell at once
  std::uint32_t height = 0;
};

/// Recognises PNG, BMP, ICO, JPEG, GIF and SVG.
PictureType PictureTypeOf(std::string_view bytes);

void AppendBase64(std::string& out, std::string_view bytes);

}  // namespace sab::preview
