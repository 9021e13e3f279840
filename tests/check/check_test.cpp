// Every rule of "sabxml check" against mistakes that are made in a copy of the sample application.

#include "check/check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>

namespace sab::check {
namespace {

using Fields = std::vector<std::string>;

const std::string kSamples = std::string(SAB_SOURCE) + "/samples/workshop/";

std::string BytesOf(const std::string& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

std::string Unescaped(std::string text) {
  for (std::size_t at = 0; (at = text.find('\\', at)) != text.npos; ++at) {
    if (text[at + 1] == 'n') text.replace(at, 2, "\n");
    if (text[at + 1] == 'x') {
      text.replace(at, 4, 1, static_cast<char>(std::stoi(text.substr(at + 2, 2), nullptr, 16)));
    }
  }
  return text;
}

std::vector<Fields> Rows() {
  std::vector<Fields> rows;
  std::ifstream file(SAB_SOURCE "/tests/check/mistakes.txt");
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    Fields fields;
    for (std::size_t at = 0; at <= line.size();) {
      const std::size_t end = std::min(line.find('|', at), line.size());
      std::string field = line.substr(at, end - at);
      field.erase(0, std::min(field.find_first_not_of(' '), field.size()));
      field.erase(field.find_last_not_of(' ') + 1);
      fields.push_back(Unescaped(field));
      at = end + 1;
    }
    fields.resize(std::max<std::size_t>(fields.size(), 4));
    rows.push_back(std::move(fields));
  }
  return rows;
}

// What is found in the sample with other bytes for one file.
std::vector<Finding> FindingsWith(const std::string& file, const std::string* bytes) {
  project::Source source;
  if (bytes) source.Open(kSamples + file, *bytes);
  Choices choices;
  choices.host_ids.Add(BytesOf(kSamples + "host.ids"));
  project::Project project(source);
  if (file == "settings.xml") {
    for (const auto& [name, block] : std::vector<std::pair<std::string, std::string>>{
             {"VeSysParameterCfgParser", "System"},
             {"VeDisplayCfgParser", "Display"},
             {"VeFilePathCfgParser", "Paths"},
             {"VeSelectCfgParser", "Selection"},
             {"VeTxtParser", "Text"},
             {"VeAutoUpdateAdminCfgParser", "Update"}}) {
      choices.settings.push_back({name, "/Settings/" + block});
    }
    project.Read(kSamples + file, formats::Kind::kSettings);
  } else {
    const bool is_alone = file.starts_with("standards/") || file.starts_with("text_templates/");
    project.Read(kSamples + (is_alone ? file : "application.xml"));
  }
  return Check(project, choices).list;
}

std::string Described(const Finding& finding) {
  return finding.where.file + ": " + finding.message + " [" +
         std::string(RuleFor(finding.mistake).id) + "]";
}

// What is found with a mistake and not without it.
std::vector<Finding> NewFindings(const std::string& file, const std::string& bytes) {
  static std::map<std::string, std::vector<Finding>> before;
  const auto [known, is_new] = before.try_emplace(file);
  if (is_new) known->second = FindingsWith(file, nullptr);
  std::multiset<std::string> old;
  for (const Finding& finding : known->second) old.insert(Described(finding));
  std::vector<Finding> found = FindingsWith(file, &bytes);
  std::erase_if(found, [&old](const Finding& finding) {
    const auto same = old.find(Described(finding));
    if (same == old.end()) return false;
    old.erase(same);
    return true;
  });
  return found;
}

// Replaces the first of a text, and gives its place.
std::size_t Replace(std::string& text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(text.npos, at) << from;
  if (at != text.npos) text.replace(at, from.size(), to);
  return at;
}

std::string WithoutMark(std::string text) {
  if (const std::size_t mark = text.find('^'); mark != text.npos) text.erase(mark, 1);
  return text;
}

TEST(CheckTest, EveryMistakeIsFoundOnceInItsPlace) {
  std::set<Mistake> seen;
  for (const Fields& row : Rows()) {
    SCOPED_TRACE(row[0] + " | " + row[1] + " | " + row[2] + " | " + row[3]);
    std::string bytes = BytesOf(kSamples + row[0]);
    std::string marked = row[3];
    std::size_t at = Replace(bytes, row[2], WithoutMark(row[3]));
    if (row.size() > 5) {
      const std::size_t other = Replace(bytes, row[4], WithoutMark(row[5]));
      if (row[5].find('^') != row[5].npos) {
        marked = row[5];
        at = other;
      }
    }
    if (row.back().starts_with("@")) {
      marked = row.back().substr(1);
      at = bytes.find(WithoutMark(marked));
    }
    const std::vector<Finding> found = NewFindings(row[0], bytes);
    std::string all;
    for (const Finding& finding : found) {
      all += std::to_string(finding.where.start.line) + ":" +
             std::to_string(finding.where.start.column) + " " + Described(finding) + "\n";
    }
    if (row[1] == "-") {
      EXPECT_EQ("", all);
      continue;
    }
    EXPECT_EQ(1U, found.size()) << all;
    if (found.size() != 1) continue;
    EXPECT_EQ(row[1], RuleFor(found[0].mistake).id) << all;
    EXPECT_EQ(kSamples + row[0], found[0].where.file);
    const std::size_t mark = marked.find('^');
    ASSERT_NE(marked.npos, mark);
    ASSERT_NE(bytes.npos, at);
    const xml::Place place = project::Lines(bytes).PlaceOf(at + mark);
    EXPECT_EQ(std::pair(place.line, place.column),
              std::pair(found[0].where.start.line, found[0].where.start.column))
        << all;
    seen.insert(found[0].mistake);
  }
  for (const RuleText& rule : Rules()) {
    EXPECT_TRUE(seen.contains(rule.mistake)) << rule.id << " is never broken";
  }
}

TEST(CheckTest, LinesEndAsEditorsEndThem) {
  for (const std::string end : {"\n", "\r\n", "\r"}) {
    const std::string text = "<Cmd>" + end + std::string(600, ' ') + end + end + "é<Foo/>";
    const xml::Place place = project::Lines(text).PlaceOf(text.find("<Foo"));
    EXPECT_EQ(std::pair(4U, 2U), std::pair(place.line, place.column));
    const xml::Place same = xml::PlaceOf(text.c_str(), text.find("<Foo"));
    EXPECT_EQ(std::pair(4U, 2U), std::pair(same.line, same.column));
  }
}

// Documents with one element each, whose name is damaged, for all rules of a kind.
void DamageNames(const project::Schema& schema, project::ContentId content,
                 const std::string& start, const std::string& end,
                 std::set<project::ContentId>& open) {
  if (!open.insert(content).second) return;
  for (unsigned i = 0; i < schema.CountOf(content); ++i) {
    const auto id = static_cast<project::RuleId>(schema.FirstRule(content) + i);
    std::string name(schema.At(id).name);
    const bool has_any_name = name == formats::kAnyName;
    if (has_any_name) name = "Entry";
    DamageNames(schema, schema.ContentOf(id), start + "<" + name + ">", "</" + name + ">" + end,
                open);
    if (schema.Find(content, "Nothing") != project::kNoRule) continue;  // any name is right
    std::string damaged = name;
    damaged[damaged.size() / 2] = damaged[damaged.size() / 2] == 'x' ? 'y' : 'x';
    project::Source source;
    source.Open("damaged.xml", start + "<" + damaged + "/>" + end);
    project::Project project(source);
    project.Read("damaged.xml");
    const Findings findings = Check(project, {});
    const auto count = std::ranges::count_if(findings.list, [&](const Finding& finding) {
      return finding.mistake == Mistake::kUnknownElement && finding.offset == start.size();
    });
    EXPECT_EQ(1, count) << start << damaged;
  }
  open.erase(content);
}

TEST(CheckTest, EveryMisspeltNameIsFound) {
  for (const formats::Document* const form : formats::Documents()) {
    if (form->root.empty()) continue;
    const std::string root(form->root);
    std::set<project::ContentId> open;
    DamageNames(project::Schema::Of(form->kind), project::Schema::Of(form->kind).RootContent(),
                "<" + root + ">", "</" + root + ">", open);
  }
}

// Files that are named on their own, and blocks of settings that may be in any of them.
TEST(CheckTest, BlocksOfSettingsAreLookedForInAllFiles) {
  struct Case {
    std::vector<SettingsChoice> settings;
    std::vector<std::string> texts;  // of 0.xml, 1.xml and so on
    std::string found;  // rule, file, column, what is suggested, ! where that is certain
    bool are_all = true;
  };
  const SettingsChoice kDisplay{"VeDisplayCfgParser", "/S/Display"};
  const SettingsChoice kText{"VeTxtParser", "/S/Text"};
  const std::string kWhole = "<S><Display/><Text/></S>";
  const Case kCases[] = {
      {{kDisplay, kText},
       {"<Cmds><Identify>C</Identify></Cmds>"},
       "wrong-document-element 0:1 <Cmd>!"},
      {{{"VeTxtParser", "/Cmds/Text"}}, {"<Cmds><Text/></Cmds>"}, ""},
      {{kDisplay, kText}, {"<S><Text/></S>", "<S><Display/></S>"}, ""},
      {{kDisplay, kText}, {"<S/>", kWhole}, ""},
      {{kDisplay, kText}, {"<S><Text/></S>"}, "settings-bad-structure 0:1 "},
      {{kDisplay, kText}, {"<S><Text/></S>"}, "", false},
      {{kDisplay, kText},
       {"<S><Text/></S>", "<S><Text/><Displai/></S>"},
       "settings-bad-structure 1:11 <Display>"},
      {{{"VeTxtParser", "/Prefs/Text"}, {"VeDisplayCfgParser", "/Prefs/Display"}},
       {"<Pref><Text/><Display/></Pref>"},
       "wrong-document-element 0:1 <Prefs>!"},
      {{kDisplay, kText}, {kWhole, "<Other/>"}, "wrong-document-element 1:1 "},
      {{kDisplay, {"VeTxtParser", "/S/Displai"}},
       {"<S><Display/></S>"},
       "settings-bad-structure 0:1 "},
      {{{"VeDisplayCfgParser", "/S/Screens"}, {"VeTxtParser", "/S/Screen/Text"}},
       {"<S><Screen><Text/></Screen></S>"},
       "settings-bad-structure 0:4 /S/Screen"},
      {{kDisplay},
       {"<S><Displai/></S>", "<S><Displai/></S>"},
       "settings-bad-structure 0:4 /S/Displai"},
      {{},
       {"<BrowseFileHistorys><DCHistory><History>C:\\bench</History></DCHistory>"
        "</BrowseFileHistorys>"},
       ""},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.texts.back());
    project::Source source;
    project::Project project(source);
    for (std::size_t i = 0; i < row.texts.size(); ++i) {
      const std::string name = std::to_string(i) + ".xml";
      source.Open(name, row.texts[i]);
      project.Read(name,
                   KindToRead(project::File(name, formats::Kind::kNone, source), row.settings));
    }
    Choices choices;
    choices.settings = row.settings;
    choices.has_all_settings_files = row.are_all;
    std::string found;
    for (const Finding& finding : Check(project, choices).list) {
      found += (found.empty() ? "" : "; ") + std::string(RuleFor(finding.mistake).id) + " " +
               std::to_string(finding.file) + ":" + std::to_string(finding.where.start.column) +
               " " + finding.suggestion + (finding.fix ? "!" : "");
    }
    EXPECT_EQ(row.found, found);
  }
}

}  // namespace
// Short lines, and one that is longer than any block of them, with characters of each length.
TEST(LinesTest, PlacesAreThoseOfWalkingThroughTheText) {
  std::string text;
  for (int i = 0; i < 500; ++i) text += "ab\xE4\xB8\x80\n";
  for (int i = 0; i < 2000; ++i) text += "z\xC3\xA4\xF0\x9F\x98\x80";
  text += "\nend";
  const project::Lines lines(text);
  xml::Place place{1, 0};
  for (std::size_t i = 0; i < text.size(); ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80) {
      ++place.column;
      const xml::Place found = lines.PlaceOf(i);
      ASSERT_EQ(std::pair(found.line, found.column), std::pair(place.line, place.column)) << i;
    }
    if (text[i] == '\n') place = {place.line + 1, 0};
  }
}

}  // namespace sab::check
