#pragma once

#include "document_backend.h"

namespace sab::backend {

/// Names an element to a Load method that may be another library's: it is the DOM's own node.
class NodeHandle {
 public:
  explicit NodeHandle(const Element& element) : node_(element.Node()) {}

  ULONG_PTR Get() const { return reinterpret_cast<ULONG_PTR>(node_.Get()); }

 private:
  ComPtr<IXMLDOMNode> node_;
};

/// The element that a handle names. It can only be read.
/// @param handle not 0
inline Element ElementOfHandle(ULONG_PTR handle) {
  return {nullptr, ComPtr<IXMLDOMNode>(reinterpret_cast<IXMLDOMNode*>(handle))};
}

}  // namespace sab::backend
