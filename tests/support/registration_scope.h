#pragma once

#include "config/temporary_folder.h"

namespace sab::testing {

/// The registration that the tests run with. Elsewhere than on Windows it is made in a registry of
/// the tests' own, and gone with it; on Windows the library is registered before the tests start.
class RegistrationScope {
 public:
  RegistrationScope();

 private:
  TemporaryFolder folder_;
};

}  // namespace sab::testing
