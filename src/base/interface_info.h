#pragma once

#include <sabxml/com.h>

#include <cstddef>
#include <span>

#include "base/text.h"

namespace sab {

// What the interface definitions say, as tables that the build generates. Dispatch runs over them
// on every platform; where there is no type library, type information does too. Names are
// automation text; help texts are UTF-8.

/// Whether two names are the same; those of the tables are ASCII, letter case does not matter.
inline bool IsSameName(TextView a, TextView b) { return EqualsIgnoringAsciiCase(a, b); }

struct InterfaceInfo;

struct EnumerationValue {
  const OLECHAR* name;
  LONG value;
};

struct EnumerationInfo {
  const OLECHAR* name;
  const GUID* guid;
  const char* help;
  std::span<const EnumerationValue> values;
};

/// Integers as wide as a pointer.
inline constexpr VARTYPE kSignedPointer = sizeof(void*) == 8 ? VT_I8 : VT_I4;
inline constexpr VARTYPE kUnsignedPointer = sizeof(void*) == 8 ? VT_UI8 : VT_UI4;

/// A value's type. VT_USERDEFINED means GUID, the only structure that is passed.
struct ValueType {
  VARTYPE type;                        ///< VT_DISPATCH for interfaces, VT_I4 for enumerations
  bool is_array;                       ///< an array of the type
  const InterfaceInfo* interface_;     ///< which one, for interfaces
  const EnumerationInfo* enumeration;  ///< which one, for enumerations
};

enum ParameterFlags : unsigned { kIn = 1, kOut = 2, kRetval = 4, kOptional = 8 };

struct ParameterInfo {
  const OLECHAR* name;
  ValueType type;
  int pointers;  ///< 1 where the method receives the value's address
  unsigned flags;

  bool IsIn() const { return (flags & kIn) != 0; }
  bool IsOut() const { return (flags & kOut) != 0; }
  bool IsRetval() const { return (flags & kRetval) != 0; }
  bool IsOptional() const { return (flags & kOptional) != 0; }
};

enum class MemberKind { kMethod, kPropertyGet, kPropertyPut };

struct MemberInfo {
  const OLECHAR* name;  ///< of a property without get_ or put_
  DISPID id;
  MemberKind kind;
  std::span<const ParameterInfo> parameters;
  const char* help;
};

/// The place of one argument during a call.
struct Slot {
  union {
    BSTR text;
    VARIANT_BOOL boolean;
    SHORT int16;
    USHORT uint16;
    INT int_;
    LONG int32;
    ULONG uint32;
    LONGLONG int64;
    FLOAT real32;
    DOUBLE real64;
    LONG_PTR position;
    ULONG_PTR count;
    GUID guid;
    void* object;  ///< exactly the interface that the parameter wants
    SAFEARRAY* array;
  };
  bool is_missing;  ///< an optional argument that the caller left out

  void* Place() { return &text; }  ///< of the value, whatever its type
};

struct InterfaceInfo {
  const OLECHAR* name;
  const IID* iid;
  const InterfaceInfo* base;  ///< null for IDispatch
  const char* help;
  std::span<const MemberInfo> members;  ///< its own, in the order of the slots
  /// Calls a member by its index with arguments in the order of its parameters.
  HRESULT (*call)(void* self, std::size_t member, Slot* arguments);
};

struct CoclassInfo {
  const OLECHAR* name;
  const CLSID* clsid;
  const InterfaceInfo* default_interface;
  const char* help;
};

struct LibraryInfo {
  const OLECHAR* name;
  const GUID* guid;
  WORD major_version;
  WORD minor_version;
  LCID locale;
  const char* help;
  std::span<const EnumerationInfo* const> enumerations;
  std::span<const InterfaceInfo* const> interfaces;
  std::span<const CoclassInfo> coclasses;
};

/// The table of an interface; the generated tables specialise it.
template <class Interface>
const InterfaceInfo& InterfaceInfoOf();

/// The whole library that the tables describe.
const LibraryInfo& TheLibrary();

}  // namespace sab
