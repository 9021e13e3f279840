#pragma once

#include <cstdlib>
#include <string>

#include "config/temporary_folder.h"

namespace sab::testing {

/// A registry of a test's own in an empty folder, for as long as this lives.
class ScratchRegistry {
 public:
  ScratchRegistry() : before_(std::getenv("SABCOM_REGISTRY")) { Use("registry.reg"); }
  ~ScratchRegistry() { setenv("SABCOM_REGISTRY", before_.c_str(), 1); }

  void Use(const std::string& name) const {
    setenv("SABCOM_REGISTRY", folder.Path(name).c_str(), 1);
  }

  TemporaryFolder folder;

 private:
  std::string before_;
};

}  // namespace sab::testing
