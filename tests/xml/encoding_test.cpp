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

TEST(Encoding, FilesAreReadAndWrittenInTheirOwn) {
  const struct {
    const char* name;
    std::string start;    // of the file
    std::string wide;     // bytes of the text
    std::u16string text;  // what they mean; this is also appended
    std::string written;  // how it is written, if not in the same bytes
  } rows[] = {
      {"nothing said", "", "\xE4\xB8\xAD\xF0\x9F\x94\xA7", u"\u4E2D\U0001F527", ""},
      {"a mark", "\xEF\xBB\xBF", "\xE4\xB8\xAD", u"\u4E2D", ""},
      {"a mark and another declaration", "\xEF\xBB\xBF" + Declared("GB2312"), "\xE4\xB8\xAD",
       u"\u4E2D", ""},
      {"GB2312", Declared("GB2312"), "\xD6\xD0", u"\u4E2D", ""},
      {"GB2312 as it is used: with GBK's characters", Declared("gb2312"), "\xE9\x46\x81\x5C",
       u"\u9555\u4E57", ""},
      {"GB18030 with four bytes", Declared("GB18030"), "\x81\x39\xEE\x39\xD6\xD0", u"\u3400\u4E2D",
       ""},
      {"Big5 with a trailing backslash", Declared("Big5"), "\xA5\x5C", u"\u529F", ""},
      {"Shift_JIS", Declared("Shift_JIS"), "\x95\x5C\\", u"\u8868\\", ""},
      {"EUC-KR", Declared("EUC-KR"), "\xB0\xA1", u"\uAC00", ""},
      {"ISO-8859-1", Declared("ISO-8859-1"), "\xE9", u"\u00E9", ""},
      {"ISO-8859-5", Declared("iso-8859-5"), "\xB1", u"\u0411", ""},
      {"windows-1252", Declared("windows-1252"), "\x80", u"\u20AC", ""},
      {"windows-1251", Declared("Windows-1251"), "\xC1", u"\u0411", ""},
      {"a character that ISO-8859-1 lacks", Declared("ISO-8859-1"), "&#x4E2D;&#233;",
       u"\u4E2D\u00E9", "&#20013;\xE9"},
      {"a character that Big5 lacks", Declared("Big5"), "&#x1F527;", u"\U0001F527", "&#128295;"},
      {"US-ASCII", Declared("US-ASCII"), "&#xE9;", u"\u00E9", "&#233;"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    // Characters of several bytes before and behind the place of the change.
    const std::string before = row.start + "<r k='" + row.wide + "'>\r\n <!--" + row.wide +
                               "--><a>" + row.wide + "</a>\r\n";
    const std::string behind = "</r><!--" + row.wide + "-->";
    const Document document(before + behind);
    std::u16string text;
    document.AppendText(document.FirstChildElement(document.Root()), text);
    EXPECT_EQ(row.text, text);
    Editor editor(document);
    editor.Append(document.Root(), "b", row.text);
    const std::string& written = row.written.empty() ? row.wide : row.written;
    EXPECT_EQ(before + "<b>" + written + "</b>" + behind, editor.Serialise());
  }
}

TEST(Encoding, Utf16IsKnownByItsMarkOrItsFirstCharacters) {
  for (const bool is_big_endian : {false, true}) {
    const std::string mark = is_big_endian ? "\xFE\xFF" : "\xFF\xFE";
    const std::string wide =
        is_big_endian ? "\x4E\x2D\xD8\x3D\xDD\x27"s : "\x2D\x4E\x3D\xD8\x27\xDD"s;
    for (const std::string& start : {mark, mark + Widened(Declared("UTF-16"), is_big_endian),
                                     Widened(Declared("utf-16"), is_big_endian),
                                     mark + Widened(Declared("UCS-2"), is_big_endian)}) {
      const auto widened = [is_big_endian](const char* ascii) {
        return Widened(ascii, is_big_endian);
      };
      const std::string before = start + widened("<r><a>") + wide + widened("</a>");
      const Document document(before + widened("</r>"));
      std::u16string text;
      document.AppendText(document.Root(), text);
      EXPECT_EQ(u"\u4E2D\U0001F527", text);
      Editor editor(document);
      editor.Append(document.Root(), "b", text);
      EXPECT_EQ(before + widened("<b>") + wide + widened("</b></r>"), editor.Serialise());
    }
  }
}

TEST(Encoding, WhatCannotBeDecodedIsRefusedWithItsPlace) {
  const struct {
    const char* name;
    std::string bytes;
    const char* place;
    const char* reason;  // a part of it
  } rows[] = {
      {"unknown", Declared("x-none") + "<r/>", "1:1", "x-none"},
      {"UTF-16 that is not", Declared("UTF-16") + "<r/>", "1:1", "UTF-16"},
      {"UTF-8 that is not", "\xFF\xFE" + Widened(Declared("UTF-8") + "<r/>", false), "1:1",
       "UTF-8"},
      {"UTF-32", "\xFF\xFE\0\0<\0\0\0"s, "1:1", "UTF-32"},
      {"UTF-32 declared", Declared("UTF-32") + "<r/>", "1:1", "UTF-32"},
      {"UTF-7", Declared("UTF-7") + "<r/>", "1:1", "UTF-7"},
      {"shifting", Declared("ISO-2022-JP") + "<r/>", "1:1", "ISO-2022-JP"},
      {"not ASCII", Declared("IBM037") + "<r/>", "1:1", "IBM037"},
      {"bad GBK", Declared("GBK") + "<r>\xD6\xD0\n \xD6\xD0\xFF</r>", "3:3", "bytes"},
      {"cut GBK", Declared("GBK") + "<r/>\xD6", "2:5", "bytes"},
      {"lone surrogate", "\xFF\xFE" + Widened("<r>", false) + "\x3D\xD8" + Widened("</r>", false),
       "1:4", "bytes"},
      {"odd UTF-16", "\xFF\xFE" + Widened("<r/>", false) + "\n", "1:5", "bytes"},
      {"no character of XML", "\xFF\xFE" + Widened("<r>", false) + "\xFE\xFF", "1:4", "character"},
      {"ill-formed behind Chinese", Declared("GBK") + "<r>\xD6\xD0\xD6\xD0</s>", "2:6", "</s>"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    try {
      const Document document(row.bytes);
      ADD_FAILURE() << "is read";
    } catch (const Error& error) {
      EXPECT_EQ(row.place, std::to_string(error.Line()) + ":" + std::to_string(error.Column()));
      EXPECT_NE(std::string(error.what()).find(row.reason), std::string::npos) << error.what();
    }
  }
}

}  // namespace
}  // namespace sab::xml
