// Time that must grow no faster than the input: rows of growing size, and what they fit.

#include <benchmark/benchmark.h>

#include <string>
#include <string_view>

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

}  // namespace
