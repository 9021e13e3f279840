// Looking for mistakes in documents, from their bytes on: to be compared with ReadOurs, which only
// reads the same user interface.

#include <benchmark/benchmark.h>

#include "check/check.h"
#include "samples.h"

namespace {

using sab::bench::Kind;

constexpr std::size_t kFileSize = 10 << 20;
constexpr std::size_t kTwentyKilobytes = 20 << 10;
constexpr int kFiles = 1000;

std::size_t FindingsIn(const sab::project::Source& source, const std::string& file) {
  sab::project::Project project(source);
  project.Read(file);
  std::vector<std::string> failures;
  return sab::check::Check(project, {}, failures).list.size();
}

void CheckUserInterface(benchmark::State& state) {
  sab::project::Source source;
  source.Open("ui.xml",
              sab::bench::UserInterfaceFile(static_cast<Kind>(state.range(0)), kFileSize));
  for (auto _ : state) benchmark::DoNotOptimize(FindingsIn(source, "ui.xml"));
}
BENCHMARK(CheckUserInterface)->Unit(benchmark::kMillisecond)->DenseRange(0, 1);

// One after the other, as from a folder.
void CheckManyFiles(benchmark::State& state) {
  sab::project::Source source;
  source.Open("ui.xml", sab::bench::UserInterfaceFile(Kind::kRich, kTwentyKilobytes));
  for (auto _ : state) {
    for (int i = 0; i < kFiles; ++i) benchmark::DoNotOptimize(FindingsIn(source, "ui.xml"));
  }
}
BENCHMARK(CheckManyFiles)->Unit(benchmark::kMillisecond);

}  // namespace
