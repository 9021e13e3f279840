// Texts that are half written: every sample cut at every byte that is not in the middle of a word,
// and repairs that must be what a person would do.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "lsp/test_client.h"
#include "project/path_finder.h"

namespace sab::project {
namespace {

using lsp::kWorkshop;

// What a client's characters are in the encoding that they declare.
std::string AsOpen(const std::string& text) { return lsp::Document("", "", text, nullptr).Bytes(); }

File TolerantFile(const std::string& text) {
  Source source;
  source.Open("a.xml", text);
  return File("a.xml", formats::Kind::kNone, source, Reading::kTolerant);
}

// Whether an element, or a text, is the same in both. Without the macros of the tests, which would
// take most of the time of millions of comparisons.
bool IsSame(const File& whole, const File& part, xml::NodeIndex node) {
  if (node >= part.Xml().NodeCount() || whole.Xml().TypeOf(node) != part.Xml().TypeOf(node) ||
      whole.Xml().At(node).start != part.ToOriginal(part.Xml().At(node).start)) {
    return false;
  }
  if (!whole.Xml().IsElement(node) || !whole.HasSchema()) return true;
  return whole.RuleIdOf(node) == part.RuleIdOf(node) &&
         whole.PlacementOf(node) == part.PlacementOf(node) &&
         whole.TextOf(node) == part.TextOf(node);
}

bool IsPartOfWord(std::string_view text) {
  return std::ranges::all_of(text, [](unsigned char c) { return std::isalnum(c) != 0; });
}

TEST(TolerantReadingTest, WhatIsBeforeACutIsUnderstoodAsBefore) {
  int files = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(kWorkshop)) {
    if (entry.path().extension() != ".xml") continue;
    SCOPED_TRACE(entry.path());
    ++files;
    // The text of the file, in which places are counted, whatever its encoding.
    const xml::Document document(lsp::BytesOfFile(entry.path().string()));
    const std::string text(document.TextBytes());
    const File whole = TolerantFile(AsOpen(text));
    ASSERT_FALSE(whole.Failure());
    const xml::NodeIndex count = whole.Xml().NodeCount();
    std::vector<std::size_t> ends;
    for (xml::NodeIndex node = 0; node < count; ++node) {
      ends.push_back(whole.Xml().EndOfMarkup(node));
    }
    // Work grows with the square of the size.
    const std::size_t step = text.size() / 4096 + 1;
    for (std::size_t cut = 0; cut < text.size(); cut += step) {
      if (cut > 1 && IsPartOfWord(std::string_view(text).substr(cut - 2, 4))) continue;
      const File file = TolerantFile(AsOpen(text.substr(0, cut)));
      ASSERT_TRUE(file.HasElements());
      for (xml::NodeIndex node = 1; node < count && whole.Xml().At(node).start < cut; ++node) {
        if (ends[node] > cut || IsSame(whole, file, node)) continue;
        FAIL() << cut << ": " << text.substr(whole.Xml().At(node).start, 40);
      }
    }
  }
  EXPECT_GT(files, 15);
}

TEST(TolerantReadingTest, Repairs) {
  const std::pair<std::string, std::string> kRows[] = {
      {"", "<_/>"},
      {"<a><b>x</a>", "<a><b>x</b></a>"},
      {"<a>\n <b>x\n <c/>\n</a>", "<a>\n <b>x</b>\n <c/>\n</a>"},
      {"<a>\n <b>\n  <c/>\n <d/>\n</a>", "<a>\n <b>\n  <c/>\n </b><d/>\n</a>"},
      {"<a>\n <b\n  <c/>\n </b>\n</a>", "<a>\n <b>\n  <c/>\n </b>\n</a>"},  // a missing >
      {"<a>\n <b\n <c/>\n</a>", "<a>\n   \n <c/>\n</a>"},                   // a name being written
      {"<a>< <b/></a>", "<a>  <b/></a>"},
      {"<a><b>x</</a>", "<a><b>x</b>  </a>"},
      {"<a><b>x</bb></a>", "<a><b>x</b>     </a>"},
      {"<a></z></a>", "<a>    </a>"},
      {"<a></a><b/></a>", "<a>    <b/></a>"},
      {"<a b=\"1\" c=\"x>\n<d/></a>", "<a b=\"1\"     >\n<d/></a>"},
      {"<a b='1' b='2' p:c='3'/>", "<a b='1'              />"},
      {"<p:a/>", "<p_a/>"},
      {"<a>&amp; & &x; &#0; ]]></a>", "<a>&amp;    x;  #0;  ]></a>"},
      {"<!DOCTYPE a><a><!-- -- </a>", "            <a><!--  - </a>--></a>"},
      {"<a><![CDATA[x</a>", "<a><![CDATA[x</a>]]></a>"},
      {"<?xml version='1.0'?><a\x01>\xFF</a>", "                     <a >?</a>"}};
  for (const auto& [text, repaired] : kRows) EXPECT_EQ(repaired, xml::RepairedText(text).Text());
}

}  // namespace
}  // namespace sab::project
