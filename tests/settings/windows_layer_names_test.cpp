// The names of the first automatic layers are string resources of the host's.

#include <gtest/gtest.h>

#include <set>

#include "server/created_object.h"
#include "support/dynamic_library.h"

namespace sab::testing {
namespace {

std::multiset<std::string> LayerNames() {
  const auto parser = Created<IVeSysParameterCfgParser>(CLSID_VeSysParameterCfgParser);
  std::multiset<std::string> names;
  INT count = 0;
  EXPECT_EQ(S_OK, parser->GetAutoLayerPairCount(&count));
  for (INT i = 0; i < count; ++i) {
    GUID id{};
    Bstr layer;
    EXPECT_EQ(S_OK, parser->GetAutoLayerPair(i, &id, layer.Put()));
    names.insert(ToUtf8(layer.View()));
  }
  return names;
}

TEST(LayerNamesTest, TheyComeFromTheHostWhereThereIsOne) {
  constexpr int kStrings[] = {42456, 42467, 42455, 42424, 42951, 42952, 42401, 42392, 42440, 42416,
                              42452, 42638, 42619, 42618, 42314, 42294, 43038, 42305, 42354, 42376,
                              42327, 42363, 42334, 42332, 42378, 42326, 43215, 443};
  std::multiset<std::string> expected;
  for (const int string : kStrings) expected.insert("layer " + std::to_string(string));

  const std::multiset<std::string> nameless = LayerNames();
  EXPECT_EQ(28U, nameless.count(""));
  void* const host = LoadLibraryBesideTests("VeNls");
  EXPECT_EQ(expected, LayerNames());
  UnloadLibrary(host);
}

}  // namespace
}  // namespace sab::testing
