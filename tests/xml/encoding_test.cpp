#include "xml/encoding.h"

#include <gtest/gtest.h>

#include "xml/document.h"
#include "xml/edit.h"
#include "xml/error.h"

namespace sab::xml {
namespace {

using namespace std::string_literals;

std::string Declared(const std::string& encoding) {
  return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>\r\n";
}

// Every second byte of a text in UTF-16.
std::string Widened(const std::string& ascii, bool is_big_endian) {
  std::string bytes;
  for (const char c : ascii) {
    bytes += is_big_endian ? '\0' : c;
    bytes += is_big_endian ? c : '\0';
  }
  return bytes;
}

// The text of an element is what it should be, and appending it to the document element writes the
// same bytes, with all others kept.
void ExpectReadAndWritten(const std::string& before, const std::string& behind,
                          const std::u16string& expected, const std::string& added) {
  const Document document(before + behind);
  std::u16string text;
  document.AppendText(document.FirstChildElement(document.Root()), text);
  EXPECT_EQ(expected, text);
  Editor editor(document);
  editor.Append(document.Root(), "b", expected);
  EXPECT_EQ(before + added + behind, editor.Serialise());
}

TEST(Encoding, FilesAreReadAndWrittenInTheirOwn) {
  const struct {
    const char* encoding;  // "" for none declared
    std::string bytes;     // of the text
    std::u16string text;   // what they mean; this is also appended
    std::string written;   // how it is written, if not in the same bytes
  } rows[] = {
      {"", "\xE4\xB8\xAD\xF0\x9F\x94\xA7", u"\u4E2D\U0001F527", ""},
      {"GB2312", "\xD6\xD0", u"\u4E2D", ""},
      {"gb2312", "\xE9\x46\x81\x5C", u"\u9555\u4E57", ""},  // as it is used: with GBK's characters
      {"GBK", "\xE9\x46\x81\x5C", u"\u9555\u4E57", ""},
      {"GB18030", "\x81\x39\xEE\x39\xD6\xD0", u"\u3400\u4E2D", ""},
      {"Big5", "\xA5\x5C", u"\u529F", ""},
      {"Shift_JIS", "\x95\x5C\\", u"\u8868\\", ""},
      {"EUC-KR", "\xB0\xA1", u"\uAC00", ""},
      {"ISO-8859-1", "\xE9", u"\u00E9", ""},
      {"iso-8859-5", "\xB1", u"\u0411", ""},
      {"windows-1252", "\x80", u"\u20AC", ""},
      {"Windows-1251", "\xC1", u"\u0411", ""},
      {"KOI8-R", "\xC2", u"\u0431", ""},
      {"ISO-8859-1", "&#x4E2D;&#233;", u"\u4E2D\u00E9", "&#20013;\xE9"},
      {"GB2312", "&#x1F600;", u"\U0001F600", "&#128512;"},
      {"Big5", "&#x1F527;", u"\U0001F527", "&#128295;"},
      {"US-ASCII", "&#xE9;", u"\u00E9", "&#233;"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.encoding);
    if (sizeof(wchar_t) == 2 && row.encoding == "GB18030"s) continue;  // Wine does not have it
    // Characters of several bytes before and behind the place of the change.
    const std::string comment = "<!--" + row.bytes + "-->";
    std::string before = *row.encoding ? Declared(row.encoding) : "";
    before.append("<r>\r\n ").append(comment).append("<a>").append(row.bytes).append("</a>\r\n");
    const std::string& written = row.written.empty() ? row.bytes : row.written;
    ExpectReadAndWritten(before, "</r>" + comment, row.text, "<b>" + written + "</b>");
  }
  // A mark says more than the declaration.
  for (std::string marked : {"\xEF\xBB\xBF"s, "\xEF\xBB\xBF" + Declared("GB2312")}) {
    marked += "<r><a>\xE4\xB8\xAD</a>";
    ExpectReadAndWritten(marked, "</r>", u"\u4E2D", "<b>\xE4\xB8\xAD</b>");
  }
}

TEST(Encoding, Utf16IsKnownByItsMarkOrItsFirstCharacters) {
  for (const bool is_big_endian : {false, true}) {
    const std::string mark = is_big_endian ? "\xFE\xFF" : "\xFF\xFE";
    const std::string wide =
        is_big_endian ? "\x4E\x2D\xD8\x3D\xDD\x27"s : "\x2D\x4E\x3D\xD8\x27\xDD"s;
    const auto around = [&](const char* start, const char* end) {
      return Widened(start, is_big_endian).append(wide).append(Widened(end, is_big_endian));
    };
    for (std::string before : {mark, mark + Widened(Declared("UTF-16"), is_big_endian),
                               Widened(Declared("utf-16"), is_big_endian),
                               mark + Widened(Declared("UCS-2"), is_big_endian)}) {
      before += around("<r><a>", "</a>");
      ExpectReadAndWritten(before, Widened("</r>", is_big_endian), u"\u4E2D\U0001F527",
                           around("<b>", "</b>"));
    }
  }
}

TEST(Encoding, WhatCannotBeDecodedIsRefusedWithItsPlace) {
  const std::string wide_start = "\xFF\xFE" + Widened("<r>", false);
  const struct {
    std::string bytes;
    const char* place;
    const char* reason;  // a part of it
  } rows[] = {
      {Declared("x-none") + "<r/>", "1:1", "x-none"},
      {Declared("UTF-16") + "<r/>", "1:1", "UTF-16"},
      {Declared("UTF-32") + "<r/>", "1:1", "UTF-32"},
      {Declared("UTF-7") + "<r/>", "1:1", "UTF-7"},
      {Declared("ISO-2022-JP") + "<r/>", "1:1", "ISO-2022-JP"},
      {Declared("IBM037") + "<r/>", "1:1", "IBM037"},
      {"\xFF\xFE" + Widened(Declared("UTF-8") + "<r/>", false), "1:1", "UTF-8"},
      {"\xFF\xFE\0\0<\0\0\0"s, "1:1", "UTF-32"},
      {Declared("GBK") + "<r>\xD6\xD0\n \xD6\xD0\xFF</r>", "3:3", "bytes"},
      {Declared("GBK") + "<r/>\xD6", "2:5", "bytes"},
      {Declared("GBK") + "<r>\xD6\xD0\xD6\xD0</s>", "2:6", "</s>"},
      {wide_start + "\x3D\xD8" + Widened("</r>", false), "1:4", "bytes"},  // a lone surrogate
      {wide_start + "\x27\xDD" + Widened("</r>", false), "1:4", "bytes"},
      {wide_start + "\xFE\xFF", "1:4", "character"},
      {wide_start + Widened("</r>", false) + "\n", "1:8", "bytes"},  // half a character
  };
  for (const auto& row : rows) {
    try {
      const Document document(row.bytes);
      ADD_FAILURE() << row.reason << " is read";
    } catch (const Error& error) {
      EXPECT_EQ(row.place, std::to_string(error.Line()) + ":" + std::to_string(error.Column()));
      EXPECT_NE(std::string(error.what()).find(row.reason), std::string::npos) << error.what();
    }
  }
}

}  // namespace
}  // namespace sab::xml
