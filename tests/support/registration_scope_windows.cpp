#include "support/registration_scope.h"

namespace sab::testing {

RegistrationScope::RegistrationScope() = default;

RegistrationScope::~RegistrationScope() = default;

}  // namespace sab::testing
