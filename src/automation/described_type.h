#pragma once

#include <optional>

#include "base/interface_info.h"
#include "base/text.h"

namespace sab {

/// A type of the system's own library that this one refers to.
struct ForeignType {
  const OLECHAR* name;
  GUID guid;
  TYPEKIND kind;
};

/// One type of the library: an enumeration, an interface or a class. Their numbers in the library
/// run in that order; the types of other libraries that it refers to follow.
struct DescribedType {
  const EnumerationInfo* enumeration = nullptr;
  const InterfaceInfo* interface_ = nullptr;
  const CoclassInfo* coclass = nullptr;
  const ForeignType* foreign = nullptr;

  static UINT Count();                  ///< of the library's own
  static UINT CountReferred();          ///< with those of others
  static DescribedType At(UINT index);  ///< below CountReferred()
  static UINT IndexOf(const InterfaceInfo* interface_);
  static UINT IndexOf(const EnumerationInfo* enumeration);

  // Of other libraries.
  static UINT IndexOfDispatch();
  static UINT IndexOfGuid();
  static UINT IndexOfDispParams();
  static UINT IndexOfExcepInfo();

  TYPEKIND Kind() const;
  const OLECHAR* Name() const;
  const char* Help() const;
  GUID Guid() const;
};

}  // namespace sab
