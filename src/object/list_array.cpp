#include "object/list_array.h"

namespace sab {
namespace {

void* Address(const Bstr& element) { return element.Get(); }
void* Address(const INT& element) { return const_cast<INT*>(&element); }
void* Address(const ULONG& element) { return const_cast<ULONG*>(&element); }

template <class Element>
HRESULT Copy(const std::vector<Element>& list, VARTYPE type, SAFEARRAY** out) noexcept {
  if (!out) return E_POINTER;
  *out = nullptr;
  SAFEARRAY* const array = SafeArrayCreateVector(type, 0, static_cast<ULONG>(list.size()));
  if (!array) return E_OUTOFMEMORY;
  LONG index = 0;
  for (const Element& element : list) {
    const HRESULT result = SafeArrayPutElement(array, &index, Address(element));
    if (FAILED(result)) {
      SafeArrayDestroy(array);
      return result;
    }
    ++index;
  }
  *out = array;
  return S_OK;
}

}  // namespace

HRESULT GetField(const std::vector<Bstr>& list, SAFEARRAY** out) noexcept {
  return Copy(list, VT_BSTR, out);
}
HRESULT GetField(const std::vector<INT>& list, SAFEARRAY** out) noexcept {
  return Copy(list, VT_INT, out);
}
HRESULT GetField(const std::vector<ULONG>& list, SAFEARRAY** out) noexcept {
  return Copy(list, VT_UI4, out);
}

}  // namespace sab
