// The 39 display keys: loading and saving them in a small file, in one of 200 blocks of different
// names, and in one of 200 blocks of the same name. The peers select by XPath, as often as there
// are keys, and write the whole tree. Flushing to the disk is left out of the saves: what is
// measured is from the file to the bytes that replace it.

#include <SabXmlParser.h>
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/xpath.h>

#include <filesystem>
#include <fstream>
#include <pugixml.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "base/bstr.h"
#include "platform/file.h"
#include "samples.h"
#include "server_fixture.h"
#include "settings/display_cfg_parser.h"
#include "xml/edit.h"
#include "xml/path.h"

namespace {

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

const std::string& SampleName(const benchmark::State& state) {
  static const std::string names[] = {
      sab::bench::WriteSample("display_small.xml", FileOf(kSmall)),
      sab::bench::WriteSample("display_different.xml", FileOf(kDifferentBlocks)),
      sab::bench::WriteSample("display_same.xml", FileOf(kSameBlocks))};
  return names[state.range(0)];
}

std::vector<std::string> KeyPaths() {
  std::vector<std::string> paths;
  for (const SettingsRow& row : DisplayCfgFields::Rows()) {
    paths.push_back(std::string(kPath) + '/' + std::string(row.key));
  }
  return paths;
}

void LoadDisplayOurs(benchmark::State& state) {
  const sab::Text name = sab::FromUtf8(SampleName(state));
  const sab::Text path = sab::FromUtf8(kPath);
  DisplayCfgFields fields;
  for (auto _ : state) {
    sab::ConfigDocument document;
    document.Load(name);
    sab::LoadSettings(DisplayCfgFields::Rows(), &fields, document, path);
    benchmark::DoNotOptimize(fields);
  }
}
BENCHMARK(LoadDisplayOurs)->DenseRange(kSmall, kSameBlocks)->Unit(benchmark::kMicrosecond);

void LoadDisplayPugixml(benchmark::State& state) {
  const std::string& name = SampleName(state);
  const std::vector<std::string> paths = KeyPaths();
  for (auto _ : state) {
    pugi::xml_document document;
    document.load_file(name.c_str());
    for (const std::string& path : paths) {
      benchmark::DoNotOptimize(document.select_node(path.c_str()).node().text().get());
    }
  }
}
BENCHMARK(LoadDisplayPugixml)->DenseRange(kSmall, kSameBlocks)->Unit(benchmark::kMicrosecond);

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
      benchmark::DoNotOptimize(text);
      xmlFree(text);
      xmlXPathFreeObject(found);
    }
    xmlXPathFreeContext(context);
    xmlFreeDoc(document);
  }
}
BENCHMARK(LoadDisplayLibxml)->DenseRange(kSmall, kSameBlocks)->Unit(benchmark::kMicrosecond);

void SaveDisplayOurs(benchmark::State& state) {
  const sab::Text name = sab::FromUtf8(SampleName(state));
  const DisplayCfgFields fields;
  for (auto _ : state) {
    std::string reason;
    const sab::xml::Document document(*sab::ReadFileBytes(name, reason));
    sab::xml::Editor editor(document);
    const sab::xml::NodeIndex node = sab::xml::Paths(document).SelectFirst(kPath);
    for (const SettingsRow& row : DisplayCfgFields::Rows()) {
      editor.Append(node, row.key, row.format(&fields));
    }
    benchmark::DoNotOptimize(editor.Serialise());
  }
}
BENCHMARK(SaveDisplayOurs)->DenseRange(kSmall, kSameBlocks)->Unit(benchmark::kMicrosecond);

// The whole Save of the server, the file on the disk included: read under the lock, changed,
// written beside, flushed and put in its place.
void SaveDisplayToDisk(benchmark::State& state) {
  const std::string sample = FileOf(kSmall);
  sab::ComPtr<IVeDisplayCfgParser> parser;
  sab::bench::FactoryOf(CLSID_VeDisplayCfgParser)
      ->CreateInstance(nullptr, IID_IVeDisplayCfgParser, parser.PutVoid());
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
BENCHMARK(SaveDisplayToDisk)->Unit(benchmark::kMicrosecond);

void SaveDisplayPugixmlRaw(benchmark::State& state) {
  const std::string& name = SampleName(state);
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
    std::ostringstream out;
    document.save(out, "", pugi::format_raw);
    benchmark::DoNotOptimize(out.str());
  }
}
BENCHMARK(SaveDisplayPugixmlRaw)->DenseRange(kSmall, kSameBlocks)->Unit(benchmark::kMicrosecond);

void SaveDisplayLibxml(benchmark::State& state) {
  const std::string& name = SampleName(state);
  const DisplayCfgFields fields;
  for (auto _ : state) {
    xmlDocPtr document = xmlReadFile(name.c_str(), nullptr, XML_PARSE_NONET);
    xmlXPathContextPtr context = xmlXPathNewContext(document);
    xmlXPathObjectPtr found =
        xmlXPathEvalExpression(reinterpret_cast<const xmlChar*>(kPath), context);
    for (const SettingsRow& row : DisplayCfgFields::Rows()) {
      const std::string key(row.key);
      xmlNewTextChild(found->nodesetval->nodeTab[0], nullptr,
                      reinterpret_cast<const xmlChar*>(key.c_str()),
                      reinterpret_cast<const xmlChar*>(sab::ToUtf8(row.format(&fields)).c_str()));
    }
    xmlChar* out = nullptr;
    int size = 0;
    xmlDocDumpMemory(document, &out, &size);
    benchmark::DoNotOptimize(out);
    xmlFree(out);
    xmlXPathFreeObject(found);
    xmlXPathFreeContext(context);
    xmlFreeDoc(document);
  }
}
BENCHMARK(SaveDisplayLibxml)->DenseRange(kSmall, kSameBlocks)->Unit(benchmark::kMicrosecond);

}  // namespace
