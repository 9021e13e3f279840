#pragma once

#include "document_backend.h"
#include "platform/live_handle.h"

namespace sab::backend {

/// Names an element to a Load method that may be another library's: it is the DOM's own node.
class NodeHandle final : public LiveHandle {
 public:
  explicit NodeHandle(const Element& element) : node_(element.Node()) {}

  ULONG_PTR Get() const { return reinterpret_cast<ULONG_PTR>(node_.Get()); }

 private:
  bool Is(ULONG_PTR handle) const noexcept override { return handle == Get(); }

  ComPtr<IXMLDOMNode> node_;
};

/// The element that a handle names. It can only be read. Raises ComError(E_INVALIDARG) for a number
/// that is the address of no DOM node, as far as that can be detected: a host may pass nodes of its
/// own.
/// @param handle not 0
Element ElementOfHandle(ULONG_PTR handle);

}  // namespace sab::backend
