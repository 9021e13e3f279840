// How much memory reading a user-interface file takes, as multiples of the file: at its peak, after
// the release, and after a second load and release. A process of its own for each file:
// sab_peak_memory FILE

#include <SabXmlParser.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "base/bstr.h"
#include "base/com_ptr.h"

// The program links the server library, as a host may that wants no registration.
STDAPI DllGetClassObject(REFCLSID rclsid, REFIID riid, void** ppv);

namespace {

// The most that the process has held so far, and what it holds, in bytes.
double PeakBytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return 1024.0 * static_cast<double>(usage.ru_maxrss);
}
double HeldBytes() {
  long pages = 0;
  long held = 0;
  std::ifstream("/proc/self/statm") >> pages >> held;
  return static_cast<double>(held) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

bool LoadAndRelease(const std::string& name) {
  sab::ComPtr<IClassFactory> factory;
  DllGetClassObject(CLSID_VeUiParser, IID_IClassFactory, factory.PutVoid());
  sab::ComPtr<IVeUiParser> parser;
  factory->CreateInstance(nullptr, IID_IVeUiParser, parser.PutVoid());
  parser->put_ConfigurationPath(sab::Bstr(sab::FromUtf8(name)).Get());
  return SUCCEEDED(parser->GenerateUI());
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
  const double before = HeldBytes();
  if (!LoadAndRelease(name)) return EXIT_FAILURE;
  const double peak = PeakBytes();
  const double after = HeldBytes();
  if (!LoadAndRelease(name)) return EXIT_FAILURE;
  std::printf(
      "%.0f bytes, over the empty process of %.1f MB: peak %.2f times the file, after the release "
      "%.2f, second peak %.2f, after its release %.2f\n",
      size, before / 1e6, (peak - before) / size, (after - before) / size,
      (PeakBytes() - before) / size, (HeldBytes() - before) / size);
  return EXIT_SUCCESS;
}
