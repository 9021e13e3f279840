#include "standards/catalogue_loading.h"

#include "base/com_error.h"
#include "object/error_edge.h"

namespace sab {

CatalogueLoading::CatalogueLoading() {
  if (!ComponentCreator::Current()) own_.emplace();
}

HandedElement ElementToLoad(const Address& node) {
  if (node.value == 0) {
    throw ComError(kInvalidCatalogue, std::string(node.class_name) +
                                          " was given no element to load: hand it the handle of "
                                          "the node that its parser reads.");
  }
  if (node.is_from_script && !NodeHandle::Find(node.value)) {
    throw ComError(E_INVALIDARG, std::string(node.class_name) +
                                     " was given a number that is no handle of an element; only "
                                     "the parser of its owner can load it.");
  }
  return HandedElement(node.value);
}

void CheckLoaded(HRESULT result, const std::string& what) {
  if (SUCCEEDED(result)) return;
  if (result == E_OUTOFMEMORY) throw std::bad_alloc();
  throw ComError(result, what + ": " + TakeErrorDescription(result));
}

}  // namespace sab
