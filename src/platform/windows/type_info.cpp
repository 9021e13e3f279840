#include "platform/type_info.h"

#include <mutex>

#include "base/com_error.h"
#include "base/com_ptr.h"
#include "platform/module_path.h"

namespace sab {
namespace {

// The type library inside this library. It is released when the library is unloaded; the type infos
// that were handed out keep their own references.
class EmbeddedLibrary {
 public:
  HRESULT TypeInfoOf(REFGUID guid, ITypeInfo** info) {
    const std::lock_guard guard(loading_);
    if (!library_) {
      const HRESULT result = LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, library_.Put());
      if (FAILED(result)) return result;
    }
    return library_->GetTypeInfoOfGuid(guid, info);
  }

 private:
  std::mutex loading_;
  ComPtr<ITypeLib> library_;
};

EmbeddedLibrary embedded_library;

HRESULT TypeInfoOf(REFGUID guid, ITypeInfo** info) noexcept {
  try {
    return embedded_library.TypeInfoOf(guid, info);
  } catch (const ComError& error) {
    return error.Code();
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace

HRESULT GetTypeInfo(const InterfaceInfo& interface_, ITypeInfo** info) noexcept {
  return TypeInfoOf(*interface_.iid, info);
}

HRESULT GetClassTypeInfo(REFCLSID clsid, ITypeInfo** info) noexcept {
  return TypeInfoOf(clsid, info);
}

}  // namespace sab
