#include <cstdio>
#include <cstdlib>

#include "support/registration_scope.h"
#include "support/server_library.h"

sab::testing::RegistrationScope::RegistrationScope() {
  const std::string file = folder_.Path("registry.reg");
  setenv("SABCOM_REGISTRY", file.c_str(), 1);
  if (SUCCEEDED(Server().Register())) return;
  std::fprintf(stderr, "The server could not be registered in %s.\n", file.c_str());
  std::abort();
}
