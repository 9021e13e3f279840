// Measures the server as a host meets it: registered, created by the component runtime, with the
// allocator as it is by default.
//
//   sab_bench [--once] [options of Google Benchmark]
//
// --once measures each row of user_interface.cpp one time, for a fresh process per row.

#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <sabxml/com.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

void RegisterUserInterfaceRows(bool only_once);

namespace {

// Enters the server in a registry of this process alone. Another process does it, so that this one
// loads the library when it creates its first object.
bool RegisterServer(const std::string& registry) {
  setenv("SABCOM_REGISTRY", registry.c_str(), 1);
  const pid_t child = fork();
  if (child == 0) {
    void* const library = dlopen(SAB_BENCH_SERVER, RTLD_NOW);
    auto* const register_server =
        library ? reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(dlsym(library, "DllRegisterServer"))
                : nullptr;
    _exit(register_server && SUCCEEDED(register_server()) ? 0 : 1);
  }
  int status = 1;
  return waitpid(child, &status, 0) == child && status == 0;
}

}  // namespace

int main(int argc, char** argv) {
  const bool only_once = argc > 1 && std::string_view(argv[1]) == "--once";
  if (only_once) {
    argv[1] = argv[0];
    ++argv;
    --argc;
  }
  std::string registry;
  if (!std::getenv("SABCOM_REGISTRY")) {
    registry =
        std::filesystem::temp_directory_path() / ("sab-bench-" + std::to_string(getpid()) + ".reg");
    if (!RegisterServer(registry)) {
      std::fprintf(stderr, "%s could not be registered\n", SAB_BENCH_SERVER);
      return EXIT_FAILURE;
    }
  }
  CoInitialize(nullptr);
  RegisterUserInterfaceRows(only_once);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return EXIT_FAILURE;
  benchmark::RunSpecifiedBenchmarks();
  if (!registry.empty()) std::filesystem::remove(registry);
  return EXIT_SUCCESS;
}
