#include "common/string_list.h"

namespace sab {

HRESULT StringList::CopyTo(SAFEARRAY** out) const noexcept {
  if (!out) return E_POINTER;
  *out = nullptr;
  SAFEARRAY* const array = SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(texts_.size()));
  if (!array) return E_OUTOFMEMORY;
  for (LONG i = 0; i < static_cast<LONG>(texts_.size()); ++i) {
    const HRESULT result =
        SafeArrayPutElement(array, &i, texts_[static_cast<std::size_t>(i)].Get());
    if (FAILED(result)) {
      SafeArrayDestroy(array);
      return result;
    }
  }
  *out = array;
  return S_OK;
}

}  // namespace sab
