#pragma once

#include <optional>

#include "base/counted.h"
#include "base/module_lock.h"

namespace sab {

/// Binds names to members as a compiler does: those of one type, or of the whole library.
class TableTypeComp final : public Counted<ITypeComp>, private LiveObject {
 public:
  /// @param type its number in the library; none for the library
  explicit TableTypeComp(std::optional<UINT> type) : type_(type) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    return AnswerFor(IID_ITypeComp, riid, object);
  }

  /// An unknown name is S_OK and DESCKIND_NONE. @return TYPE_E_TYPEMISMATCH for a member that
  /// cannot be used as the flags want it
  HRESULT STDMETHODCALLTYPE Bind(LPOLESTR name, ULONG hash, WORD flags, ITypeInfo** info,
                                 DESCKIND* kind, BINDPTR* bound) override;
  HRESULT STDMETHODCALLTYPE BindType(LPOLESTR name, ULONG hash, ITypeInfo** info,
                                     ITypeComp** comp) override;

 private:
  std::optional<UINT> type_;
};

/// @return E_INVALIDARG; E_OUTOFMEMORY
HRESULT CreateTypeComp(std::optional<UINT> type, ITypeComp** comp);

}  // namespace sab
