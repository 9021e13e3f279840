#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/com_ptr.h"
#include "base/counted.h"
#include "base/interface_info.h"
#include "base/text.h"

namespace sab {

/// Whether two names are the same in letters of any case.
bool IsSameName(TextView a, TextView b);

/// One type of the library: an enumeration, an interface or a class. Their numbers in the library
/// run in that order.
struct DescribedType {
  const EnumerationInfo* enumeration = nullptr;
  const InterfaceInfo* interface_ = nullptr;
  const CoclassInfo* coclass = nullptr;

  static UINT Count();
  static DescribedType At(UINT index);
  static UINT IndexOf(const InterfaceInfo* interface_);
  static UINT IndexOf(const EnumerationInfo* enumeration);

  TYPEKIND Kind() const;
  const OLECHAR* Name() const;
  const char* Help() const;
  const GUID& Guid() const;
};

/// A member of an interface by its number, those of the interfaces that it derives from first; null
/// behind the last one and for other types.
const MemberInfo* MemberOf(UINT type, std::size_t index);
INVOKEKIND InvokeKindOf(const MemberInfo& member);

/// Type information over the generated tables, read-only. What the tables do not know (entry points
/// of libraries, marshalling) answers E_NOTIMPL.
class TableTypeInfo final : public Counted<ITypeInfo> {
 public:
  explicit TableTypeInfo(UINT index) : index_(index), type_(DescribedType::At(index)) {}

  // clang-format off
  HRESULT QueryInterface(REFIID riid, void** object) override { return AnswerFor(IID_ITypeInfo, riid, object); }
  HRESULT GetTypeAttr(TYPEATTR** attributes) override;
  HRESULT GetTypeComp(ITypeComp** comp) override;
  HRESULT GetFuncDesc(UINT index, FUNCDESC** description) override;
  HRESULT GetVarDesc(UINT index, VARDESC** description) override;
  HRESULT GetNames(MEMBERID member, BSTR* names, UINT capacity, UINT* count) override;
  HRESULT GetRefTypeOfImplType(UINT index, HREFTYPE* reference) override;
  HRESULT GetImplTypeFlags(UINT index, INT* flags) override;
  HRESULT GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* ids) override;
  HRESULT Invoke(PVOID, MEMBERID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }
  HRESULT GetDocumentation(MEMBERID member, BSTR* name, BSTR* help, DWORD* context, BSTR* file) override;
  HRESULT GetDllEntry(MEMBERID, INVOKEKIND, BSTR*, BSTR*, WORD*) override { return TYPE_E_ELEMENTNOTFOUND; }
  HRESULT GetRefTypeInfo(HREFTYPE reference, ITypeInfo** info) override;
  HRESULT AddressOfMember(MEMBERID, INVOKEKIND, PVOID*) override { return E_NOTIMPL; }
  HRESULT CreateInstance(IUnknown*, REFIID, PVOID*) override { return E_NOTIMPL; }
  HRESULT GetMops(MEMBERID, BSTR*) override { return E_NOTIMPL; }
  HRESULT GetContainingTypeLib(ITypeLib** library, UINT* index) override;
  void ReleaseTypeAttr(TYPEATTR* attributes) override { delete attributes; }
  void ReleaseFuncDesc(FUNCDESC* description) override;
  void ReleaseVarDesc(VARDESC* description) override;
  // clang-format on

  // As a dispatch interface has them: those of the interfaces that it derives from come first.
  std::size_t MemberCount() const;
  const MemberInfo* MemberAt(std::size_t index) const;  ///< below MemberCount()

 private:
  const MemberInfo* FindMember(MEMBERID member) const;

  UINT index_;
  DescribedType type_;
};

/// The library that the tables describe.
class TableTypeLib final : public Counted<ITypeLib> {
 public:
  // clang-format off
  HRESULT QueryInterface(REFIID riid, void** object) override { return AnswerFor(IID_ITypeLib, riid, object); }
  UINT GetTypeInfoCount() override { return DescribedType::Count(); }
  HRESULT GetTypeInfo(UINT index, ITypeInfo** info) override;
  HRESULT GetTypeInfoType(UINT index, TYPEKIND* kind) override;
  HRESULT GetTypeInfoOfGuid(REFGUID guid, ITypeInfo** info) override;
  HRESULT GetLibAttr(TLIBATTR** attributes) override;
  HRESULT GetTypeComp(ITypeComp** comp) override;
  HRESULT GetDocumentation(INT index, BSTR* name, BSTR* help, DWORD* context, BSTR* file) override;
  HRESULT IsName(LPOLESTR name, ULONG hash, BOOL* is_name) override;
  HRESULT FindName(LPOLESTR name, ULONG hash, ITypeInfo** infos, MEMBERID* members, USHORT* count) override;
  void ReleaseTLibAttr(TLIBATTR* attributes) override { delete attributes; }
  // clang-format on
};

}  // namespace sab
