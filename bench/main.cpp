#include <benchmark/benchmark.h>
#include <malloc.h>

int main(int argc, char** argv) {
  // Memory that was freed stays with the process, for every library alike: else each one pays for
  // fresh pages at moments that depend on what ran before it.
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
