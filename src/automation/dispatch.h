#pragma once

#include "base/interface_info.h"

namespace sab {

// Late binding over the tables of an interface and of those it derives from. One implementation for
// every platform: a script gets the same answer everywhere, down to the error code.

/// IDispatch::GetIDsOfNames. The first name is a member's, in any letter case, the others are its
/// parameters'. Every unknown name gets DISPID_UNKNOWN, while the others are still found.
HRESULT GetIDsOfNames(const InterfaceInfo& info, REFIID riid, LPOLESTR* names, UINT count,
                      LCID locale, DISPID* ids) noexcept;

/// Hands the thread's error object to the caller of Invoke, who asked for a member that failed with
/// the code.
/// @param exception may be null
/// @return DISP_E_EXCEPTION
HRESULT RaiseFromInvoke(HRESULT code, EXCEPINFO* exception) noexcept;

/// IDispatch::Invoke.
/// @param self the object's pointer to the interface that the table describes
HRESULT Invoke(const InterfaceInfo& info, void* self, DISPID member, REFIID riid, LCID locale,
               WORD flags, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
               UINT* bad_argument) noexcept;

}  // namespace sab
