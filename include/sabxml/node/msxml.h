#pragma once

#include <sabxml/com.h>
// What follows builds on windows.h.
#include <msxml2.h>

namespace sabxml {

/// Reads the element that a handle names, and its children.
///
///     for (auto child = sabxml::Node(handle).FirstChild(); child; child = child.NextSibling())
class Node {
 public:
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

  /// The handle of this object, to pass on; valid as long as the object exists.
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
};

}  // namespace sabxml
