#pragma once

#include <sabxml/com.h>

namespace sab {

/// Asks the host's support library, if it is in the process already, for the class-factory list.
/// @return the list with a reference that the caller releases, or null
IUnknown* HostClassFactoryList() noexcept;

}  // namespace sab
