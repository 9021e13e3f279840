#include "preview/picture.h"

#include <algorithm>

namespace sab::preview {
namespace {

using namespace std::string_view_literals;

std::uint32_t ByteAt(std::string_view bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}

std::uint32_t LittleEndian(std::string_view bytes, std::size_t at, std::size_t size) {
  std::uint32_t value = 0;
  for (std::size_t i = size; i-- > 0;) value = value << 8U | ByteAt(bytes, at + i);
  return value;
}

std::uint32_t BigEndian32(std::string_view bytes, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8U | ByteAt(bytes, at + i);
  return value;
}

// An SVG is a text whose document element comes early.
bool IsSvg(std::string_view bytes) {
  const std::string_view head = bytes.substr(0, 1024);
  const std::size_t first = head.find_first_not_of("\xEF\xBB\xBF \t\r\n");
  return first != head.npos && head[first] == '<' && head.find("<svg") != head.npos &&
         head.find('\0') == head.npos;
}

}  // namespace

PictureType PictureTypeOf(std::string_view bytes) {
  if (bytes.starts_with("\x89PNG\r\n\x1A\n"sv) && bytes.size() >= 24) {
    return {"image/png", BigEndian32(bytes, 16), BigEndian32(bytes, 20)};
  }
  if (bytes.starts_with("BM"sv) && bytes.size() >= 26) {
    const auto height = static_cast<std::int32_t>(LittleEndian(bytes, 22, 4));
    const auto rows = static_cast<std::uint32_t>(height);
    // The rows of a negative height come from the top.
    return {"image/bmp", LittleEndian(bytes, 18, 4), height < 0 ? 0U - rows : rows};
  }
  if ((bytes.starts_with("GIF87a"sv) || bytes.starts_with("GIF89a"sv)) && bytes.size() >= 10) {
    return {"image/gif", LittleEndian(bytes, 6, 2), LittleEndian(bytes, 8, 2)};
  }
  if (bytes.starts_with("\xFF\xD8\xFF"sv)) return {"image/jpeg"};
  if (bytes.starts_with("\0\0\1\0"sv) && bytes.size() >= 22) return {"image/x-icon"};
  if (IsSvg(bytes)) return {"image/svg+xml"};
  return {};
}

void AppendBase64(std::string& out, std::string_view bytes) {
  static constexpr char kDigits[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - at);
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      word = word << 8U | (i < count ? ByteAt(bytes, at + i) : 0);
    }
    for (std::size_t i = 0; i < 4; ++i) {
      out += i <= count ? kDigits[word >> (18 - 6 * i) & 63U] : '=';
    }
  }
}

}  // namespace sab::preview
