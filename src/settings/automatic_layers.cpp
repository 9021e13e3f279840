#include "settings/automatic_layers.h"

#include <algorithm>
#include <cstring>

#include "base/guid.h"
#include "binding/bind.h"
#include "formats/settings_system.h"
#include "platform/resource_strings.h"

namespace sab {
namespace {

struct InitialPair {
  unsigned resource;  // the string that names the layer
  GUID entity_class;
};

constexpr InitialPair kFromStyleDb[] = {
    {42456, GuidOf("691313BB-6742-4B7E-BC55-223F46DA09A0")},
    {42467, GuidOf("BEB5E73E-CF83-456E-81F3-EC3F15F7EBD4")},
    {42455, GuidOf("49BB30D8-8777-41CC-96A7-9E758590E882")},
    {42424, GuidOf("C3AA83DE-81D5-471A-A02E-E2FA7E02B558")},
    {42951, GuidOf("3D3A9A3C-4167-49B3-ABB5-DAFAE435C1BA")},
    {42952, GuidOf("E2CF2D62-BCEC-484D-AA54-D6B0CE906910")},
    {42401, GuidOf("32E514F2-F348-42CA-AA34-7880BF302A21")},
    {42392, GuidOf("80C86C70-E60A-48D8-B22E-61D53BB1CC4E")},
    {42440, GuidOf("486DEE62-5F33-4687-B3E9-D7B6827889EA")},
    {42416, GuidOf("5AF2E39B-1CA4-4706-8CB2-67E508C5D176")},
    {42452, GuidOf("84AA045A-BD40-485B-B9FE-57BBA9BBE046")},
    {42638, GuidOf("C47372A8-B389-471C-A923-A6116D353DAD")},
    {42619, GuidOf("16853E25-B8E8-4D32-B92F-9247F88D6C80")},
    {42618, GuidOf("131BD99E-C5EC-4AE9-8956-246DA2B0D6D8")},
    {42314, GuidOf("7B8A7F74-E70A-473F-80D8-E00A13316DDC")},
    {42294, GuidOf("027C5290-DD13-4D9A-AF3A-BBFC25B5D5FD")},
    {43038, GuidOf("530AC0F0-E658-428E-9773-411C7C1CFD93")},
    {42305, GuidOf("D5288053-03DC-4832-AF0C-4123C73657F2")},
    {42354, GuidOf("7D6F53AC-464C-443B-9F14-39B5CF52ABC3")},
    {42376, GuidOf("CEB876C3-E195-4A0B-98B3-5FD5AB5822AB")},
    {42327, GuidOf("D90B00B6-6004-4850-AB8D-1E3BD80A14FC")},
    {42363, GuidOf("13F1601E-61D8-47C1-9F58-A26C80F9D182")},
    {42334, GuidOf("35D8F590-826A-4531-B0F2-F52D37B6773D")},
    {42332, GuidOf("443FEAAF-9BE5-474B-BF98-9210D65DDA26")},
    {42378, GuidOf("CD1999EE-765D-424B-B43D-7AE71E44CAEE")},
    {42326, GuidOf("A22E27BE-4E93-4EFC-80FC-195A8CD55289")},
    {43215, GuidOf("07E7C5A9-C4CE-46DA-8322-F2BE1E4F47C0")},
};

constexpr InitialPair kFromStyleDftDb[] = {
    {443, GuidOf("A9FEC20F-A56E-447A-8C33-0A41C8AE7F51")},
};

constexpr std::string_view kRule = kElement<formats::kAutomaticLayers, "AutoLayerRule">;
constexpr std::string_view kKey = kElement<formats::kAutomaticLayer, "Key">;
constexpr std::string_view kValue = kElement<formats::kAutomaticLayer, "Value">;

// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}" and its end.
constexpr int kIdentifierLength = 39;

bool ComesBefore(const AutomaticLayers::Pair& pair, const GUID& entity_class) {
  return std::memcmp(&pair.entity_class, &entity_class, sizeof(GUID)) < 0;
}

}  // namespace

void AutomaticLayers::Add(const GUID& entity_class, TextView layer) {
  const auto place = std::lower_bound(pairs_.begin(), pairs_.end(), entity_class, ComesBefore);
  if (place != pairs_.end() && place->entity_class == entity_class) return;
  pairs_.insert(place, {entity_class, Bstr(layer)});
}

void AutomaticLayers::Seed() {
  Clear();
  const ResourceStrings general(OLESTR("StyleDb.dll"));
  for (const InitialPair& pair : kFromStyleDb) Add(pair.entity_class, general.At(pair.resource));
  const ResourceStrings drafting(OLESTR("StyleDftDb.dll"));
  for (const InitialPair& pair : kFromStyleDftDb) {
    Add(pair.entity_class, drafting.At(pair.resource));
  }
}

void AutomaticLayers::Read(const ConfigElement& element, Text& scratch) {
  AutomaticLayers loaded;
  for (const ConfigElement rule : element.Children()) {
    if (!rule.Is(kRule)) continue;
    GUID entity_class{};
    bool has_class = false;
    Text layer;
    for (const ConfigElement child : rule.Children()) {
      if (child.Is(kKey)) {
        child.ReadText(scratch);
        has_class = SUCCEEDED(IIDFromString(scratch.c_str(), &entity_class));
      } else if (child.Is(kValue)) {
        layer = child.ReadText(scratch);
      }
    }
    if (has_class) loaded.Add(entity_class, layer);
  }
  pairs_ = std::move(loaded.pairs_);
}

void AutomaticLayers::Write(AppendedElement element) const {
  for (const Pair& pair : pairs_) {
    OLECHAR identifier[kIdentifierLength];
    StringFromGUID2(pair.entity_class, identifier, kIdentifierLength);
    AppendedElement rule = element.Append(kRule);
    rule.Append(kKey, identifier);
    rule.Append(kValue, pair.layer.View());
  }
}

}  // namespace sab
