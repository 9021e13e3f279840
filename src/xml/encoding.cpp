#include "xml/encoding.h"

#include "xml/characters.h"
#include "xml/error.h"
#include "xml/reader.h"

namespace sab::xml {

void AppendUtf8(std::string& out, char32_t code) {
  const auto add = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (code < 0x80) {
    add(code);
    return;
  }
  if (code < 0x800) {
    add(0xC0 | code >> 6);
  } else {
    if (code < 0x10000) {
      add(0xE0 | code >> 12);
    } else {
      add(0xF0 | code >> 18);
      add(0x80 | (code >> 12 & 0x3F));
    }
    add(0x80 | (code >> 6 & 0x3F));
  }
  add(0x80 | (code & 0x3F));
}

namespace {

// The name in the declaration of a document whose bytes are ASCII as far as the declaration goes.
std::string_view DeclaredName(std::string_view bytes) {
  if (!bytes.starts_with("<?xml")) return {};
  const std::string_view declaration = bytes.substr(0, bytes.find("?>"));
  std::size_t at = declaration.find("encoding");
  if (at == declaration.npos) return {};
  at = declaration.find_first_of("'\"", at);
  if (at == declaration.npos) return {};
  const std::size_t end = declaration.find(declaration[at], at + 1);
  return end == declaration.npos ? std::string_view() : declaration.substr(at + 1, end - at - 1);
}

bool IsName(std::string_view name, std::string_view upper) {
  if (name.size() != upper.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = name[i] >= 'a' && name[i] <= 'z' ? static_cast<char>(name[i] - 32) : name[i];
    if (c != upper[i]) return false;
  }
  return true;
}

}  // namespace

Encoding::Encoding(std::string_view bytes) {
  using namespace std::string_view_literals;
  if (bytes.starts_with("\xEF\xBB\xBF"sv)) {
    mark_length_ = 3;
  } else if (bytes.starts_with("\xFF\xFE\0\0"sv) || bytes.starts_with("\0\0\xFE\xFF"sv)) {
    throw Error("UTF-32 is not read: save the file as UTF-8");
  } else if (bytes.starts_with("\xFF\xFE"sv)) {
    form_ = Form::kUtf16LittleEndian;
    mark_length_ = 2;
  } else if (bytes.starts_with("\xFE\xFF"sv)) {
    form_ = Form::kUtf16BigEndian;
    mark_length_ = 2;
  } else if (bytes.starts_with("<\0?\0"sv)) {
    form_ = Form::kUtf16LittleEndian;
  } else if (bytes.starts_with("\0<\0?"sv)) {
    form_ = Form::kUtf16BigEndian;
  }
  if (form_ != Form::kUtf8) return;
  const std::string_view name = DeclaredName(bytes.substr(mark_length_));
  if (name.empty() || IsName(name, "UTF-8") || IsName(name, "UTF8")) return;
  if (IsName(name, "UTF-16") || IsName(name, "UCS-2") || IsName(name, "ISO-10646-UCS-2")) {
    throw Error(1, 1, "the file says UTF-16, but its bytes are not: correct its declaration");
  }
  // A mark says more than the declaration.
  if (mark_length_ > 0) return;
  form_ = Form::kCodePage;
  code_page_ = std::make_unique<CodePage>(name);
}

Encoding::~Encoding() = default;

char16_t Encoding::UnitAt(const char* bytes) const {
  const auto first = static_cast<unsigned char>(bytes[0]);
  const auto second = static_cast<unsigned char>(bytes[1]);
  return static_cast<char16_t>(form_ == Form::kUtf16LittleEndian ? first | second << 8
                                                                 : first << 8 | second);
}

std::string Encoding::Decode(std::string_view bytes) const {
  const std::string_view body = bytes.substr(mark_length_);
  std::string text;
  text.reserve(body.size() + body.size() / 2);
  if (form_ == Form::kUtf8) {
    text = body;
    return text;
  }
  std::size_t read = 0;
  if (form_ == Form::kCodePage) {
    read = code_page_->Decode(body, text);
  } else {
    for (; read + 1 < body.size(); read += 2) {
      char32_t code = UnitAt(body.data() + read);
      if (code >= 0xD800 && code <= 0xDFFF) {
        if (code >= 0xDC00 || read + 3 >= body.size()) break;
        const char32_t low = UnitAt(body.data() + read + 2);
        if (low < 0xDC00 || low > 0xDFFF) break;
        code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
        read += 2;
      }
      AppendUtf8(text, code);
    }
  }
  if (read != body.size()) {
    const Place place = PlaceOf(text.c_str(), text.size());
    throw Error(place.line, place.column, "bytes that the file's encoding does not have");
  }
  return text;
}

std::size_t Encoding::OriginalOffset(std::string_view bytes, std::string_view text,
                                     std::size_t text_offset) const {
  if (form_ == Form::kUtf8) return mark_length_ + text_offset;
  if (form_ == Form::kCodePage) {
    std::string prefix;
    return code_page_->Decode(bytes, prefix, text_offset);
  }
  std::size_t units = 0;
  for (std::size_t i = 0; i < text_offset; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0U) != 0x80) units += byte >= 0xF0 ? 2 : 1;
  }
  return mark_length_ + 2 * units;
}

void Encoding::AppendUnit(std::string& bytes, char16_t unit) const {
  const auto low = static_cast<char>(unit & 0xFF);
  const auto high = static_cast<char>(unit >> 8);
  bytes.push_back(form_ == Form::kUtf16LittleEndian ? low : high);
  bytes.push_back(form_ == Form::kUtf16LittleEndian ? high : low);
}

std::string Encoding::Encode(std::string_view utf8) const {
  if (form_ == Form::kUtf8) return std::string(utf8);
  std::string bytes;
  const std::string text(utf8);  // with its zero, so that Decode may look ahead
  for (std::size_t i = 0; i < text.size();) {
    const Decoded decoded = xml::Decode(text.data() + i);
    i += decoded.length ? decoded.length : 1;
    if (form_ == Form::kCodePage) {
      if (decoded.code < 0x80) {
        bytes.push_back(static_cast<char>(decoded.code));
      } else if (!code_page_->Encode(decoded.code, bytes)) {
        bytes += "&#" + std::to_string(static_cast<unsigned>(decoded.code)) + ";";
      }
    } else if (decoded.code < 0x10000) {
      AppendUnit(bytes, static_cast<char16_t>(decoded.code));
    } else {
      AppendUnit(bytes, static_cast<char16_t>(0xD7C0 + (decoded.code >> 10)));
      AppendUnit(bytes, static_cast<char16_t>(0xDC00 | (decoded.code & 0x3FF)));
    }
  }
  return bytes;
}

}  // namespace sab::xml
