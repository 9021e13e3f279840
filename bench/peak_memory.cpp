// How much memory reading a user-interface file takes at its peak, as a multiple of the file. A
// process of its own for each file: sab_peak_memory FILE

#include <SabXmlParser.h>
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "base/bstr.h"
#include "server_fixture.h"

namespace {

// The most that the process has held so far.
double PeakBytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return 1024.0 * static_cast<double>(usage.ru_maxrss);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: sab_peak_memory FILE\n");
    return EXIT_FAILURE;
  }
  const std::string name = argv[1];
  const auto size = static_cast<double>(std::filesystem::file_size(name));
  CoInitialize(nullptr);
  const sab::ComPtr<IClassFactory> factory = sab::bench::FactoryOf(CLSID_VeUiParser);
  sab::ComPtr<IVeUiParser> parser;
  factory->CreateInstance(nullptr, IID_IVeUiParser, parser.PutVoid());
  parser->put_ConfigurationPath(sab::Bstr(sab::FromUtf8(name)).Get());
  const double before = PeakBytes();
  if (FAILED(parser->GenerateUI())) return EXIT_FAILURE;
  std::printf("%.0f bytes: at the peak %.2f times the file over the empty process (%.1f MB)\n",
              size, (PeakBytes() - before) / size, before / 1e6);
  return EXIT_SUCCESS;
}
