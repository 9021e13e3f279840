#include "platform/node_handle.h"

#include <sabxml/node.h>

#include "base/bstr.h"
#include "base/com_error.h"

namespace sab {
namespace {

ElementPlace PlaceOf(const VeXmlNode& node) {
  return {static_cast<OpenDocument*>(node.document), static_cast<xml::NodeIndex>(node.place)};
}

const xml::Document& XmlOf(const VeXmlNode& node) { return PlaceOf(node).document->xml; }

VeXmlNode NodeOf(ElementPlace element);

// Runs what may lack memory.
template <class Read>
HRESULT GetText(BSTR* out, const Read& read) {
  if (!out) return E_POINTER;
  *out = nullptr;
  try {
    *out = Bstr(read()).Detach();
    return S_OK;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

HRESULT CopyElement(const VeXmlNode& from, xml::NodeIndex element, VeXmlNode* out) {
  if (!out) return E_POINTER;
  if (element == xml::kNoNode) return S_FALSE;
  *out = NodeOf({PlaceOf(from).document, element});
  return S_OK;
}

constexpr VeXmlNodeFunctions kFunctions = {
    [](const VeXmlNode* node, BSTR* name) {
      return GetText(name,
                     [node] { return FromUtf8(XmlOf(*node).LocalNameOf(PlaceOf(*node).node)); });
    },
    [](const VeXmlNode* node, BSTR* out) {
      return GetText(out, [node] {
        Text text;
        XmlOf(*node).AppendText(PlaceOf(*node).node, text);
        return text;
      });
    },
    [](const VeXmlNode* node, VeXmlNode* child) {
      return CopyElement(*node, XmlOf(*node).FirstChildElement(PlaceOf(*node).node), child);
    },
    [](const VeXmlNode* node, VeXmlNode* sibling) {
      return CopyElement(*node, XmlOf(*node).NextElement(PlaceOf(*node).node), sibling);
    },
    [](const VeXmlNode* node) -> ULONG_PTR {
      NodeHandle* const call = NodeHandle::Innermost();
      if (!call) return 0;
      try {
        return call->Issue(PlaceOf(*node));
      } catch (const std::bad_alloc&) {
        return 0;
      }
    },
};

VeXmlNode NodeOf(ElementPlace element) { return {&kFunctions, element.document, element.node}; }

}  // namespace

ForeignNode MakeForeignNode(ElementPlace element) {
  auto node = std::make_shared<VeXmlNode>(NodeOf(element));
  const auto handle = reinterpret_cast<ULONG_PTR>(node.get());
  return {handle, std::move(node)};
}

std::unique_ptr<OpenDocument> ReadForeignNode(ULONG_PTR, ElementPlace&) {
  throw ComError(E_INVALIDARG,
                 "The handle of a node is none that this server has handed out, or the call that "
                 "it was handed to is over.");
}

}  // namespace sab
