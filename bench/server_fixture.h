#pragma once

#include <sabxml/com.h>

#include "base/com_ptr.h"

namespace sab::bench {

inline ComPtr<IClassFactory> FactoryOf(REFCLSID clsid) {
  ComPtr<IClassFactory> factory;
  CoGetClassObject(clsid, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, factory.PutVoid());
  return factory;
}

/// A new object of a registered class.
template <class Interface>
ComPtr<Interface> Created(REFCLSID clsid) {
  ComPtr<Interface> object;
  CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IdOf<Interface>(), object.PutVoid());
  return object;
}

}  // namespace sab::bench
