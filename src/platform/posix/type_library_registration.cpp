#include "platform/type_library_registration.h"

namespace sab {

HRESULT RegisterTypeLibraryOf(const Text&) noexcept { return S_OK; }

HRESULT UnregisterTypeLibraryOf(const Text&) noexcept { return S_OK; }

}  // namespace sab
