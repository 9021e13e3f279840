// Configuration documents: reading keys of a settings group, and appending 60 elements. The peers
// select each key by XPath, as the server's DOM on Windows does.

#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/xpath.h>

#include <pugixml.hpp>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "common/config_document.h"
#include "samples.h"
#include "xml/edit.h"
#include "xml/path.h"

namespace {

using sab::bench::KeyName;
using sab::bench::kKeys;
using sab::bench::kNodePath;
using sab::bench::SettingsFile;

const std::string& SettingsPath() {
  static const std::string path = sab::bench::WriteSample("settings.xml", SettingsFile());
  return path;
}

void LoadSettingsOurs(benchmark::State& state) {
  const sab::Text path = sab::FromUtf8(SettingsPath());
  const sab::Text node_path = sab::FromUtf8(kNodePath);
  std::vector<std::string> names;
  for (int key = 0; key < kKeys; ++key) names.push_back(KeyName(key));
  const std::vector<std::string_view> keys(names.begin(), names.end());
  sab::Text text;
  for (auto _ : state) {
    sab::ConfigDocument document;
    document.Load(path);
    for (const sab::ConfigElement& element : document.SelectAll(node_path).First(keys)) {
      benchmark::DoNotOptimize(element.ReadText(text));
    }
  }
}
BENCHMARK(LoadSettingsOurs)->Unit(benchmark::kMicrosecond);

void LoadSettingsPugixml(benchmark::State& state) {
  for (auto _ : state) {
    pugi::xml_document document;
    document.load_file(SettingsPath().c_str());
    for (int key = 0; key < kKeys; ++key) {
      const std::string path = std::string(kNodePath) + "/" + KeyName(key);
      benchmark::DoNotOptimize(document.select_node(path.c_str()).node().text().get());
    }
  }
}
BENCHMARK(LoadSettingsPugixml)->Unit(benchmark::kMicrosecond);

void LoadSettingsLibxml(benchmark::State& state) {
  for (auto _ : state) {
    xmlDocPtr document = xmlReadFile(SettingsPath().c_str(), nullptr, XML_PARSE_NONET);
    xmlXPathContextPtr context = xmlXPathNewContext(document);
    for (int key = 0; key < kKeys; ++key) {
      const std::string path = std::string(kNodePath) + "/" + KeyName(key);
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
BENCHMARK(LoadSettingsLibxml)->Unit(benchmark::kMicrosecond);

constexpr int kAppended = 60;

void AppendAndSerialiseOurs(benchmark::State& state) {
  const sab::xml::Document document{std::string(SettingsFile())};
  const sab::xml::NodeIndex parent = sab::xml::Paths(document).SelectFirst(kNodePath);
  for (auto _ : state) {
    sab::xml::Editor editor(document);
    for (int i = 0; i < kAppended; ++i) editor.Append(parent, "Appended", u"12345");
    benchmark::DoNotOptimize(editor.Serialise());
  }
}
BENCHMARK(AppendAndSerialiseOurs)->Unit(benchmark::kMicrosecond);

void AppendAndSerialisePugixmlRaw(benchmark::State& state) {
  pugi::xml_document original;
  original.load_string(SettingsFile().c_str(), pugi::parse_full | pugi::parse_ws_pcdata);
  for (auto _ : state) {
    state.PauseTiming();
    pugi::xml_document document;
    document.reset(original);
    state.ResumeTiming();
    pugi::xml_node parent = document.child("Settings").child("Display");
    for (int i = 0; i < kAppended; ++i) parent.append_child("Appended").text().set("12345");
    std::ostringstream out;
    document.save(out, "", pugi::format_raw);
    benchmark::DoNotOptimize(out.str());
  }
}
BENCHMARK(AppendAndSerialisePugixmlRaw)->Unit(benchmark::kMicrosecond);

}  // namespace
