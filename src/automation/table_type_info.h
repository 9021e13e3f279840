#pragma once

#include "automation/described_type.h"
#include "base/counted.h"
#include "base/module_lock.h"

namespace sab {

/// A member of an interface by its number, those of the interfaces that it derives from first; null
/// after the last one and for other types.
const MemberInfo* MemberOf(UINT type, std::size_t index);

/// Copies of a name and a help text for those places that are not null.
/// @return E_OUTOFMEMORY, with nothing left to free
HRESULT CopyDocumentation(TextView name, const char* help, BSTR* name_out, BSTR* help_out,
                          DWORD* context, BSTR* file);

/// Type information over the generated tables, read-only. What the tables do not know (entry points
/// of libraries, marshalling) answers E_NOTIMPL.
class TableTypeInfo final : public Counted<ITypeInfo>, private LiveObject {
 public:
  explicit TableTypeInfo(UINT index) : index_(index), type_(DescribedType::At(index)) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    return AnswerFor(IID_ITypeInfo, riid, object);
  }
  HRESULT STDMETHODCALLTYPE GetTypeAttr(TYPEATTR** attributes) override;
  HRESULT STDMETHODCALLTYPE GetTypeComp(ITypeComp** comp) override;
  HRESULT STDMETHODCALLTYPE GetFuncDesc(UINT index, FUNCDESC** description) override;
  HRESULT STDMETHODCALLTYPE GetVarDesc(UINT index, VARDESC** description) override;
  HRESULT STDMETHODCALLTYPE GetNames(MEMBERID member, BSTR* names, UINT capacity,
                                     UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetRefTypeOfImplType(UINT index, HREFTYPE* reference) override;
  HRESULT STDMETHODCALLTYPE GetImplTypeFlags(UINT index, INT* flags) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(PVOID, MEMBERID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetDocumentation(MEMBERID member, BSTR* name, BSTR* help,
                                             DWORD* context, BSTR* file) override;
  HRESULT STDMETHODCALLTYPE GetDllEntry(MEMBERID, INVOKEKIND, BSTR*, BSTR*, WORD*) override {
    return TYPE_E_ELEMENTNOTFOUND;
  }
  HRESULT STDMETHODCALLTYPE GetRefTypeInfo(HREFTYPE reference, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE AddressOfMember(MEMBERID, INVOKEKIND, PVOID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID, PVOID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMops(MEMBERID, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetContainingTypeLib(ITypeLib** library, UINT* index) override;
  void STDMETHODCALLTYPE ReleaseTypeAttr(TYPEATTR* attributes) override { delete attributes; }
  void STDMETHODCALLTYPE ReleaseFuncDesc(FUNCDESC* description) override;
  void STDMETHODCALLTYPE ReleaseVarDesc(VARDESC* description) override;

  // As a dispatch interface has them: those of the interfaces that it derives from come first.
  std::size_t MemberCount() const;
  const MemberInfo* MemberAt(std::size_t index) const;  ///< below MemberCount()

 private:
  WORD ImplTypeCount() const;
  const MemberInfo* FindMember(MEMBERID member) const;

  UINT index_;
  DescribedType type_;
};

}  // namespace sab
