#pragma once

#include <sabxml/com_ptr.h>

namespace sab {
using sabxml::ComPtr;
using sabxml::IdOf;
}  // namespace sab
