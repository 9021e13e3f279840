#pragma once

#include <sabxml/com.h>

#include "automation/dispatch.h"
#include "object/error_edge.h"

namespace sab {

// What the objects of all classes do alike, once for all of them.

/// What is different from class to class there.
struct ClassFacts {
  ErrorOrigin origin;
  const InterfaceInfo& (*interface_info)();
  const CLSID* clsid;  ///< in the type library
};

/// Makes objects of a class, which raises std::bad_alloc. What is returned is counted for the
/// caller.
struct ObjectMaker {
  IUnknown* (*make)();
  IUnknown* (*make_part)(IUnknown* outer);  ///< returns the identity that the outer object owns
};

/// Creates an object of the class, alone or as part of an outer object.
/// @return E_POINTER without a place for the result; CLASS_E_NOAGGREGATION when an outer object
///         asks for anything but IUnknown; E_NOINTERFACE; E_OUTOFMEMORY
HRESULT CreateWith(const ObjectMaker& maker, const ErrorOrigin& origin, IUnknown* outer,
                   REFIID riid, void** object) noexcept;

/// The interfaces that every object has, and its own with those that it derives from. Adds a
/// reference to what it hands out. @return E_NOINTERFACE for others
HRESULT QueryCommonInterface(const ClassFacts& facts, IDispatch* self, REFIID riid,
                             void** object) noexcept;

/// IDispatch::GetTypeInfoCount
HRESULT CountTypeInfos(const ClassFacts& facts, UINT* count) noexcept;
/// IDispatch::GetTypeInfo
HRESULT HandOutTypeInfo(const ClassFacts& facts, UINT index, ITypeInfo** info) noexcept;

}  // namespace sab
