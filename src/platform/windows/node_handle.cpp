// Other libraries read elements through MSXML 6. It loads the text of a document when the first of
// its elements is given away.

#include "platform/node_handle.h"

#include <msxml2.h>

#include "base/bstr.h"
#include "base/com_error.h"
#include "base/com_ptr.h"
#include "xml/characters.h"
#include "xml/error.h"

namespace sab {
namespace {

using DomNode = ComPtr<IXMLDOMNode>;
using NodeStep = HRESULT (STDMETHODCALLTYPE IXMLDOMNode::*)(IXMLDOMNode**);

// The identifier of DOMDocument60, which the headers of mingw-w64 lack.
constexpr CLSID kDomDocument60 = {
    0x88d96a05, 0xf192, 0x11d4, {0xa6, 0x5f, 0x00, 0x40, 0x96, 0x32, 0x51, 0xe5}};

bool IsElement(const DomNode& node) {
  DOMNodeType type = NODE_INVALID;
  return node && SUCCEEDED(node->get_nodeType(&type)) && type == NODE_ELEMENT;
}

DomNode After(const DomNode& node, NodeStep step) {
  DomNode found;
  Check((node.Get()->*step)(found.Put()), "MSXML does not give a node.");
  return found;
}

DomNode ElementAfter(const DomNode& node, NodeStep step) {
  DomNode found = After(node, step);
  while (found && !IsElement(found)) found = After(found, &IXMLDOMNode::get_nextSibling);
  return found;
}

std::string MarkupOf(const DomNode& node) {
  Bstr markup;
  Check(node->get_xml(markup.Put()), "MSXML does not give the text of a node.");
  std::string text = ToUtf8(markup.View());
  while (!text.empty() && static_cast<unsigned char>(text.back()) <= ' ') text.pop_back();
  return text;
}

// The elements of a document as MSXML has them, found by their places.
class DomView {
 public:
  /// @param top element of the document
  /// @param node the same element
  DomView(xml::NodeIndex top, DomNode node) : top_(top), top_node_(std::move(node)) {}

  DomNode Find(const xml::Document& document, xml::NodeIndex element) {
    if (element == top_) return top_node_;
    // Elements are mostly given away in their order.
    Known& known = last_given_[document.ParentOf(element)];
    if (!known.node || known.element > element) {
      const xml::NodeIndex parent = document.ParentOf(element);
      known = {document.FirstChildElement(parent),
               ElementAfter(Find(document, parent), &IXMLDOMNode::get_firstChild)};
    }
    while (known.node && known.element != element) {
      known = {document.NextElement(known.element),
               ElementAfter(known.node, &IXMLDOMNode::get_nextSibling)};
    }
    if (!known.node) throw ComError(E_FAIL, "MSXML does not find an element of the file.");
    return known.node;
  }

 private:
  struct Known {
    xml::NodeIndex element = xml::kNoNode;
    DomNode node;
  };

