#pragma once

#include <sabxml/com.h>

namespace sab::testing {

/// The class of the library ThirdPartyRevision. Its Revision tells all that it could read when it
/// was loaded: the standard that it was attached to, then every element with its text or with what
/// stands in it. An element that has <Refuse/> first is refused with E_ACCESSDENIED.
inline constexpr CLSID kThirdPartyRevision = {
    0x3C7E0E55, 0x64B1, 0x4D0C, {0x8E, 0x2F, 0x17, 0xA4, 0x5B, 0x90, 0xC6, 0x3D}};

}  // namespace sab::testing
