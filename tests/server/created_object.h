#pragma once

#include <SabXmlParser.h>
#include <gtest/gtest.h>

#include "base/bstr.h"
#include "base/com_ptr.h"
#include "base/error_info.h"

namespace sab::testing {

/// A new object of a registered class, made the way a host makes it; null and a failed test if the
/// runtime refuses.
template <class Interface>
ComPtr<Interface> Created(REFCLSID clsid) {
  ComPtr<Interface> object;
  EXPECT_EQ(S_OK, CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IdOf<Interface>(),
                                   object.PutVoid()));
  return object;
}

/// What a text getter hands out, as UTF-8; "(null)" for a null string, "(0x…)" for a failure.
template <class Interface>
std::string TextOf(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*getter)(BSTR*)) {
  Bstr text;
  const HRESULT result = (object.*getter)(text.Put());
  if (FAILED(result)) {
    char code[16];
    std::snprintf(code, sizeof code, "(0x%08X)", static_cast<unsigned>(result));
    return code;
  }
  return text.IsNull() ? "(null)" : ToUtf8(text.View());
}

inline std::string TakeErrorDescription() { return TakeErrorInfo(); }

}  // namespace sab::testing
