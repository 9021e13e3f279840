#pragma once

#include <sabxml/com.h>

#include <string>

#include "sabcom/threads.h"

namespace sabcom {

/// Loads the library of an in-process server, which is kept, and asks it for a class object.
/// @return CO_E_DLLNOTFOUND and CO_E_ERRORINDLL with the loader's reason in the error object
HRESULT GetClassObject(const std::u16string& path, REFCLSID clsid, REFIID riid, void** object);

/// Unloads every library that says it is not in use, if no other thread is inside the runtime.
void FreeUnusedModules() noexcept;

}  // namespace sabcom
