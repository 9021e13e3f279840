#include <sabxml/com.h>

#include "config/wine.h"

bool sab::RunsUnderWine() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}
