#include "platform/type_library_registration.h"

namespace sab {

HRESULT RegisterTypeLibraryOf(const Text&, RegistrationScope) noexcept { return S_OK; }

HRESULT UnregisterTypeLibraryOf(const Text&, RegistrationScope) noexcept { return S_OK; }

}  // namespace sab
