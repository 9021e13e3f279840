// The 39 display keys: loading and saving them in a small file, in one of 200 blocks of different
// names, and in one of 200 blocks of the same name, all from and to the disk. The peers select by
// XPath, as often as there are keys, or walk the children once, and write the whole tree.

#include <SabXmlParser.h>
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/xpath.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <pugixml.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "base/bstr.h"
#include "samples.h"
#include "server_fixture.h"
#include "settings/display_cfg_parser.h"

namespace {

using sab::ComPtr;
using sab::DisplayCfgFields;
using sab::SettingsRow;

enum Sample { kSmall, kDifferentBlocks, kSameBlocks };

// Blocks with several copies of all display keys each, as they are after several saves.
std::string FileOf(Sample sample) {
  const int blocks = sample == kSmall ? 1 : 200;
  const int copies = sample == kSmall ? 14 : 4;
  const DisplayCfgFields fields;
  std::string file = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Settings>\n";
  for (int block = 1; block <= blocks; ++block) {
    const bool is_read = sample == kSameBlocks || block == blocks;
    const std::string name = is_read ? "Display" : "Block" + std::to_string(block);
    file += "  <" + name + ">\n";
    for (int copy = 0; copy < copies; ++copy) {
      for (const SettingsRow& row : DisplayCfgFields::Rows()) {
        const std::string key(row.key);
        file += "    <" + key + ">" + sab::ToUtf8(row.format(&fields)) + "</" + key + ">\n";
      }
    }
    file += "  </" + name + ">\n";
  }
  return file + "</Settings>\n";
}

constexpr char kPath[] = "/Settings/Display";

const std::string& SampleName(Sample sample) {
  static std::array<std::string, kSameBlocks + 1> names;
  std::string& name = names[sample];
  if (name.empty()) {
    name = sab::bench::WriteSample("display_" + std::to_string(sample) + ".xml", FileOf(sample));
  }
  return name;
}
const std::string& SampleName(const benchmark::State& state) {
  return SampleName(static_cast<Sample>(state.range(0)));
}

std::vector<std::string> KeyPaths() {
  std::vector<std::string> paths;
  for (const SettingsRow& row : DisplayCfgFields::Rows()) {
    paths.push_back(std::string(kPath) + '/' + std::string(row.key));
  }
  return paths;
}

// As a host does: one object for several files.
ComPtr<IVeDisplayCfgParser> MakeParser() {
  return sab::bench::Created<IVeDisplayCfgParser>(CLSID_VeDisplayCfgParser);
}

void LoadWithServer(benchmark::State& state, const std::string& file, const char* path) {
  const ComPtr<IVeDisplayCfgParser> parser = MakeParser();
  const sab::Bstr name(sab::FromUtf8(file));
  const sab::Bstr node(sab::FromUtf8(path));
  for (auto _ : state) {
    if (FAILED(parser->Load(name.Get(), node.Get()))) state.SkipWithError("Load failed");
  }
}

void LoadDisplayOurs(benchmark::State& state) { LoadWithServer(state, SampleName(state), kPath); }
BENCHMARK(LoadDisplayOurs)->DenseRange(kSmall, kSameBlocks)->Unit(benchmark::kMicrosecond);

void LoadDisplayPugixml(benchmark::State& state) {
  const std::string& name = SampleName(state);
  const std::vector<std::string> paths = KeyPaths();
  for (auto _ : state) {
    pugi::xml_document document;
    document.load_file(name.c_str());
    for (const std::string& path : paths) {
      benchmark::DoNotOptimize(
          sab::FromUtf8(document.select_node(path.c_str()).node().text().get()));
    }
  }
}
BENCHMARK(LoadDisplayPugixml)->DenseRange(kSmall, kSameBlocks)->Unit(benchmark::kMicrosecond);

void LoadDisplayPugixmlWalk(benchmark::State& state) {
  const std::string& name = SampleName(state);
  for (auto _ : state) {
    pugi::xml_document document;
    document.load_file(name.c_str());
    std::vector<sab::Text> values(DisplayCfgFields::Rows().size());
    std::vector<bool> is_known(values.size());
    for (const pugi::xml_node block : document.document_element().children("Display")) {
      for (const pugi::xml_node child : block.children()) {
        for (std::size_t i = 0; i < values.size(); ++i) {
          if (is_known[i] || DisplayCfgFields::Rows()[i].key != child.name()) continue;
          values[i] = sab::FromUtf8(child.text().get());
          is_known[i] = true;
          break;
        }
      }
    }
    benchmark::DoNotOptimize(values);
  }
}
BENCHMARK(LoadDisplayPugixmlWalk)->DenseRange(kSmall, kSameBlocks)->Unit(benchmark::kMicrosecond);

void LoadDisplayLibxml(benchmark::State& state) {
  const std::string& name = SampleName(state);
  const std::vector<std::string> paths = KeyPaths();
  for (auto _ : state) {
    xmlDocPtr document = xmlReadFile(name.c_str(), nullptr, XML_PARSE_NONET);
    xmlXPathContextPtr context = xmlXPathNewContext(document);
    for (const std::string& path : paths) {
      xmlXPathObjectPtr found =
          xmlXPathEvalExpression(reinterpret_cast<const xmlChar*>(path.c_str()), context);
      xmlChar* const text = xmlNodeGetContent(found->nodesetval->nodeTab[0]);
      benchmark::DoNotOptimize(sab::FromUtf8(reinterpret_cast<const char*>(text)));
      xmlFree(text);
      xmlXPathFreeObject(found);
    }
    xmlXPathFreeContext(context);
    xmlFreeDoc(document);
  }
}
BENCHMARK(LoadDisplayLibxml)->DenseRange(kSmall, kSameBlocks)->Unit(benchmark::kMicrosecond);

// A node path that is more than child steps, in the file with 200 blocks of the name.
constexpr char kSearched[] = "//Display[7]";

void LoadByXPathOurs(benchmark::State& state) {
  LoadWithServer(state, SampleName(kSameBlocks), kSearched);
}
BENCHMARK(LoadByXPathOurs)->Unit(benchmark::kMillisecond);

void LoadByXPathPugixml(benchmark::State& state) {
  const std::string& name = SampleName(kSameBlocks);
  for (auto _ : state) {
    pugi::xml_document document;
    document.load_file(name.c_str());
    for (const SettingsRow& row : DisplayCfgFields::Rows()) {
      const std::string path = std::string(kSearched) + '/' + std::string(row.key);
      benchmark::DoNotOptimize(
          sab::FromUtf8(document.select_node(path.c_str()).node().text().get()));
    }
  }
}
BENCHMARK(LoadByXPathPugixml)->Unit(benchmark::kMillisecond);

// The whole Save of the server: read under the lock, changed, written beside, flushed and put in
// its place. TMPDIR says on which disk.
void SaveDisplayOurs(benchmark::State& state) {
  const std::string sample = FileOf(static_cast<Sample>(state.range(0)));
  const ComPtr<IVeDisplayCfgParser> parser = MakeParser();
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "sab-bench-save";
  std::filesystem::create_directory(folder);
  const std::string name = (folder / "display.xml").string();
  const sab::Bstr file(sab::FromUtf8(name));
  const sab::Bstr node(sab::FromUtf8(kPath));
  for (auto _ : state) {
    state.PauseTiming();  // a save adds to the file
    std::ofstream(name, std::ios::binary) << sample;
    state.ResumeTiming();
    if (FAILED(parser->Save(file.Get(), node.Get()))) state.SkipWithError("Save failed");
  }
  std::filesystem::remove_all(folder);
}
BENCHMARK(SaveDisplayOurs)->Arg(kSmall)->Arg(kDifferentBlocks)->Unit(benchmark::kMicrosecond);

// Written in place, without a flush.
void SaveDisplayPugixml(benchmark::State& state) {
  const std::string& name = SampleName(state);
  const std::string saved = sab::bench::WriteSample("display_saved.xml", "");
  const DisplayCfgFields fields;
  for (auto _ : state) {
    pugi::xml_document document;
    document.load_file(name.c_str(), pugi::parse_full | pugi::parse_ws_pcdata);
    pugi::xml_node node = document.select_node(kPath).node();
    for (const SettingsRow& row : DisplayCfgFields::Rows()) {
      node.append_child(std::string(row.key).c_str())
          .text()
          .set(sab::ToUtf8(row.format(&fields)).c_str());
    }
    document.save_file(saved.c_str(), "", pugi::format_raw);
  }
}
BENCHMARK(SaveDisplayPugixml)->Arg(kSmall)->Arg(kDifferentBlocks)->Unit(benchmark::kMicrosecond);

}  // namespace
