#include "xml/path.h"

#include <gtest/gtest.h>

#include <random>

#include "xml/oracles.h"

namespace sab::xml {
namespace {

// Positions among all elements, in document order.
std::vector<int> Select(const std::string& bytes, const std::string& path) {
  const Document document(bytes);
  Paths paths(document);
  std::vector<int> positions;
  for (const NodeIndex node : paths.SelectAll(path)) {
    int position = 0;
    for (NodeIndex i = 1; i < node; ++i) position += document.IsElement(i) ? 1 : 0;
    positions.push_back(position);
  }
  const NodeIndex first = paths.SelectFirst(path);
  EXPECT_EQ(positions.empty(), first == kNoNode);
  if (!positions.empty()) {
    EXPECT_EQ(paths.SelectAll(path).front(), first);
  }
  return positions;
}

// Now and then in a namespace, whose elements no name without a prefix means.
std::string RandomElement(std::mt19937& random, int depth) {
  const std::string name(1, static_cast<char>('a' + random() % 3));
  std::string content;
  for (unsigned i = depth > 0 ? random() % 4 : 0; i > 0; --i)
    content += RandomElement(random, depth - 1);
  const unsigned kind = random() % 16;
  if (kind == 0) return "<p:" + name + " xmlns:p='u'>" + content + "</p:" + name + ">";
  return "<" + name + (kind == 1 ? " xmlns='u'>" : ">") + content + "</" + name + ">";
}

TEST(Path, SelectsWhatXPathSelects) {
  std::mt19937 random(99);
  const std::string paths[] = {"a",
                               "a/b",
                               "/a/b/c",
                               "a/a",
                               "b/a/c/a",
                               "a/b/a",
                               "a//b",
                               "//c",
                               "a/*",
                               "a/b[1]",
                               "a/b[c]",
                               "(//a)[2]",
                               "a/b/..",
                               "a/b|a/c",
                               "./a",
                               "a/b[last()]",
                               "//*[name()='b']",
                               "//*[local-name()='c']",
                               "//*[namespace-uri()='u']",
                               "//a[name()='a']|//*[namespace-uri()='']"};
  for (int round = 0; round < 200; ++round) {
    const std::string bytes = RandomElement(random, 4);
    const Document document(bytes);
    Paths selected(document);
    for (const std::string& path : paths) {
      if (const auto parents = selected.SelectParents(path)) {
        ASSERT_EQ(selected.SelectFirst(path + "/b"), FirstChildNamed(document, *parents, "b"))
            << path;
      }
      ASSERT_EQ(testing::LibxmlSelect(bytes, path), Select(bytes, path)) << path << " in " << bytes;
    }
  }
}

}  // namespace
}  // namespace sab::xml
