#pragma once

#include <sabxml/com.h>

/// The class identifier under which VeCustomPTParser is registered. The one that the type library
/// has for the class is not registered; DllGetClassObject answers to both.
inline constexpr CLSID CLSID_VeCustomPTParserRegistered = {
    0x070F4336, 0xA2EF, 0x46B7, {0xA8, 0xFC, 0xD0, 0xB9, 0x84, 0xA6, 0x79, 0x16}};
