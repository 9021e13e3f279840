// Requests in texts that are being written, against the sample application; and that what is told
// of a text that was edited is what a check of it finds.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "check/options.h"
#include "lsp/test_client.h"

namespace sab::lsp {
namespace {

const Json kAble = {{"general", {{"positionEncodings", {"utf-8"}}}},
                    {"textDocument",
                     {{"completion", {{"completionItem", {{"snippetSupport", true}}}}},
                      {"codeAction", {{"codeActionLiteralSupport", Json::object()}}},
                      {"documentSymbol", {{"hierarchicalDocumentSymbolSupport", true}}}}}};

std::vector<std::string> FieldsOf(const std::string& line) {
  std::vector<std::string> fields;
  for (std::size_t at = 0; at <= line.size();) {
    const std::size_t end = std::min(line.find(" | ", at), line.size());
    std::string field = line.substr(at, end - at);
    // Answers have their new lines as JSON has them.
    const bool is_text = fields.size() == 2 || fields.size() == 3;
    for (std::size_t i = 0; is_text && (i = field.find("\\n", i)) != field.npos;) {
      field.replace(i, 2, "\n");
    }
    fields.push_back(std::move(field));
    at = end + 3;
  }
  return fields;
}

Json PositionIn(const std::string& text, std::size_t offset) {
  return ToJson(LineIndex(text).PositionOf(offset, PositionEncoding::kUtf8));
}

// What the row adds to the parameters: newName=X, or JSON.
Json ParametersOf(const std::string& path, const std::string& text, std::size_t place,
                  const std::string& request) {
  const Json position = PositionIn(text, place);
  Json params = {{"textDocument", {{"uri", UriOfPath(path)}}},
                 {"position", position},
                 {"positions", Json::array({position})},
                 {"range", {{"start", position}, {"end", position}}},
                 {"context", {{"includeDeclaration", true}}},
                 {"options", {{"tabSize", 2}, {"insertSpaces", true}}}};
  const std::size_t extra = request.find(' ');
  if (extra != request.npos) params.update(Json::parse(request.substr(extra)));
  return params;
}

TEST(LspTest, RequestsAreAnswered) {
  std::ifstream table(SAB_SOURCE "/tests/lsp/requests.txt");
  int rows = 0;
  for (std::string line; std::getline(table, line);) {
    if (line.empty() || line[0] == '#') continue;
    SCOPED_TRACE(line);
    const std::vector<std::string> row = FieldsOf(line);
    ASSERT_GE(row.size(), 5U);
    const std::string path = kWorkshop + row[0];
    std::string text = BytesOfFile(path);
    std::string written = row[3];
    const std::size_t mark = written.find('^');
    ASSERT_NE(written.npos, mark);
    written.erase(mark, 1);
    const std::size_t at = text.find(row[2]);
    ASSERT_NE(text.npos, at);
    TestClient client(kAble);
    // As a client does: the whole text first, then the change.
    client.Open(path, text);
    client.Notify(
        "textDocument/didChange",
        {{"textDocument", {{"uri", UriOfPath(path)}, {"version", 2}}},
         {"contentChanges",
          {{{"range",
             {{"start", PositionIn(text, at)}, {"end", PositionIn(text, at + row[2].size())}}},
            {"text", written}}}}});
    text.replace(at, row[2].size(), written);
    client.Diagnostics();
    const std::string method = row[1].substr(0, row[1].find(' '));
    const Json result =
        client.Request((method.starts_with("workspace/") ? "" : "textDocument/") + method,
                       ParametersOf(path, text, at + mark, row[1]));
    const std::string answer = result.dump();
    for (std::size_t i = 4; i < row.size(); ++i) {
      const bool is_wanted = !row[i].starts_with('!');
      const std::string part = row[i].substr(is_wanted ? 0 : 1);
      EXPECT_EQ(is_wanted, answer.find(part) != answer.npos) << part << "\n" << answer;
    }
    ++rows;
  }
  EXPECT_GT(rows, 40);
}

// Rule, message and place of everything that is found in a text.
using Told = std::multiset<std::string>;

void AddTold(const std::string& path, const std::string& rule, const std::string& message,
             std::size_t line, std::size_t column, Told& told) {
  told.insert(path + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " + message +
              " [" + rule + "]");
}

Told FoundAnew(const std::map<std::string, std::string>& texts) {
  project::Source source;
  for (const auto& [path, text] : texts) source.Open(path, text);
  project::Project project(source);
  project.Read(kWorkshop + "application.xml");
  check::Options options;
  AddOptionFile(options, kWorkshop + ".sabxml-check");
  Told told;
  for (const check::Finding& finding : Check(project, ChoicesOf(options)).list) {
    const auto open = texts.find(finding.where.file);
    const std::string text = open == texts.end() ? BytesOfFile(finding.where.file) : open->second;
    const LineIndex lines(text);
    const Position place =
        lines.PositionOf(lines.OffsetOf(finding.where.start), PositionEncoding::kUtf8);
    std::string message = finding.message;
    if (!finding.suggestion.empty()) message += "; did you mean " + finding.suggestion + "?";
    AddTold(finding.where.file, std::string(RuleFor(finding.mistake).id), message, place.line,
            place.character, told);
  }
  return told;
}

TEST(LspTest, AfterRandomEditsTheSameIsFoundAsInAFreshCheck) {
  const std::vector<std::string> kPieces = {
      "<",  "</",           ">",  "&",       "<Popup>", "</Popup>", "WK_NEW",   "x",
      "\n", "<Key>H</Key>", "字", "<a b='c", "<!-- ",   "\r\n\t",   "<Command>"};
  std::mt19937 generator(20);
  const auto below = [&](std::size_t bound) { return generator() % bound; };
  std::map<std::string, std::string> texts;
  TestClient client(kAble);
  for (const char* const name :
       {"ui/drawing.xml", "commands/file.xml", "environments/drawing.xml"}) {
    texts[kWorkshop + name] = BytesOfFile(kWorkshop + name);
    client.Open(kWorkshop + name, texts[kWorkshop + name]);
  }
  const std::map<std::string, std::string> first = texts;
  for (int round = 0; round < 300; ++round) {
    auto file = texts.begin();
    std::advance(file, below(texts.size()));
    std::string& text = file->second;
    Json changes = Json::array();
    if (below(6) == 0) {
      text = first.at(file->first);  // otherwise nothing would be well-formed after some rounds
      changes.push_back({{"text", text}});
    } else {
      const LineIndex lines(text);
      const Json start = {{"line", below(lines.LineCount() + 2)}, {"character", below(40)}};
      const std::size_t from = lines.OffsetOf(PositionFrom(start), PositionEncoding::kUtf8);
      const std::size_t to =
          lines.OffsetOf(lines.PositionOf(from + below(4) * below(8), PositionEncoding::kUtf8),
                         PositionEncoding::kUtf8);
      const std::string piece = below(3) == 0 ? "" : kPieces[below(kPieces.size())];
      changes.push_back(
          {{"range", {{"start", start}, {"end", PositionIn(text, std::max(from, to))}}},
           {"text", piece}});
      text.replace(from, std::max(from, to) - from, piece);
    }
    client.Notify("textDocument/didChange",
                  {{"textDocument", {{"uri", UriOfPath(file->first)}, {"version", round + 2}}},
                   {"contentChanges", changes}});
    Told told;
    for (const auto& [path, list] : client.Diagnostics()) {
      for (const Json& one : list) {
        AddTold(path, one["code"], one["message"], one["range"]["start"]["line"],
                one["range"]["start"]["character"], told);
      }
    }
    ASSERT_EQ(FoundAnew(texts), told) << "round " << round;
  }
}

TEST(LspTest, PathsAndAddresses) {
  const std::pair<std::string, std::string> kBothWays[] = {
      {"file:///a/b%20%E5%AD%97.xml", "/a/b 字.xml"},
      {"file:///C%3A/a/b.xml", "C:/a/b.xml"},
      {"file://server/share/a.xml", "//server/share/a.xml"}};
  for (const auto& [uri, path] : kBothWays) {
    EXPECT_EQ(path, PathOfUri(uri));
    EXPECT_EQ(uri, UriOfPath(path));
  }
  EXPECT_EQ("C:/a.xml", PathOfUri("file:///c:/x/../a.xml"));
  EXPECT_EQ("/a%zz", PathOfUri("FILE://localhost/a%zz"));
  for (const char* const uri : {"", "untitled:1", "http://a/b", "file:///a%00b", "file:///%FF"}) {
    EXPECT_EQ("", PathOfUri(uri));
  }
}

TEST(LspTest, PlacesInAText) {
  const std::string text =
      "a\xF0\x9F\x98\x80z\r\n\xE5\xAD\x97"
      "b\rc";  // an emoji, an ideograph
  const LineIndex lines(text);
  struct Row {
    unsigned line, character;
    PositionEncoding encoding;
    std::size_t offset;
    unsigned real_line, real_character;
  };
  for (const Row& row :
       std::initializer_list<Row>{{0, 3, PositionEncoding::kUtf16, 5, 0, 3},
                                  {0, 2, PositionEncoding::kUtf16, 1, 0, 1},  // inside of a pair
                                  {0, 3, PositionEncoding::kUtf8, 1, 0, 1},
                                  {0, 99, PositionEncoding::kUtf16, 6, 0, 4},
                                  {1, 1, PositionEncoding::kUtf8, 8, 1, 0},
                                  {1, 1, PositionEncoding::kUtf16, 11, 1, 1},
                                  {2, 0, PositionEncoding::kUtf16, 13, 2, 0},
                                  {7, 7, PositionEncoding::kUtf16, 14, 2, 1}}) {
    const std::size_t offset = lines.OffsetOf(Position{row.line, row.character}, row.encoding);
    EXPECT_EQ(row.offset, offset) << row.line << ":" << row.character;
    const Position back = lines.PositionOf(offset, row.encoding);
    EXPECT_EQ(std::pair(row.real_line, row.real_character), std::pair(back.line, back.character));
  }
}

}  // namespace
}  // namespace sab::lsp