  xml::NodeIndex top_;
  DomNode top_node_;
  std::unordered_map<xml::NodeIndex, Known> last_given_;  // by parent
};

std::string ReasonOf(IXMLDOMDocument& document) {
  ComPtr<IXMLDOMParseError> error;
  Bstr reason;
  if (SUCCEEDED(document.get_parseError(error.Put())) && error) error->get_reason(reason.Put());
  return ToUtf8(reason.View());
}

std::shared_ptr<DomView> LoadView(const xml::Document& document) {
  constexpr const char* kNoMsxml =
      "MSXML 6, by which another library reads an element, cannot be created.";
  ComPtr<IXMLDOMDocument> dom;
  Check(CoCreateInstance(kDomDocument60, nullptr, CLSCTX_INPROC_SERVER, IID_IXMLDOMDocument,
                         dom.PutVoid()),
        kNoMsxml);
  // The text is no longer in the encoding that a declaration names.
  std::string_view text = document.TextBytes();
  if (text.starts_with("<?xml") && xml::Has(text[5], xml::kSpace))
    text.remove_prefix(text.find("?>") + 2);
  VARIANT_BOOL is_loaded = VARIANT_FALSE;
  Check(dom->loadXML(Bstr(FromUtf8(text)).Get(), &is_loaded), "MSXML cannot read the file.");
  if (!is_loaded) {
    throw ComError(kDocumentNotLoaded,
                   "MSXML, by which another library reads an element, refuses the file: " +
                       ReasonOf(*dom.Get()));
  }
  ComPtr<IXMLDOMElement> root;
  Check(dom->get_documentElement(root.Put()), "MSXML does not give the document element.");
  return std::make_shared<DomView>(document.Root(), DomNode(root.Get()));
}

constexpr DWORD kExecutable =
    PAGE_EXECUTE | PAGE_EXECUTE_READ | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
constexpr DWORD kReadable = PAGE_READONLY | PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READ |
                            PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;

// Whether a pointer lies there in memory with one of the protections.
bool IsIn(DWORD protections, ULONG_PTR address) {
  MEMORY_BASIC_INFORMATION memory;
  return address % alignof(void*) == 0 &&
         VirtualQuery(reinterpret_cast<void*>(address), &memory, sizeof memory) != 0 &&
         memory.State == MEM_COMMIT && (memory.Protect & PAGE_GUARD) == 0 &&
         (memory.Protect & protections) != 0;
}

// Whether the memory starts with a table of functions, as every object does.
bool LooksLikeObject(ULONG_PTR address) {
  if (!IsIn(kReadable, address)) return false;
  const ULONG_PTR table = *reinterpret_cast<const ULONG_PTR*>(address);
  if (!IsIn(kReadable, table)) return false;
  constexpr ULONG_PTR kAligned = ~static_cast<ULONG_PTR>(alignof(void*) - 1);
  return IsIn(kExecutable, *reinterpret_cast<const ULONG_PTR*>(table) & kAligned);
}

}  // namespace

ForeignNode MakeForeignNode(ElementPlace element) {
  OpenDocument& document = *element.document;
  if (!document.foreign_view) document.foreign_view = LoadView(document.xml);
  DomNode node =
      static_cast<DomView*>(document.foreign_view.get())->Find(document.xml, element.node);
  const auto handle = reinterpret_cast<ULONG_PTR>(node.Get());
  return {handle, std::make_shared<DomNode>(std::move(node))};
}

std::unique_ptr<OpenDocument> ReadForeignNode(ULONG_PTR handle, ElementPlace& place) {
  if (!LooksLikeObject(handle))
    throw ComError(E_INVALIDARG, "The handle of a node is the address of no object.");
  DomNode node;
  auto* const object = reinterpret_cast<IUnknown*>(handle);
  if (FAILED(object->QueryInterface(IID_IXMLDOMNode, node.PutVoid())) || !IsElement(node))
    throw ComError(E_INVALIDARG, "The handle of a node is the address of no element.");
  // The elements around it declare its namespaces and how white space counts.
  std::string text = MarkupOf(node);
  std::size_t depth = 0;
  for (DomNode around = After(node, &IXMLDOMNode::get_parentNode); IsElement(around);
       around = After(around, &IXMLDOMNode::get_parentNode)) {
    DomNode alone;
    Bstr name;
    Check(around->cloneNode(VARIANT_FALSE, alone.Put()), "MSXML does not copy a node.");
    Check(around->get_nodeName(name.Put()), "MSXML does not name a node.");
    std::string tag = MarkupOf(alone);  // <name/>
    tag.resize(tag.find_last_of('/'));
    text = tag.append(">").append(text).append("</").append(ToUtf8(name.View())).append(">");
    ++depth;
  }
  try {
    auto document = std::make_unique<OpenDocument>(std::move(text));
    place = {document.get(), document->xml.Root()};
    for (; depth > 0; --depth) place.node = document->xml.FirstChildElement(place.node);
    document->foreign_view = std::make_shared<DomView>(place.node, std::move(node));
    return document;
  } catch (const xml::Error& error) {
    throw ComError(E_INVALIDARG,
                   std::string("The handle names an element that cannot be read: ") + error.what());
  }
}

}  // namespace sab
