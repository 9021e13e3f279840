// Reading a document in memory: our strict reader beside a lenient and two strict ones.

#include <benchmark/benchmark.h>
#include <expat.h>
#include <libxml/parser.h>

#include <pugixml.hpp>

#include "samples.h"
#include "xml/document.h"

namespace {

using sab::bench::Kind;

constexpr std::size_t kTenMegabytes = 10 << 20;

const std::string& Sample(const benchmark::State& state) {
  static const std::string samples[] = {sab::bench::UserInterfaceFile(Kind::kPlain, kTenMegabytes),
                                        sab::bench::UserInterfaceFile(Kind::kRich, kTenMegabytes)};
  return samples[state.range(0)];
}

void Report(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<std::int64_t>(Sample(state).size()) * state.iterations());
}

// Plain, then rich.
void Kinds(benchmark::internal::Benchmark* benchmark) {
  benchmark->Unit(benchmark::kMillisecond)->DenseRange(0, 1);
}

void ReadOurs(benchmark::State& state) {
  for (auto _ : state) {
    std::string bytes;  // as a file is read: with spare capacity
    bytes.reserve(Sample(state).size() + sab::xml::Document::kPadding);
    bytes += Sample(state);
    const sab::xml::Document document(std::move(bytes));
    benchmark::DoNotOptimize(document.Root());
  }
  Report(state);
}
BENCHMARK(ReadOurs)->Apply(Kinds);

void ReadPugixmlLenient(benchmark::State& state) {
  const std::string& bytes = Sample(state);
  for (auto _ : state) {
    pugi::xml_document document;
    document.load_buffer(bytes.data(), bytes.size());
    benchmark::DoNotOptimize(document.first_child());
  }
  Report(state);
}
BENCHMARK(ReadPugixmlLenient)->Apply(Kinds);

void ReadExpatEmptyHandlers(benchmark::State& state) {
  const std::string& bytes = Sample(state);
  for (auto _ : state) {
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetElementHandler(
        parser, [](void*, const XML_Char*, const XML_Char**) {}, [](void*, const XML_Char*) {});
    XML_SetCharacterDataHandler(parser, [](void*, const XML_Char*, int) {});
    benchmark::DoNotOptimize(
        XML_Parse(parser, bytes.data(), static_cast<int>(bytes.size()), XML_TRUE));
    XML_ParserFree(parser);
  }
  Report(state);
}
BENCHMARK(ReadExpatEmptyHandlers)->Apply(Kinds);

void ReadLibxmlTree(benchmark::State& state) {
  const std::string& bytes = Sample(state);
  for (auto _ : state) {
    xmlDocPtr document = xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr,
                                       nullptr, XML_PARSE_NONET);
    benchmark::DoNotOptimize(document);
    xmlFreeDoc(document);
  }
  Report(state);
}
BENCHMARK(ReadLibxmlTree)->Apply(Kinds);

}  // namespace
