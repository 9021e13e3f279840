#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "text/ascii.h"
#include "xml/characters.h"
#include "xml/error.h"
#include "xml/reader.h"
#include "xml/scan.h"

namespace sab::xml {

/// A place in a document's text, from which characters, references, names and the declaration are
/// read; refuses, with line and column, what is not well-formed. The text is NUL-padded.
class Cursor {
 protected:
  Cursor(const char* text, std::size_t size) : text_(text), end_(text + size), p_(text) {}

  std::uint32_t Offset(const char* p) const { return static_cast<std::uint32_t>(p - text_); }

  [[noreturn]] void FailAt(const char* p, const std::string& reason) const {
    const Place place = PlaceOf(text_, static_cast<std::size_t>(p - text_));
    throw Error(place.line, place.column, reason);
  }
  [[noreturn]] void Fail(const std::string& reason) const {
    FailAt(p_, p_ >= end_ ? "the document ends too early: " + reason : reason);
  }

  bool StartsWith(std::string_view expected) const {
    return std::strncmp(p_, expected.data(), expected.size()) == 0;
  }
  void Expect(std::string_view expected, const char* reason) {
    if (!StartsWith(expected)) Fail(reason);
    p_ += expected.size();
  }
  // Whether the bytes at a place are those of a name; never looks further than the text and its
  // padding.
  bool Matches(const char* p, const char* name, std::size_t size) const {
    return static_cast<std::size_t>(end_ - p) > size && IsSame(p, name, size);
  }
  bool SkipSpace() {
    const char* const start = p_;
    p_ = SkipWhiteSpace(p_);
    return p_ != start;
  }

  // One character that is no plain ASCII; refuses what may not occur in a document.
  void ReadCharacter() {
    const Decoded decoded = Decode(p_);
    if (decoded.length == 0) Fail("the bytes are not UTF-8");
    if (!IsCharacter(decoded.code)) {
      if (p_ >= end_) Fail("something is not closed");
      Fail("a character that XML does not allow");
    }
    p_ += decoded.length;
  }

  // First byte of a text that is not literal: of markup, a reference, ], a carriage
  // return, or what may not occur.
  static const char* SkipLiteralText(const char* p) {
    for (;;) {
      p = SkipPlainText(p);
      if (*p == '<') return p;
      const char* const start = p;
      if (*p == '\n' || *p == '\t') ++p;
      while (static_cast<unsigned char>(*p) >= 0x80) {
        if (IsCommonOfThreeBytes(p)) {
          p += 3;
          continue;
        }
        const Decoded decoded = Decode(p);
        if (decoded.length == 0 || !IsCharacter(decoded.code)) return p;
        p += decoded.length;
      }
      if (p == start) return p;
    }
  }

  char32_t ReadReference() {
    const char* const start = p_;
    ++p_;
    char32_t code = 0;
    if (*p_ == '#') {
      ++p_;
      const bool is_hexadecimal = *p_ == 'x';
      if (is_hexadecimal) ++p_;
      const char* const digits = p_;
      for (;; ++p_) {
        const int digit = DigitOf(*p_, is_hexadecimal);
        if (digit < 0) break;
        code = std::min<char32_t>(code * (is_hexadecimal ? 16 : 10) + static_cast<char32_t>(digit),
                                  0x110000);
      }
      if (p_ == digits) FailAt(start, "a character reference without a number");
      if (!IsCharacter(code)) FailAt(start, "a reference to a character that XML does not allow");
    } else {
      static constexpr struct {
        std::string_view name;
        char32_t code;
      } kEntities[] = {{"amp;", '&'}, {"lt;", '<'}, {"gt;", '>'}, {"quot;", '"'}, {"apos;", '\''}};
      for (const auto& entity : kEntities) {
        if (!std::equal(entity.name.begin(), entity.name.end(), p_)) continue;
        p_ += entity.name.size();
        return entity.code;
      }
      FailAt(start, Has(*p_, kNameStart) ? "an entity that is not declared: write &amp; for &"
                                         : "a bare &: write &amp;");
    }
    if (*p_ != ';') FailAt(start, "a reference without its semicolon");
    ++p_;
    return code;
  }

