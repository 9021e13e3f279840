#pragma once

#include "automation/described_type.h"
#include "base/counted.h"
#include "base/module_lock.h"

namespace sab {

/// The library that the tables describe.
class TableTypeLib final : public Counted<ITypeLib>, private LiveObject {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    return AnswerFor(IID_ITypeLib, riid, object);
  }
  UINT STDMETHODCALLTYPE GetTypeInfoCount() override { return DescribedType::Count(); }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoType(UINT index, TYPEKIND* kind) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoOfGuid(REFGUID guid, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetLibAttr(TLIBATTR** attributes) override;
  HRESULT STDMETHODCALLTYPE GetTypeComp(ITypeComp** comp) override;
  HRESULT STDMETHODCALLTYPE GetDocumentation(INT index, BSTR* name, BSTR* help, DWORD* context,
                                             BSTR* file) override;
  HRESULT STDMETHODCALLTYPE IsName(LPOLESTR name, ULONG hash, BOOL* is_name) override;
  HRESULT STDMETHODCALLTYPE FindName(LPOLESTR name, ULONG hash, ITypeInfo** infos,
                                     MEMBERID* members, USHORT* count) override;
  void STDMETHODCALLTYPE ReleaseTLibAttr(TLIBATTR* attributes) override { delete attributes; }
};

}  // namespace sab
