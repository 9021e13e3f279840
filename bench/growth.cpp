// Time that must grow no faster than the input: rows of growing size, and what they fit.

#include <benchmark/benchmark.h>

#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "common/config_document.h"
#include "samples.h"
#include "xml/document.h"

namespace {

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Unit(benchmark::kMillisecond)
      ->Arg(4000)
      ->Arg(16000)
      ->Arg(40000)
      ->Complexity(benchmark::oN);
}

template <class TextOf>
void ReadRepeated(benchmark::State& state, std::string_view start, const TextOf& text_of,
                  std::string_view end) {
  std::string bytes(start);
  for (int i = 0; i < state.range(0); ++i) bytes += text_of(std::to_string(i));
  bytes += end;
  for (auto _ : state) benchmark::DoNotOptimize(sab::xml::Document(bytes).Root());
  state.SetComplexityN(state.range(0));
}

void ReadPrefixedAttributes(benchmark::State& state) {
  ReadRepeated(
      state, R"(<r xmlns:p="u" xmlns:q="v")",
      [](const std::string& number) { return " p:a" + number + "='1' q:a" + number + "='1'"; },
      "/>");
}
BENCHMARK(ReadPrefixedAttributes)->Apply(Sizes);

void ReadDeclarations(benchmark::State& state) {
  ReadRepeated(
      state, "<r",
      [](const std::string& number) {
        return " xmlns:p" + number + "='u" + number + "' p" + number + ":a='1'";
      },
      "/>");
}
BENCHMARK(ReadDeclarations)->Apply(Sizes);

// Many keys under a path that is more than child steps, in a file of 1.6 MB.
void KeysOfPath(benchmark::State& state) {
  std::string bytes = "<All>";
  for (int i = 0; i < 100; ++i)
    bytes += sab::bench::SettingsFile().substr(sab::bench::SettingsFile().find("<Settings>"));
  const sab::Text file = sab::FromUtf8(sab::bench::WriteSample("paths.xml", bytes + "</All>"));
  std::vector<std::string> names;
  for (int key = 0; key < state.range(0); ++key) names.push_back(sab::bench::KeyName(key));
  const std::vector<std::string_view> keys(names.begin(), names.end());
  for (auto _ : state) {
    sab::ConfigDocument document;
    document.Load(file);
    benchmark::DoNotOptimize(document.SelectAll(OLESTR("//Settings[7]/Display")).First(keys));
  }
}
BENCHMARK(KeysOfPath)->Arg(1)->Arg(7)->Arg(28)->Unit(benchmark::kMillisecond);

}  // namespace
