#pragma once

#include <sabxml/com.h>

struct VeXmlNodeFunctions;

/// An element of a file that the server is reading. It is a plain value: a copy names the
/// same element, and none is valid after the call that received the handle.
struct VeXmlNode {
  const VeXmlNodeFunctions* functions;
  void* document;   ///< whatever the functions need
  ULONG_PTR place;  ///< likewise
};

/// The operations on an element. Only elements are visible: no comments, no text nodes.
struct VeXmlNodeFunctions {
  /// The name without a prefix, and the whole text as MSXML gives it; the caller frees them.
  HRESULT (*GetLocalName)(const VeXmlNode* node, BSTR* name);
  HRESULT (*GetText)(const VeXmlNode* node, BSTR* text);
  /// @return S_FALSE if there is none; the place is unchanged then
  HRESULT (*GetFirstChild)(const VeXmlNode* node, VeXmlNode* child);
  HRESULT (*GetNextSibling)(const VeXmlNode* node, VeXmlNode* sibling);
  /// A handle to pass on to another Load method during the call that received this node: only
  /// handles that the server knows are accepted. 0 if memory runs out.
  ULONG_PTR (*GetHandle)(const VeXmlNode* node);
};

namespace sabxml {

/// Reads the element that a handle names, and its children.
///
///     for (auto child = sabxml::Node(handle).FirstChild(); child; child = child.NextSibling())
class Node {
 public:
  explicit Node(ULONG_PTR handle) {
    if (handle) node_ = *reinterpret_cast<const VeXmlNode*>(handle);
  }

  explicit operator bool() const { return node_.functions != nullptr; }
  /// A handle of this element, to pass on; valid for the length of the call.
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
};

}  // namespace sabxml
