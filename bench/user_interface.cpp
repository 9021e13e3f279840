// Reading user-interface files into their tree, beside readers that one would write over another
// DOM: plain structs with UTF-16 strings, from the same bytes in memory.

#include <SabXmlParser.h>
#include <benchmark/benchmark.h>
#include <libxml/parser.h>

#include <map>
#include <pugixml.hpp>
#include <vector>

#include "base/bstr.h"
#include "platform/file.h"
#include "samples.h"
#include "server_fixture.h"

namespace {

using sab::bench::UserInterfaceFile;

// --- the peers' tree ---

struct Button {
  std::u16string identify, command, text, object, menu, option;
  bool large = false, visible = true;
  int width = 0, app_mode = -1;
  std::vector<Button> buttons;
};
struct Panel {
  std::u16string identify, text, image_small, image_large, resource_path, launch_button;
  int app_mode = -1;
  std::vector<Button> buttons;
};
struct Tab {
  std::u16string identify, text, key;
  int app_mode = -1;
  std::vector<Panel> panels;
};

std::u16string Wide(const char* utf8) { return sab::FromUtf8(utf8); }

// One reader for both: Node has Children(visit), Name() and Text().
template <class Node>
void ReadButton(const Node& node, Button& button) {
  node.Children([&button](const Node& child) {
    const std::string_view name = child.Name();
    if (name == "Identify")
      button.identify = Wide(child.Text());
    else if (name == "Command")
      button.command = Wide(child.Text());
    else if (name == "Text")
      button.text = Wide(child.Text());
    else if (name == "LargeImage")
      button.large = std::string_view(child.Text()) == "1";
    else if (name == "IsVisible")
      button.visible = std::string_view(child.Text()) != "0";
    else if (name == "Object")
      button.object = Wide(child.Text());
    else if (name == "Menu")
      button.menu = Wide(child.Text());
    else if (name == "Option")
      button.option = Wide(child.Text());
    else if (name == "Width")
      button.width = std::atoi(child.Text());
    else if (name == "AppMode")
      button.app_mode = std::atoi(child.Text());
    else if (name == "RibbonButton")
      ReadButton(child, button.buttons.emplace_back());
  });
}

template <class Node>
void ReadPanel(const Node& node, Panel& panel) {
  node.Children([&panel](const Node& child) {
    const std::string_view name = child.Name();
    if (name == "Identify")
      panel.identify = Wide(child.Text());
    else if (name == "Text")
      panel.text = Wide(child.Text());
    else if (name == "RibbonButton")
      ReadButton(child, panel.buttons.emplace_back());
  });
}

template <class Node>
std::vector<Tab> ReadTabs(const Node& ribbon_bar) {
  std::vector<Tab> tabs;
  ribbon_bar.Children([&tabs](const Node& node) {
    Tab& tab = tabs.emplace_back();
    node.Children([&tab](const Node& child) {
      const std::string_view name = child.Name();
      if (name == "Identify")
        tab.identify = Wide(child.Text());
      else if (name == "Text")
        tab.text = Wide(child.Text());
      else if (name == "RibbonPanel")
        ReadPanel(child, tab.panels.emplace_back());
    });
  });
  return tabs;
}

struct PugixmlNode {
  pugi::xml_node node;
  const char* Name() const { return node.name(); }
  const char* Text() const { return node.child_value(); }
  template <class Visit>
  void Children(const Visit& visit) const {
    for (const pugi::xml_node child : node.children()) visit(PugixmlNode{child});
  }
};

struct LibxmlNode {
  const xmlNode* node;
  const char* Name() const { return reinterpret_cast<const char*>(node->name); }
  const char* Text() const {
    return node->children ? reinterpret_cast<const char*>(node->children->content) : "";
  }
  template <class Visit>
  void Children(const Visit& visit) const {
    for (const xmlNode* child = node->children; child; child = child->next) {
      if (child->type == XML_ELEMENT_NODE) visit(LibxmlNode{child});
    }
  }
};

std::vector<Tab> ReadWithPugixml(const std::string& bytes) {
  pugi::xml_document document;
  document.load_buffer(bytes.data(), bytes.size());
  return ReadTabs(PugixmlNode{document.child("UI").child("RibbonBar")});
}

std::vector<Tab> ReadWithLibxml(const std::string& bytes) {
  const xmlDocPtr document = xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr,
                                           nullptr, XML_PARSE_NOBLANKS | XML_PARSE_HUGE);
  std::vector<Tab> tabs = ReadTabs(LibxmlNode{xmlDocGetRootElement(document)->children});
  xmlFreeDoc(document);
  return tabs;
}