  static int DigitOf(char c, bool is_hexadecimal) {
    const int digit = HexDigitValue(c);
    return is_hexadecimal || digit < 10 ? digit : -1;
  }

  std::string_view ReadName(const char* what) {
    const char* const start = p_;
    if (!Has(*p_, kNameStart)) Fail(std::string(what) + " is expected");
    colon_ = nullptr;
    p_ = SkipPlainName(p_);
    if (Has(*p_, kNameByte)) ReadRestOfName(start);
    const std::string_view name(start, static_cast<std::size_t>(p_ - start));
    if (name.size() > UINT16_MAX) FailAt(start, "a name of over 65535 bytes");
    return name;
  }

  // From its first colon or the first character that is not ASCII.
  void ReadRestOfName(const char* start) {
    for (; Has(*p_, kNameByte); p_ = SkipPlainName(p_)) {
      if (*p_ == ':') {
        if (!colon_) colon_ = p_;
        ++p_;
        continue;
      }
      const Decoded decoded = Decode(p_);
      if (decoded.length == 0) Fail("the bytes are not UTF-8");
      if (!(p_ == start ? IsNameStart(decoded.code) : IsNameCharacter(decoded.code))) {
        Fail("a character that a name cannot have");
      }
      p_ += decoded.length;
    }
  }

  // Length of the prefix, without the colon, of the name that was just read; refuses a name of more
  // than two parts.
  std::size_t PrefixOf(std::string_view name) const {
    if (!colon_) return 0;
    const auto colon = static_cast<std::size_t>(colon_ - name.data());
    const char* const local = name.data() + colon + 1;
    if (colon == 0 || colon + 1 == name.size() || name.find(':', colon + 1) != name.npos ||
        !IsNameStart(Decode(local).code)) {
      FailAt(name.data(), "a name whose colon does not stand between a prefix and a local name");
    }
    return colon;
  }

  // --- the declaration ---

  void ReadDeclaration() {
    if (!StartsWith("<?xml") || !Has(p_[5], kSpace)) return;
    p_ += 5;
    SkipSpace();
    const std::string_view version = ReadPseudoAttribute("version");
    // Any version 1.x is read as 1.0.
    const bool is_known = version.size() > 2 && version.starts_with("1.") &&
                          version.find_first_not_of("0123456789", 2) == version.npos;
    if (!is_known) FailAt(version.data(), "the declaration must give version 1.0");
    bool spaced = SkipSpace();
    if (spaced && StartsWith("encoding")) {
      ReadPseudoAttribute("encoding");
      spaced = SkipSpace();
    }
    if (spaced && StartsWith("standalone")) {
      const std::string_view standalone = ReadPseudoAttribute("standalone");
      if (standalone != "yes" && standalone != "no") {
        FailAt(standalone.data(), "standalone is yes or no");
      }
      SkipSpace();
    }
    Expect("?>", "the declaration is not understood: it holds version, encoding, standalone");
  }

  std::string_view ReadPseudoAttribute(std::string_view name) {
    Expect(name, "the declaration lacks its version");
    SkipSpace();
    Expect("=", "an equals sign is expected");
    SkipSpace();
    const char quote = *p_;
    if (quote != '"' && quote != '\'') Fail("a quote is expected");
    const char* const start = ++p_;
    const auto may_occur = [](char c) {
      return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
             c == '.' || c == '_' || c == '-';
    };
    while (may_occur(*p_)) ++p_;
    if (*p_ != quote) Fail("the declaration has a character that does not belong there");
    const std::string_view value(start, static_cast<std::size_t>(p_ - start));
    const bool starts_well = !value.empty() && (value[0] < '0' || value[0] > '9') &&
                             value[0] != '.' && value[0] != '-' && value[0] != '_';
    if (name == "encoding" && !starts_well) FailAt(start, "this is no name of an encoding");
    ++p_;
    return value;
  }

  const char* const text_;
  const char* const end_;
  const char* p_;                // where reading continues
  const char* colon_ = nullptr;  // the first one of the name that was read last
};

}  // namespace sab::xml
