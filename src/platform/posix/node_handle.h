#pragma once

#include <sabxml/node.h>

#include "document_backend.h"

namespace sab::backend {

/// Names an element to a Load method that may be another library's; sabxml/node.h tells what it can
/// do with the handle. Lives no longer than the document.
class NodeHandle {
 public:
  explicit NodeHandle(const Element& element);

  ULONG_PTR Get() const { return reinterpret_cast<ULONG_PTR>(&node_); }

 private:
  VeXmlNode node_;
};

/// The element that a handle names. Raises ComError(E_INVALIDARG) for a handle that this library
/// did not make.
/// @param handle not 0
Element ElementOfHandle(ULONG_PTR handle);

}  // namespace sab::backend