// --- the measurements ---

const std::string& Sample(const benchmark::State& state) {
  return UserInterfaceFile(static_cast<std::size_t>(state.range(0)));
}

void Report(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(Sample(state).size()));
}

sab::ComPtr<IVeUiParser> ParserFor(benchmark::State& state) {
  static const sab::ComPtr<IClassFactory> factory = sab::bench::FactoryOf(CLSID_VeUiParser);
  sab::ComPtr<IVeUiParser> parser;
  factory->CreateInstance(nullptr, IID_IVeUiParser, parser.PutVoid());
  static std::map<std::int64_t, std::string> paths;
  std::string& path = paths[state.range(0)];
  if (path.empty()) {
    path = sab::bench::WriteSample("ui-" + std::to_string(state.range(0)) + ".xml", Sample(state));
  }
  parser->put_ConfigurationPath(sab::Bstr(sab::FromUtf8(path)).Get());
  return parser;
}

void GenerateUI(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    sab::ComPtr<IVeUiParser> parser = ParserFor(state);
    state.ResumeTiming();
    if (FAILED(parser->GenerateUI())) state.SkipWithError("GenerateUI failed");
    state.PauseTiming();
    parser.Reset();
    state.ResumeTiming();
  }
  Report(state);
}

void ReleaseTree(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    sab::ComPtr<IVeUiParser> parser = ParserFor(state);
    if (FAILED(parser->GenerateUI())) state.SkipWithError("GenerateUI failed");
    state.ResumeTiming();
    parser.Reset();
  }
  Report(state);
}

// What GenerateUI spends on the file itself; the peers start with its bytes in memory.
void ReadTheFile(benchmark::State& state) {
  const sab::Text name = sab::FromUtf8(
      sab::bench::WriteSample("ui-" + std::to_string(state.range(0)) + ".xml", Sample(state)));
  for (auto _ : state) {
    std::string reason;
    benchmark::DoNotOptimize(sab::ReadFileBytes(name, reason));
  }
  Report(state);
}

template <std::vector<Tab> (*kRead)(const std::string&)>
void ReadPeer(benchmark::State& state) {
  for (auto _ : state) {
    std::vector<Tab> tabs = kRead(Sample(state));
    state.PauseTiming();
    tabs.clear();
    state.ResumeTiming();
  }
  Report(state);
}

void ReleasePeerTree(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<Tab> tabs = ReadWithPugixml(Sample(state));
    state.ResumeTiming();
    tabs.clear();
  }
  Report(state);
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Unit(benchmark::kMillisecond)
      ->Arg(100 << 10)
      ->Arg(1 << 20)
      ->Arg(10 << 20)
      ->Arg(50 << 20);
}

BENCHMARK(ReadTheFile)->Apply(Sizes);
BENCHMARK(GenerateUI)->Apply(Sizes);
BENCHMARK(ReadPeer<ReadWithPugixml>)->Name("ReadWithPugixml")->Apply(Sizes);
BENCHMARK(ReadPeer<ReadWithLibxml>)->Name("ReadWithLibxml")->Apply(Sizes);
BENCHMARK(ReleaseTree)->Apply(Sizes);
BENCHMARK(ReleasePeerTree)->Apply(Sizes);

}  // namespace
