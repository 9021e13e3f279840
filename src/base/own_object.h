#pragma once

#include <sabxml/com.h>

#include "base/com_ptr.h"

namespace sab {

/// An object of this library answers a query for this identifier with its own interface, also where
/// it is part of an outer object; no other object knows it.
inline constexpr IID kOwnObjectId = {
    0x3C0E6B5D, 0x91F4, 0x4D27, {0xA8, 0x10, 0x6E, 0x5B, 0xC7, 0x42, 0x0D, 0x93}};

/// Whether calls of this interface run in this library. An outer object that hands on every query
/// to an object of this library is told apart by its address.
inline bool IsOwnObject(IDispatch& object) {
  ComPtr<IDispatch> own;
  return SUCCEEDED(object.QueryInterface(kOwnObjectId, own.PutVoid())) && own.Get() == &object;
}

}  // namespace sab
