#include "node_handle.h"

#include <new>

#include "base/bstr.h"
#include "base/com_error.h"

namespace sab::backend {
namespace {

Element ElementOf(const VeXmlNode& node) {
  return {static_cast<Document*>(node.document), static_cast<xml::NodeIndex>(node.place)};
}

VeXmlNode NodeOf(const Element& element);

template <TextView (Element::*read)(Text&) const>
HRESULT GetTextOf(const VeXmlNode* node, BSTR* out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  try {
    Text scratch;
    *out = Bstr((ElementOf(*node).*read)(scratch)).Detach();
    return S_OK;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

HRESULT CopyElement(const Element& element, VeXmlNode* out) {
  if (!out) return E_POINTER;
  if (!element) return S_FALSE;
  *out = NodeOf(element);
  return S_OK;
}

constexpr VeXmlNodeFunctions kFunctions = {
    &GetTextOf<&Element::ReadLocalName>,
    &GetTextOf<&Element::ReadText>,
    [](const VeXmlNode* node, VeXmlNode* child) {
      return CopyElement(ElementOf(*node).FirstChild(), child);
    },
    [](const VeXmlNode* node, VeXmlNode* sibling) {
      Element element = ElementOf(*node);
      element.MoveToNextSibling();
      return CopyElement(element, sibling);
    },
    [](const VeXmlNode* node) -> ULONG_PTR {
      auto* const call = static_cast<NodeHandle*>(LiveHandle::Innermost());
      if (!call) return 0;
      try {
        return call->Forward(*node);
      } catch (const std::bad_alloc&) {
        return 0;
      }
    },
};

VeXmlNode NodeOf(const Element& element) {
  return {&kFunctions, element.OwningDocument(), element.Index()};
}

}  // namespace

NodeHandle::NodeHandle(const Element& element) : node_(NodeOf(element)) {}

ULONG_PTR NodeHandle::Forward(const VeXmlNode& node) {
  auto copy = std::make_unique<VeXmlNode>(node);
  const ULONG_PTR handle = HandleOf(*copy);
  forwarded_.emplace(handle, std::move(copy));
  return handle;
}

Element ElementOfHandle(ULONG_PTR handle) {
  if (!LiveHandle::IsLive(handle)) {
    throw ComError(E_INVALIDARG,
                   "The handle of a node is none that this server has handed out, or the call that "
                   "it was handed to is over.");
  }
  return ElementOf(*reinterpret_cast<const VeXmlNode*>(handle));
}

}  // namespace sab::backend
