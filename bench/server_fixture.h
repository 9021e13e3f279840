#pragma once

#include <sabxml/com.h>

#include "base/com_ptr.h"

// The benchmarks link the server library, as a host may that wants no registration.
STDAPI DllGetClassObject(REFCLSID rclsid, REFIID riid, void** ppv);

namespace sab::bench {

inline ComPtr<IClassFactory> FactoryOf(REFCLSID clsid) {
  ComPtr<IClassFactory> factory;
  DllGetClassObject(clsid, IID_IClassFactory, factory.PutVoid());
  return factory;
}

}  // namespace sab::bench
