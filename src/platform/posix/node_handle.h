#pragma once

#include <sabxml/node.h>

#include <memory>
#include <unordered_map>

#include "document_backend.h"
#include "platform/live_handle.h"

namespace sab::backend {

/// Names an element to a Load method that may be another library's; sabxml/node.h says what it can
/// do with the handle. Lives no longer than the document.
class NodeHandle final : public LiveHandle {
 public:
  explicit NodeHandle(const Element& element);

  ULONG_PTR Get() const { return HandleOf(node_); }

  /// The handle of a copy of a node, which lives as long as this one. Raises std::bad_alloc.
  ULONG_PTR Forward(const VeXmlNode& node);

 private:
  static ULONG_PTR HandleOf(const VeXmlNode& node) { return reinterpret_cast<ULONG_PTR>(&node); }

  bool Is(ULONG_PTR handle) const noexcept override {
    return handle == Get() || forwarded_.contains(handle);
  }

  VeXmlNode node_;
  std::unordered_map<ULONG_PTR, std::unique_ptr<VeXmlNode>> forwarded_;
};

/// The element that a handle names. Raises ComError(E_INVALIDARG) for a handle that this library
/// did not hand out, or whose call is over.
/// @param handle not 0
Element ElementOfHandle(ULONG_PTR handle);

}  // namespace sab::backend
