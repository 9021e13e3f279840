// Looking for mistakes in documents, from their bytes on: to be compared with ReadOurs, which only
// reads the same user interface.

#include <benchmark/benchmark.h>

#include <string_view>

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
  return sab::check::Check(project, {}).list.size();
}

// Replaces what is between two texts by a number, or by nothing.
std::string Replaced(std::string_view content, std::string_view before, char after,
                     bool is_numbered) {
  std::string replaced;
  int number = 0;
  for (;;) {
    const std::size_t at = content.find(before);
    if (at == content.npos) return replaced.append(content);
    replaced.append(content.substr(0, at + before.size()));
    if (is_numbered) replaced += std::to_string(++number);
    content.remove_prefix(content.find(after, at + before.size()));
  }
}

// The rich sample as an author would leave it: it uses keys again and names pictures that nobody
// has, which are nearly all of its 4,600 mistakes.
std::string Corrected() {
  std::string content = sab::bench::UserInterfaceFile(Kind::kRich, kFileSize);
  for (const char* key : {"<Key>", "<RibbonKey>"}) content = Replaced(content, key, '<', true);
  for (const char* picture : {"<ImageSmall>", "<ImageLarge>", "<BmpDef>"}) {
    content = Replaced(content, picture, '<', false);
  }
  return content;
}

// Plain, rich, and rich with few mistakes.
void CheckUserInterface(benchmark::State& state) {
  sab::project::Source source;
  source.Open("ui.xml", state.range(0) == 2 ? Corrected()
                                            : sab::bench::UserInterfaceFile(
                                                  static_cast<Kind>(state.range(0)), kFileSize));
  for (auto _ : state) benchmark::DoNotOptimize(FindingsIn(source, "ui.xml"));
}
BENCHMARK(CheckUserInterface)->Unit(benchmark::kMillisecond)->DenseRange(0, 2);

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
