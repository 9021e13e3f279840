// What holds for every settings group, checked over the key tables and the interface definitions.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "generated/dispatch_tables.h"
#include "settings/settings_groups.h"
#include "settings/settings_test.h"
#include "support/elements.h"

namespace sab::testing {
namespace {

const InterfaceInfo& InterfaceOf(std::string_view class_name) {
  const std::string name = "I" + std::string(class_name);
  for (const InterfaceInfo* info : TheLibrary().interfaces) {
    if (EqualsAscii(info->name, name)) return *info;
  }
  throw ComError(E_FAIL, name);
}

bool CanSave(const SettingsGroup& group) {
  return group.class_name != "VeAutoUpdateAdminCfgParser";
}

std::vector<std::string> AllClasses() {
  std::vector<std::string> names;
  for (const SettingsGroup& group : SettingsGroups()) names.emplace_back(group.class_name);
  for (const std::string_view name : NamedValueClasses()) names.emplace_back(name);
  return names;
}

using SettingsGroupsTest = SettingsTest;

TEST_F(SettingsGroupsTest, EveryPropertyHasItsKeyOrIsKnownToHaveNone) {
  // What is only in memory.
  constexpr std::string_view kWithoutKey =
      " NEBPrefix SearchFilePath FontFilePath HatchPicPath HelpFilePath CfgFilePath LastLnTypePath "
      "WindowAreaColor CrossingAreaColor GripHotColor GripHoverColor PreviewEffect PreviewFilter "
      "SelectionArea SelectionAreaOpacity SelectFirst PickDrag SelectWindow PickStyle GripOn "
      "GripBlock GripTips ";
  for (const SettingsGroup& group : SettingsGroups()) {
    SCOPED_TRACE(group.class_name);
    std::set<std::string> members;
    std::set<std::string> without_key;
    for (const MemberInfo& member : InterfaceOf(group.class_name).members) {
      members.insert(ToUtf8(member.name));
      if (member.kind == MemberKind::kPropertyPut) without_key.insert(ToUtf8(member.name));
    }
    std::set<std::string_view> keys;
    for (const SettingsRow& row : group.rows()) {
      EXPECT_TRUE(keys.insert(row.key).second) << row.key << " is there twice";
      EXPECT_TRUE(members.contains(std::string(row.property))) << row.property;
      without_key.erase(std::string(row.property));
    }
    for (const std::string& name : without_key)
      EXPECT_NE(kWithoutKey.npos, kWithoutKey.find(' ' + name + ' ')) << name;
  }
}

// A value that every type of setting can hold, different each time.
std::string RandomText(Type type, std::mt19937& random) {
  const char* const pieces[] = {"C:\\drawings", "图", "<&>\"'", "a  b", ";", "😀", "]]>", "é"};
  const struct {
    Type type;
    std::int64_t least;
    std::int64_t most;
    const char* end = "";
  } numbers[] = {
      {Type::kFlag, -1, 0},
      {Type::kMinusOne, -1, 0},
      {Type::kInt16, -32768, 32767},
      {Type::kWideInt16, -32768, 32767},
      {Type::kUInt16, 0, 65535},
      {Type::kUInt32, 0, 0xFFFFFFFF},
      {Type::kUInt32List, 0, 0xFFFFFFFF},
      {Type::kFloat, -9999, 9999, ".500000"},
      {Type::kDouble, -99999, 99999, ".123457"},
      {type, INT32_MIN, INT32_MAX},
  };
  if (type == Type::kTextList) return random() % 2 ? "LINE" : "文字 <&>";
  if (type == Type::kText) {
    std::string text = "x";
    for (int i = 0; i < 4; ++i) text += pieces[random() % std::size(pieces)];
    return text + "y";
  }
  const auto& found = *std::ranges::find(numbers, type, [](const auto& row) { return row.type; });
  std::uniform_int_distribution<std::int64_t> number(found.least, found.most);
  return std::to_string(number(random)) + found.end;
}

// Fresh objects save their defaults in the order of the table, as the page of the settings' keys
// has them. What is put comes back, also what only methods reach: an element of a list, a flag.
TEST_F(SettingsGroupsTest, EveryKeyIsSavedInItsPlaceAndComesBack) {
  std::mt19937 random(20240611);
  for (const SettingsGroup& group : SettingsGroups()) {
    if (!CanSave(group)) continue;
    SCOPED_TRACE(group.class_name);
    const std::string defaults = Saved(LateObject(std::string(group.class_name))) + " ";
    const SettingsFields fields = group.make_fields();
    std::size_t place = 0;
    for (const SettingsRow& row : group.rows()) {
      if (!row.IsSaved()) continue;
      const std::string text = row.format ? "=" + ToUtf8(row.format(fields.get())) + " " : "";
      place = defaults.find(std::string(row.key) + text, place);
      ASSERT_NE(std::string::npos, place) << row.key << text << " in " << defaults;
    }
    for (int round = 0; round < 20; ++round) {
      const LateObject saved{std::string(group.class_name)};
      const LateObject loaded{std::string(group.class_name)};
      for (const SettingsRow& row : group.rows()) {
        if (row.type == Type::kNone) continue;
        const std::string property(row.property);
        const std::string text = RandomText(row.type, random);
        EXPECT_TRUE(saved.Put(property, text) == S_OK || saved.Call(property, {text}) == S_OK)
            << property << " = " << text;
      }
      const std::string file = Saved(saved);
      ASSERT_EQ(S_OK, Load(loaded));
      const LateObject fresh{std::string(group.class_name)};
      for (const SettingsRow& row : group.rows()) {
        const std::string property(row.property);
        const bool comes_back = row.IsLoaded() && row.IsSaved();
        EXPECT_EQ((comes_back ? saved : fresh).Get(property), loaded.Get(property)) << property;
        if (!row.IsLoaded()) loaded.Put(property, saved.Get(property));
      }
      EXPECT_EQ(file, Saved(loaded));
    }
  }
}

TEST_F(SettingsGroupsTest, WhatEveryClassDoesWithFilesItCannotUse) {
  const struct {
    const char* bytes;  // null for no file
    const char* node_path;
    HRESULT load;
    HRESULT save;
    const char* says;
  } rows[] = {
      {nullptr, "/S/G", S_OK, S_OK, ""},
      {"<S >\r\n<!-- - --><Other/></S>", "/S/G", S_OK, S_OK, ""},
      {"<S>\n<G></S>", "/S/G", S_OK, kDocumentNotLoaded, "t.xml:2:"},
      {"<S><G/></S>", "/S[[", E_FAIL, E_FAIL, "/S[["},
      {"<S><G/></S>", "/", S_OK, E_INVALIDARG, "t.xml: the node path \"/\" leads to no element"},
      {nullptr, "/S[[", E_FAIL, E_FAIL, "/S[["},
  };
  for (const std::string& name : AllClasses()) {
    for (const auto& row : rows) {
      SCOPED_TRACE(name + ": " + (row.bytes ? row.bytes : "no file") + row.node_path);
      const TemporaryFolder folder;
      if (row.bytes) folder.Write("t.xml", row.bytes);
      const std::vector<std::string> arguments = {ToUtf8(folder.Name("t.xml")), row.node_path};
      const LateObject object(name);
      std::string failure;
      EXPECT_EQ(row.load, object.Call("Load", arguments, &failure));
      EXPECT_EQ(SUCCEEDED(row.load), failure.empty()) << failure;
      if (name == "VeAutoUpdateAdminCfgParser") {
        EXPECT_EQ(E_NOTIMPL, object.Call("Save", arguments));
      } else {
        EXPECT_EQ(row.save, object.Call("Save", arguments, &failure));
        EXPECT_NE(std::string::npos, failure.find(row.says)) << failure;
      }
      EXPECT_EQ(row.bytes ? row.bytes : "", folder.Read("t.xml"));
      EXPECT_EQ(row.bytes != nullptr, std::filesystem::exists(folder.Path("t.xml")));
    }
  }
}

TEST_F(SettingsGroupsTest, TextsAreConvertedAsFarAsTheirTypeReaches) {
  constexpr char kDisplay[] = "VeDisplayCfgParser";
  constexpr char kSelect[] = "VeSelectCfgParser";
  constexpr char kSystem[] = "VeSysParameterCfgParser";
  constexpr char kUpdate[] = "VeAutoUpdateAdminCfgParser";
  const struct {
    const char* class_name;
    const char* key;          // "Key=Property" where the names differ
    const char* conversions;  // "text in the file:from the property:saved", the last if it is asked
  } rows[] = {
      {kDisplay, "ObscuredColor",
       "-16777216:4278190080.000000:-16777216|4278190080:2147483647:2147483647"},
      {kDisplay, "ZoomFactor", "65541:5:65541|-32769:32767:-32769"},
      {kDisplay, "MinTxtShowSize", "65541:5:5|32768:-32768:-32768"},
      {kDisplay, "UCSIconWidth=UCSIconLnWidth", "99999999999:2147483647:2147483647"},
      {kDisplay, "UCSIconSize", " \t12x:12:12"},
      {kDisplay, "BigCursor", "1:1:1|65535:-1:-1|true:0:0"},
      {kDisplay, "GlobalLnTypeScale", "0.1:0.100000:0.100000|16777217:16777216.000000"},
      {kDisplay, "LWMmToPixels=LineWidthConvertScale", "1e-7:0.000000:0.000000"},
      {kSelect, "PickBoxSize", "65535:65535:65535|-1:65535:65535"},
      {kSelect, "RKeyActionMode", "-1:-1:-1"},
      {kSelect, "GripObjLimit", "-1:4294967295.000000:-1"},
      {kSelect, "SelectAllLayer=IsSelectAll_Layer", "1:1:1"},
      {kSelect, "GraphicDim=IsGraphicDim", "3:3:3"},
      {kSystem, "MergeSameStyle=GetIsMergeSameStyle", "7:-1:-1|0:0:0|x:0:0"},
      {kSystem, "FilePathNamePolicy", "1:1:1"},
      {kSystem, "DefVisualStyleID=DefVisualStyle", " {A} :{A}"},
      {kSystem, "TempPrefix", "lost:(null)"},
      {kUpdate, "DisableHttp", "1:0|-1:-1"},
      {kUpdate, "ReadOnly", ":0"},
      {kUpdate, "Interval", "INT_MAX:2147483647|int_max:0|30:30"},
      {kUpdate, "Server", " s :s"},
  };
  for (const auto& row : rows) {
    const std::vector<std::string> names = Split(row.key, '=');
    for (const std::string& conversion : Split(row.conversions, '|')) {
      SCOPED_TRACE(names[0] + " = " + conversion);
      const std::vector<std::string> texts = Split(conversion, ':');
      Write(Nested("S", Nested("G/" + names[0], texts[0]) + "<Saved/>"));
      const LateObject object(row.class_name);
      ASSERT_EQ(S_OK, Load(object));
      EXPECT_EQ(texts[1], object.Get(names.back()));
      if (texts.size() < 3) continue;
      ASSERT_EQ(S_OK, Save(object, "/S/Saved"));
      const std::vector<std::string> elements = Split(Elements("/S/Saved"), ' ');
      EXPECT_EQ(1, std::count(elements.begin(), elements.end(), names[0] + "=" + texts[2]));
    }
  }
}

}  // namespace
}  // namespace sab::testing
