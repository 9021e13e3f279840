#pragma once

#include <sabxml/com.h>

/// What a host may offer to the server, so that it can put its own classes in the place of the
/// server's.
///
/// A host that wants to do so loads a library named VeKit ("VeKit.dll"; elsewhere "libVeKit.so" or
/// "VeKit.so") which exports the C++ function
///
///     static BOOL CVeGlobalData::GetCCFL(IUnknown** list);
///
/// under the name that its compiler gives it. The function answers TRUE and hands out the list with
/// a reference that the server releases, or answers FALSE when there is none.

/// The host's class-factory list. It has no interface identifier: it is known by where it comes
/// from.
struct IVeClassFactoryList : public IUnknown {
  /// Creates an object of a class that the host has in its list.
  /// @param clsid the wanted class
  /// @param outer the outer object of an aggregate, or null
  /// @param object receives the new object with a reference that the caller releases
  /// @return a failure lets the server create the object in the usual way
  virtual HRESULT STDMETHODCALLTYPE CreateInstance(REFCLSID clsid, IUnknown* outer,
                                                   IUnknown** object) = 0;
};
