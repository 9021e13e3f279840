// Random paths in random documents: walking child steps, evaluating XPath, and libxml2 select the
// same elements, and so do the parents of a path with the keys below them.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz/choices.h"
#include "xml/document.h"
#include "xml/oracles.h"
#include "xml/path.h"

namespace {

using sab::fuzz::Choices;
using sab::fuzz::Require;

using sab::xml::Document;
using sab::xml::NodeIndex;

constexpr std::array kNames = {"a", "b", "c-d", "name"};

std::string Element(Choices& input, int depth) {
  const std::string name = input.Pick(kNames);
  std::string content;
  for (std::size_t i = depth > 0 ? input.Below(5) : 0; i > 0; --i)
    content += Element(input, depth - 1);
  switch (input.Below(8)) {
    case 0:
      return "<p:" + name + " xmlns:p='u'>" + content + "</p:" + name + ">";
    case 1:
      return "<" + name + " xmlns='u'>" + content + "</" + name + ">";
    case 2:
      return "<" + name + " xmlns='' a='1'>" + content + "x</" + name + ">";
    default:
      return "<" + name + ">" + content + "</" + name + ">";
  }
}

std::string Path(Choices& input) {
  // A step each.
  std::istringstream words(
      "a b c-d name * . .. a[1] *[last()] b[a] *[(a)or(b)] text() node() @a *[@a] *[.='x'] "
      "*[name()='p:a'] "
      "*[name(.)='a'] a[b=1] self::a *[namespace-uri()='u'] ancestor::b "
      "parent::* *[local-name(..)='b'] a[name] *[b<1]");
  const std::vector<std::string> tests(std::istream_iterator<std::string>(words), {});
  constexpr std::array kSeparators = {"/", "/", "/", "//", "|", " | /"};
  std::string path = input.Pick(std::array{"", "/", "//"});
  path += input.Pick(tests);
  for (std::size_t i = input.Below(4); i > 0; --i)
    path += std::string(input.Pick(kSeparators)) + input.Pick(tests);
  // libxml2 takes the first of a union before it has sorted it.
  const bool is_whole = input.Flip() || path.find('|') != path.npos;
  return is_whole ? path : "(" + path + ")[1]";
}

std::vector<int> Numbers(const Document& document, const std::vector<NodeIndex>& nodes) {
  std::vector<int> numbers;
  int number = 0;
  NodeIndex last = 1;
  for (const NodeIndex node : nodes) {
    for (; last < node; ++last) number += document.IsElement(last) ? 1 : 0;
    numbers.push_back(number);
  }
  return numbers;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Choices input(data, size);
  const std::string path = Path(input);
  const std::string bytes = Element(input, 4);
  const Document document(bytes);
  sab::xml::Paths paths(document);
  for (int round = 0; round < 2; ++round) {  // the tree of the first serves the second
    const std::vector<NodeIndex> selected = paths.SelectAll(path);
    Require(Numbers(document, selected) == sab::xml::testing::LibxmlSelect(bytes, path));
    Require(paths.SelectAll("(" + path + ")") == selected);
    Require(paths.SelectFirst(path) == (selected.empty() ? sab::xml::kNoNode : selected.front()));
    if (const auto parents = paths.SelectParents(path)) {
      for (const char* name : kNames)
        Require(sab::xml::FirstChildNamed(document, *parents, name) ==
                paths.SelectFirst(path + "/" + name));
    }
  }
  return 0;
}
