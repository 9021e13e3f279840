#include "platform/node_handle.h"

#include "base/own_object.h"

namespace sab {
namespace {

// A plain pointer: the thread may outlive the library.
thread_local NodeHandle* innermost = nullptr;

}  // namespace

NodeHandle::NodeHandle(ElementPlace element) : element_(element), outer_(innermost) {
  innermost = this;
}

NodeHandle::~NodeHandle() { innermost = outer_; }

ULONG_PTR NodeHandle::For(IDispatch& receiver) {
  return IsOwnObject(receiver) ? reinterpret_cast<ULONG_PTR>(this) : Issue(element_);
}

ULONG_PTR NodeHandle::Issue(ElementPlace element) {
  ForeignNode node = MakeForeignNode(element);
  issued_.emplace(node.handle, Issued{element, std::move(node.object)});
  return node.handle;
}

NodeHandle* NodeHandle::Innermost() { return innermost; }

std::optional<ElementPlace> NodeHandle::Find(ULONG_PTR handle) noexcept {
  for (const NodeHandle* live = innermost; live; live = live->outer_) {
    if (reinterpret_cast<ULONG_PTR>(live) == handle) return live->element_;
    const auto issued = live->issued_.find(handle);
    if (issued != live->issued_.end()) return issued->second.element;
  }
  return std::nullopt;
}

HandedElement::HandedElement(ULONG_PTR handle) {
  if (const auto live = NodeHandle::Find(handle)) {
    place_ = *live;
  } else {
    own_ = ReadForeignNode(handle, place_);
  }
}

}  // namespace sab
