#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/registration_scope.h"
#include "support/server_library.h"

namespace sab::testing {
namespace {

std::string folder;

}  // namespace

RegistrationScope::RegistrationScope() {
  std::string name = (std::filesystem::temp_directory_path() / "sab-registry-XXXXXX").string();
  folder = mkdtemp(name.data());
  setenv("SABCOM_REGISTRY", (folder + "/registry.reg").c_str(), 1);
  if (FAILED(Server().Register())) {
    std::fprintf(stderr, "The server could not be registered in %s.\n", folder.c_str());
    std::abort();
  }
}

RegistrationScope::~RegistrationScope() {
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
}

}  // namespace sab::testing
