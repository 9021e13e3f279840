#include "cli/trace.h"

#include <iostream>

#include "cli/display_text.h"

namespace sabxml::cli {
namespace {

bool& IsTracing() {
  static bool is_tracing = false;
  return is_tracing;
}

}  // namespace

void StartTracing() { IsTracing() = true; }

void Trace(const std::string& line) {
  if (!IsTracing()) return;
  std::cout.flush();
  std::cerr << "sabxml: " << AsMessage(line) << '\n';
}

}  // namespace sabxml::cli
