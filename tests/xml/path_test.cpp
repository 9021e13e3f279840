#include "xml/path.h"

#include <gtest/gtest.h>

#include <random>

#include "xml/error.h"
#include "xml/oracles.h"

namespace sab::xml {
namespace {

// Positions among all elements, in document order.
std::vector<int> Select(const std::string& bytes, const std::string& path) {
  const Document document(bytes);
  std::vector<int> positions;
  for (const NodeIndex node : SelectAll(document, path)) {
    int position = 0;
    for (NodeIndex i = 1; i < node; ++i) position += document.IsElement(i) ? 1 : 0;
    positions.push_back(position);
  }
  const NodeIndex first = SelectFirst(document, path);
  EXPECT_EQ(positions.empty(), first == kNoNode);
  if (!positions.empty()) {
    EXPECT_EQ(SelectAll(document, path).front(), first);
  }
  return positions;
}

std::string RandomElement(std::mt19937& random, int depth) {
  const std::string name(1, static_cast<char>('a' + random() % 3));
  std::string content;
  for (unsigned i = depth > 0 ? random() % 4 : 0; i > 0; --i)
    content += RandomElement(random, depth - 1);
  return "<" + name + ">" + content + "</" + name + ">";
}

TEST(Path, SelectsWhatXPathSelects) {
  std::mt19937 random(99);
  const std::string paths[] = {"a",      "a/b",     "/a/b/c", "a/a",        "b/a/c/a", "a/b/a",
                               "a//b",   "//c",     "a/*",    "a/b[1]",     "a/b[c]",  "(//a)[2]",
                               "a/b/..", "a/b|a/c", "./a",    "a/b[last()]"};
  for (int round = 0; round < 200; ++round) {
    const std::string bytes = RandomElement(random, 4);
    for (const std::string& path : paths) {
      const auto expected = testing::LibxmlSelect(bytes, path);
      ASSERT_TRUE(expected);
      ASSERT_EQ(*expected, Select(bytes, path)) << path << " in " << bytes;
    }
  }
}

TEST(Path, KeysAreFoundUnderAnyOfRepeatedParents) {
  const Document document("<r><g><x/></g><h><k/></h><g><k>1</k></g><g><k>2</k></g></r>");
  const std::vector<NodeIndex> parents = SelectAll(document, "/r/g");
  EXPECT_EQ(3U, parents.size());
  const NodeIndex key = FirstChildNamed(document, parents, "k");
  ASSERT_NE(kNoNode, key);
  EXPECT_EQ(SelectFirst(document, "/r/g/k"), key);
  std::u16string text;
  document.AppendText(key, text);
  EXPECT_EQ(u"1", text);
}

TEST(Path, NamesMeanElementsInNoNamespace) {
  EXPECT_EQ(std::vector<int>({2}), Select("<a><p:b xmlns:p='u'/><b/></a>", "a/b"));
  EXPECT_EQ(std::vector<int>(), Select("<a xmlns='u'><b/></a>", "a/b"));
  EXPECT_EQ(std::vector<int>({1}), Select("<a><b/></a>", "//b"));
}

TEST(Path, WhatIsNoPathIsRefused) {
  const Document document("<a><b/></a>");
  for (const char* path : {"", "/a[[", "a/", "/", "a b", "count(a)", "1", "a/@x |", "]"}) {
    if (std::string(path) == "/") continue;  // the document itself, which is no element
    EXPECT_THROW(SelectFirst(document, path), Error) << path;
  }
}

}  // namespace
}  // namespace sab::xml
