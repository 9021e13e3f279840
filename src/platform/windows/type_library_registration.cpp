#include "platform/type_library_registration.h"

#include "base/bstr.h"
#include "base/com_ptr.h"

namespace sab {

HRESULT RegisterTypeLibraryOf(const Text& module) noexcept {
  ComPtr<ITypeLib> library;
  const HRESULT result = LoadTypeLibEx(module.c_str(), REGKIND_NONE, library.Put());
  return SUCCEEDED(result) ? RegisterTypeLib(library.Get(), Text(module).data(), nullptr) : result;
}

HRESULT UnregisterTypeLibraryOf(const Text& module) noexcept {
  ComPtr<ITypeLib> library;
  HRESULT result = LoadTypeLibEx(module.c_str(), REGKIND_NONE, library.Put());
  if (FAILED(result)) return result;
  TLIBATTR* attributes = nullptr;
  result = library->GetLibAttr(&attributes);
  if (FAILED(result)) return result;
  // Systems differ in the code for a type library that is not registered, so that is asked first.
  Bstr path;
  if (SUCCEEDED(QueryPathOfRegTypeLib(attributes->guid, attributes->wMajorVerNum,
                                      attributes->wMinorVerNum, attributes->lcid, path.Put()))) {
    result = UnRegisterTypeLib(attributes->guid, attributes->wMajorVerNum, attributes->wMinorVerNum,
                               attributes->lcid, attributes->syskind);
  }
  library->ReleaseTLibAttr(attributes);
  return result;
}

}  // namespace sab
