#include "support/registration_scope.h"

sab::testing::RegistrationScope::RegistrationScope() = default;
