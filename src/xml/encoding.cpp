#include "xml/encoding.h"

#include "text/utf.h"
#include "xml/characters.h"
#include "xml/error.h"
#include "xml/reader.h"

namespace sab::xml {

namespace {

// The name in the declaration of a document whose bytes are ASCII as far as the declaration goes.
std::string_view DeclaredName(std::string_view bytes) {
  if (!bytes.starts_with("<?xml") || bytes.size() < 6 || !Has(bytes[5], kSpace)) return {};
  const std::string_view declaration = bytes.substr(0, bytes.find('>'));
  std::size_t at = declaration.find("encoding");
  if (at == declaration.npos) return {};
  at = declaration.find_first_of("'\"", at);
  if (at == declaration.npos) return {};
  const std::size_t end = declaration.find(declaration[at], at + 1);
  return end == declaration.npos ? std::string_view() : declaration.substr(at + 1, end - at - 1);
}

std::string UpperCase(std::string_view name) {
  std::string upper(name);
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
  }
  return upper;
}

bool IsNameOfUtf16(const std::string& upper) {
  return upper.starts_with("UTF-16") || upper == "UCS-2" || upper == "ISO-10646-UCS-2" ||
         upper == "UNICODE";
}

}  // namespace

Encoding::Encoding(std::string_view bytes) {
  RecogniseForm(bytes);
  const std::string_view body = bytes.substr(bom_length_);
  if (form_ == Form::kUtf8) {
    const std::string_view name = DeclaredName(body);
    const std::string upper = UpperCase(name);
    if (name.empty() || upper == "UTF-8" || upper == "UTF8") return;
    if (IsNameOfUtf16(upper)) {
      throw Error(1, 1, "the file says " + upper + ", but its bytes are not: correct what it says");
    }
    // A mark says more than the declaration.
    if (bom_length_ == 0) SetCodePage(name);
    return;
  }
  std::string start;  // of the declaration, as far as it is ASCII
  for (std::size_t i = 0; i + 1 < body.size() && start.find('>') == start.npos; i += 2) {
    const char16_t unit = UnitAt(body.data() + i);
    if (unit > 0x7F) break;
    start.push_back(static_cast<char>(unit));
  }
  const std::string upper = UpperCase(DeclaredName(start));
  if (!upper.empty() && !IsNameOfUtf16(upper)) {
    throw Error(1, 1,
                "the file says " + upper + ", but its bytes are UTF-16: correct what it says");
  }
}

void Encoding::RecogniseForm(std::string_view bytes) {
  using namespace std::string_view_literals;
  if (bytes.starts_with("\xEF\xBB\xBF"sv)) {
    bom_length_ = 3;
  } else if (bytes.starts_with("\xFF\xFE\0\0"sv) || bytes.starts_with("\0\0\xFE\xFF"sv)) {
    throw Error(1, 1, "UTF-32 is not read: save the file as UTF-8");
  } else if (bytes.starts_with("\xFF\xFE"sv)) {
    form_ = Form::kUtf16LittleEndian;
    bom_length_ = 2;
  } else if (bytes.starts_with("\xFE\xFF"sv)) {
    form_ = Form::kUtf16BigEndian;
    bom_length_ = 2;
  } else if (bytes.starts_with("<\0?\0"sv)) {
    form_ = Form::kUtf16LittleEndian;
  } else if (bytes.starts_with("\0<\0?"sv)) {
    form_ = Form::kUtf16BigEndian;
  }
}

// Markup is searched and written as ASCII, one character after the other. An encoding in which
// ASCII bytes mean other characters, or that shifts between sets of characters, does not allow
// that; no editor writes configuration files in one.
void Encoding::SetCodePage(std::string_view name) {
  form_ = Form::kCodePage;
  try {
    code_page_ = std::make_unique<CodePage>(name);
  } catch (const Error& error) {
    throw Error(1, 1, error.what());
  }
  std::string ascii = "\t\n\r";
  for (char c = ' '; c <= '~'; ++c) ascii.push_back(c);
  std::string decoded;
  bool is_suitable = code_page_->Decode(ascii, decoded) == ascii.size() && decoded == ascii;
  for (const char32_t code : {0xE9U, 0x3042U, 0x4E2DU, 0xAC00U}) {
    std::string encoded;
    code_page_->Encode(code, encoded);
    is_suitable = is_suitable && (encoded.empty() || static_cast<unsigned char>(encoded[0]) > 0x7F);
  }
  if (!is_suitable) {
    throw Error(1, 1, "the encoding " + std::string(name) + " is not read: save the file as UTF-8");
  }
}

Encoding::~Encoding() = default;

char16_t Encoding::UnitAt(const char* bytes) const {
  const auto first = static_cast<unsigned char>(bytes[0]);
  const auto second = static_cast<unsigned char>(bytes[1]);
  return static_cast<char16_t>(form_ == Form::kUtf16LittleEndian ? first | second << 8
                                                                 : first << 8 | second);
}

std::string Encoding::Decode(std::string_view bytes) const {
  const std::string_view body = bytes.substr(bom_length_);
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
      text::AppendUtf8(text, code);
    }
  }
  if (read != body.size()) {
    const Place place = PlaceOf(text.c_str(), text.size());
    throw Error(place.line, place.column, "bytes that the file's encoding does not have");
  }
  return text;
}

std::size_t Encoding::LengthOf(std::string_view text, std::string_view bytes) const {
  if (form_ == Form::kUtf8) return text.size();
  if (form_ == Form::kCodePage) {
    std::string decoded;
    return code_page_->Decode(bytes, decoded, text.size());
  }
  std::size_t units = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0U) != 0x80) units += byte >= 0xF0 ? 2 : 1;
  }
  return 2 * units;
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

bool Encoding::CanEncode(std::string_view utf8) const {
  if (form_ != Form::kCodePage) return true;
  const std::string text(utf8);  // with its zero, so that Decode may look ahead
  std::string bytes;
  for (std::size_t i = 0; i < text.size();) {
    const Decoded decoded = xml::Decode(text.data() + i);
    i += decoded.length ? decoded.length : 1;
    if (decoded.code >= 0x80 && !code_page_->Encode(decoded.code, bytes)) return false;
  }
  return true;
}

}  // namespace sab::xml
