#pragma once

#include <sabxml/com.h>

/// The names of the styles of one type that are retained, as IVeSysParameterCfgParser hands them
/// out and takes them. The handle of GetRetainStyleInfo is the address of one: it belongs to the
/// parser, is read in place, and holds until the parser loads, is given other names, or is
/// released. The handle of SetRetainStyleInfo is the address of the caller's own, which is copied.
struct VeRetainStyleInfo {
  ULONG count;
  BSTR* names;  ///< as many as count says; none of them null
};
