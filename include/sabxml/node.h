#pragma once

#include <sabxml/com.h>

#if defined(_WIN32)
#include <msxml2.h>
#endif

/// The elements that the Load methods of standards, symbols and revisions are handed as ULONG_PTR:
/// for those who write such a class of their own. On Windows the handle is an IXMLDOMNode*,
/// elsewhere a VeXmlNode*; sabxml::Node reads either. A handle holds for the length of the call.

#if !defined(_WIN32)

struct VeXmlNodeFunctions;

/// An element of a file that the server is reading. It is a value without a life of its own: a copy
/// names the same element, and none of them outlives the call that was handed the handle.
struct VeXmlNode {
  const VeXmlNodeFunctions* functions;
  void* document;   ///< whatever the functions need
  ULONG_PTR place;  ///< likewise
};

/// What can be asked of an element. Only elements are told of: no comments, no texts.
struct VeXmlNodeFunctions {
  /// The name without a prefix, and the whole text as MSXML gives it; the caller frees them.
  HRESULT (*GetLocalName)(const VeXmlNode* node, BSTR* name);
  HRESULT (*GetText)(const VeXmlNode* node, BSTR* text);
  /// @return S_FALSE, and the place is left alone, if there is none
  HRESULT (*GetFirstChild)(const VeXmlNode* node, VeXmlNode* child);
  HRESULT (*GetNextSibling)(const VeXmlNode* node, VeXmlNode* sibling);
  /// A handle to pass on to another Load method during the call that was handed this node: only
  /// handles that the server knows are accepted. 0 without memory.
  ULONG_PTR (*GetHandle)(const VeXmlNode* node);
};

#endif

namespace sabxml {

/// Reads the element that a handle names, and its children.
///
///     for (auto child = sabxml::Node(handle).FirstChild(); child; child = child.NextSibling())
class Node {
 public:
#if defined(_WIN32)
  explicit Node(ULONG_PTR handle) : node_(reinterpret_cast<IXMLDOMNode*>(handle)) {
    if (node_) node_->AddRef();
  }
  Node(const Node& other) : Node(other.Handle()) {}
  Node& operator=(const Node& other) {
    if (other.node_) other.node_->AddRef();
    if (node_) node_->Release();
    node_ = other.node_;
    return *this;
  }
  ~Node() {
    if (node_) node_->Release();
  }

  /// False where there was no element.
  explicit operator bool() const { return node_ != nullptr; }

  /// The handle of this very object, to hand on; it holds as long as the object does.
  ULONG_PTR Handle() const { return reinterpret_cast<ULONG_PTR>(node_); }

  /// The name without a prefix, and the whole text; the caller frees them.
  HRESULT GetLocalName(BSTR* name) const { return node_->get_baseName(name); }
  HRESULT GetText(BSTR* text) const { return node_->get_text(text); }

  Node FirstChild() const { return ElementFrom(&IXMLDOMNode::get_firstChild); }
  Node NextSibling() const { return ElementFrom(&IXMLDOMNode::get_nextSibling); }

 private:
  using Step = HRESULT (STDMETHODCALLTYPE IXMLDOMNode::*)(IXMLDOMNode**);

  // The first element that the step leads to, or a step to the side from there.
  Node ElementFrom(Step step) const {
    IXMLDOMNode* found = nullptr;
    if (FAILED((node_->*step)(&found))) found = nullptr;
    DOMNodeType type = NODE_INVALID;
    while (found && (FAILED(found->get_nodeType(&type)) || type != NODE_ELEMENT)) {
      IXMLDOMNode* next = nullptr;
      if (FAILED(found->get_nextSibling(&next))) next = nullptr;
      found->Release();
      found = next;
    }
    const Node element(reinterpret_cast<ULONG_PTR>(found));
    if (found) found->Release();
    return element;
  }

  IXMLDOMNode* node_;
#else
  explicit Node(ULONG_PTR handle) {
    if (handle) node_ = *reinterpret_cast<const VeXmlNode*>(handle);
  }

  explicit operator bool() const { return node_.functions != nullptr; }
  /// A handle of this element, to hand on; it holds for the length of the call.
  ULONG_PTR Handle() const { return node_.functions ? node_.functions->GetHandle(&node_) : 0; }

  HRESULT GetLocalName(BSTR* name) const { return node_.functions->GetLocalName(&node_, name); }
  HRESULT GetText(BSTR* text) const { return node_.functions->GetText(&node_, text); }

  Node FirstChild() const { return Stepped(node_.functions->GetFirstChild); }
  Node NextSibling() const { return Stepped(node_.functions->GetNextSibling); }

 private:
  Node Stepped(HRESULT (*step)(const VeXmlNode*, VeXmlNode*)) const {
    Node found(0);
    if (step(&node_, &found.node_) != S_OK) found = Node(0);
    return found;
  }

  VeXmlNode node_ = {};
#endif
};

}  // namespace sabxml
