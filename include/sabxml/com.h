#pragma once

/// The component runtime: the Windows SDK's headers there, this project's own runtime elsewhere.
/// The names, constants, results and binary layouts are the same, so that one client source serves
/// both. Only wide literals differ; write them with OLESTR().

#if defined(_WIN32)

#include <windows.h>
// What follows builds on windows.h.
#include <ole2.h>
#include <oleauto.h>
#include <olectl.h>

#else

#include "com/bstr.h"
#include "com/dispatch.h"
#include "com/error_info.h"
#include "com/guid.h"
#include "com/interface_id.h"
#include "com/registry.h"
#include "com/result.h"
#include "com/runtime.h"
#include "com/safearray.h"
#include "com/type_info.h"
#include "com/types.h"
#include "com/unknown.h"
#include "com/variant.h"

#endif
