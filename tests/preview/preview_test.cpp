#include "preview/preview.h"

#include <gtest/gtest.h>

#include "check/check.h"
#include "preview/html.h"
#include "preview/picture.h"

namespace sab::preview {
namespace {

using namespace std::string_view_literals;

Page PageOf(const std::string& ui, const Options& options = {}) {
  project::Source source;
  source.Open("ui.xml", "<UI>" + ui + "</UI>");
  project::Project project(source);
  const project::FileIndex start = project.Read("ui.xml");
  return Draw(project, start, check::Check(project, {}), {}, options);
}

std::string Repeated(std::size_t count, const std::string& text) {
  std::string all;
  while (count-- > 0) all += text;
  return all;
}

TEST(Preview, Escapes) {
  const std::pair<std::string_view, std::string_view> rows[] = {
      {"<b a=\"1\" c='2'>&amp;", "&lt;b a=&quot;1&quot; c=&#39;2&#39;&gt;&amp;amp;"},
      {"a\0\x1B\x7F\r\n\tb"sv, "a\uFFFD\uFFFD\uFFFD \n\tb"},
      {"字\u202E", "字\u202E"},
      {"", ""},
  };
  for (const auto& [text, expected] : rows) {
    Html html;
    html << std::string_view(text);
    EXPECT_EQ(html.Take(), expected);
  }
}

TEST(Preview, KnowsPicturesByTheirBytes) {
  struct Row {
    std::string_view bytes;
    std::string_view type;
    std::uint32_t width;
    std::uint32_t height;
  };
  const Row rows[] = {
      {"\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\x50\0\0\0\x10"sv, "image/png", 80, 16},
      {"BM\0\0\0\0\0\0\0\0\0\0\0\0\x28\0\0\0\x20\0\0\0\xF0\xFF\xFF\xFF"sv, "image/bmp", 32, 16},
      {"GIF89a\x20\0\x10\0"sv, "image/gif", 32, 16},
      {"\xFF\xD8\xFF\xE0"sv, "image/jpeg", 0, 0},
      {"\0\0\1\0\1\0\x10\x10\0\0\1\0\x20\0\0\0\0\0\x16\0\0\0"sv, "image/x-icon", 0, 0},
      {"\xEF\xBB\xBF<?xml version='1.0'?>\n<svg xmlns='http://www.w3.org/2000/svg'/>"sv,
       "image/svg+xml", 0, 0},
      {"<html><script>"sv, "", 0, 0},
      {"\x89PNG\r\n\x1A\n"sv, "", 0, 0},
      {"BM"sv, "", 0, 0},
      {""sv, "", 0, 0},
  };
  for (const Row& row : rows) {
    const PictureType type = PictureTypeOf(row.bytes);
    EXPECT_EQ(type.media_type, row.type) << row.bytes;
    EXPECT_EQ(type.width, row.width) << row.bytes;
    EXPECT_EQ(type.height, row.height) << row.bytes;
  }
  const std::pair<std::string_view, std::string_view> texts[] = {
      {"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foo", "Zm9v"}, {"\xFB\xFF\xFE"sv, "+//+"}};
  for (const auto& [bytes, expected] : texts) {
    std::string text;
    AppendBase64(text, bytes);
    EXPECT_EQ(text, expected);
  }
}

TEST(Preview, StaysSmall) {
  const std::string button = "<RibbonButton>";
  const std::string deep = Repeated(100000, button) + Repeated(100000, "</RibbonButton>");
  const std::string bars = Repeated(2000, "<DropDown>B</DropDown>") + Repeated(2000, "<Button/>");
  const std::pair<std::string, std::string_view> rows[] = {
      {"<RibbonBar><RibbonTab><RibbonPanel>" + deep + "</RibbonPanel></RibbonTab></RibbonBar>",
       "Deeper levels are not drawn"},
      {"<MainMenu>" + Repeated(5000, "<Popup>") + Repeated(5000, "</Popup>") + "</MainMenu>",
       "Deeper levels are not drawn"},
      {"<ToolBars><ToolBar><Identify>B</Identify>" + bars + "</ToolBar></ToolBars>",
       "More where the toolbar itself is"},
      {"<RibbonBar>" + Repeated(3000, "<x/>") + "</RibbonBar>", "more, which sabxml check prints"},
  };
  for (const auto& [ui, note] : rows) {
    const Page page = PageOf(ui);
    EXPECT_NE(page.html.find(note), page.html.npos) << note;
    EXPECT_LT(page.html.size(), 8'000'000U) << note;
  }
}

TEST(Preview, ShowsWhatAModeShows) {
  const std::string ui =
      "<MainMenu><MenuItem><Identify>A</Identify><AppMode>6</AppMode></MenuItem>"
      "<MenuItem><Identify>B</Identify></MenuItem>"
      "<MenuItem><Identify>C</Identify><AppMode>none</AppMode></MenuItem></MainMenu>";
  const std::pair<std::optional<std::int32_t>, std::string_view> rows[] = {
      {std::nullopt, "ABC"}, {1, "B"}, {2, "AB"}, {4, "AB"}, {12, "AB"}, {0, "B"}};
  for (const auto& [mode, expected] : rows) {
    const std::string html = PageOf(ui, {{}, mode, {}}).html;
    std::string shown;
    for (const char item : {'A', 'B', 'C'}) {
      if (html.find("data-id=\"" + std::string(1, item)) != html.npos) shown += item;
    }
    EXPECT_EQ(shown, expected);
  }
}

}  // namespace
}  // namespace sab::preview
