#include "settings/settings_test.h"

#include "common/config_document.h"

namespace sab::testing {
namespace {

std::string Describe(const ConfigElement& parent, Text& scratch) {
  std::string all;
  for (const ConfigElement child : parent.Children()) {
    if (!all.empty()) all += ' ';
    all += ToUtf8(child.ReadLocalName(scratch));
    all += child.Children().begin() == nullptr ? '=' + ToUtf8(child.ReadText(scratch))
                                               : '{' + Describe(child, scratch) + '}';
  }
  return all;
}

}  // namespace

std::string ElementsOf(const Text& file, const std::string& node_path) {
  ConfigDocument document;
  if (!document.Load(file)) return "(no file)";
  const ConfigElement node = document.Select(FromUtf8(node_path));
  Text scratch;
  return node ? Describe(node, scratch) : "(no node)";
}

std::string SettingsTest::Saved(const LateObject& object) const {
  Write("<S>\n  <G/>\n</S>\n");
  EXPECT_EQ(S_OK, Save(object));
  return Elements();
}

}  // namespace sab::testing
