#pragma once

#include "object/component.h"

namespace sab {

/// The ground of template, module, environment and command descriptors, whose text getters have
/// manners of their own.
template <class Coclass, class Fields>
class TextGetters : public Component<Coclass, Fields> {
 protected:
  /// Hands out a new string, empty but never null while the value is unset.
  /// @return E_FAIL for a null place, as hosts of these descriptors know it; E_OUTOFMEMORY
  static HRESULT CopyText(const Bstr& text, BSTR* out) noexcept {
    if (!out) return TextGetters::Fail(E_FAIL, "There is no place for the text: it is null.");
    const TextView view = text.View();
    *out = SysAllocStringLen(view.data(), static_cast<UINT>(view.size()));
    return TextGetters::Reported(*out ? S_OK : E_OUTOFMEMORY);
  }
};

}  // namespace sab
