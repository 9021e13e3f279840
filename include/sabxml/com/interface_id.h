#pragma once

#include "dispatch.h"
#include "error_info.h"
#include "type_info.h"
#include "unknown.h"

// Identifiers by the type of the interface, which IID_PPV_ARGS needs.

namespace sabxml {

template <class Interface>
struct InterfaceId;

template <>
struct InterfaceId<IUnknown> {
  static constexpr const IID& value = IID_IUnknown;
};
template <>
struct InterfaceId<IClassFactory> {
  static constexpr const IID& value = IID_IClassFactory;
};
template <>
struct InterfaceId<IDispatch> {
  static constexpr const IID& value = IID_IDispatch;
};
template <>
struct InterfaceId<IEnumVARIANT> {
  static constexpr const IID& value = IID_IEnumVARIANT;
};
template <>
struct InterfaceId<ISupportErrorInfo> {
  static constexpr const IID& value = IID_ISupportErrorInfo;
};
template <>
struct InterfaceId<IProvideClassInfo> {
  static constexpr const IID& value = IID_IProvideClassInfo;
};

template <class Interface>
const IID& InterfaceIdOf(Interface**) {
  return InterfaceId<Interface>::value;
}
template <class Interface>
void** UntypedPlace(Interface** place) {
  static_cast<void>(static_cast<IUnknown*>(*place));  // nothing but an interface
  return reinterpret_cast<void**>(place);
}

}  // namespace sabxml

/// The last two arguments of CoCreateInstance, QueryInterface and their kin, from the address of
/// the pointer that is to be filled.
#define IID_PPV_ARGS(place) ::sabxml::InterfaceIdOf(place), ::sabxml::UntypedPlace(place)
