#include "standards/catalogue_loading.h"

#include <cstdio>

#include "base/bstr.h"
#include "base/com_error.h"

namespace sab {
namespace {

// What the thread's error object says, which is taken.
std::string TakeDescription() {
  ComPtr<IErrorInfo> info;
  Bstr description;
  if (GetErrorInfo(0, info.Put()) != S_OK || FAILED(info->GetDescription(description.Put()))) {
    return {};
  }
  return ToUtf8(description.View());
}

}  // namespace

CatalogueLoading::CatalogueLoading() {
  if (!ComponentCreator::Current()) own_.emplace();
}

ConfigElement ElementToLoad(ULONG_PTR handle, const char* class_name) {
  if (handle == 0) {
    throw ComError(kInvalidCatalogue, std::string(class_name) +
                                          " was given no element to load: hand it the handle of "
                                          "the node that its parser reads.");
  }
  return ConfigElement::OfHandle(handle);
}

void CheckLoaded(HRESULT result, const std::string& what) {
  if (SUCCEEDED(result)) return;
  if (result == E_OUTOFMEMORY) throw std::bad_alloc();
  std::string why = TakeDescription();
  if (why.empty()) {
    char code[16];
    std::snprintf(code, sizeof code, "0x%08X", static_cast<unsigned>(result));
    why = std::string("its parser failed with ") + code + ".";
  }
  throw ComError(result, what + ": " + why);
}

}  // namespace sab
