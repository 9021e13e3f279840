#pragma once

#include <sabxml/com.h>

#include <memory>
#include <optional>
#include <unordered_map>

#include "platform/open_document.h"

namespace sab {

/// What another library reads an element by, as sabxml/node.h says.
struct ForeignNode {
  ULONG_PTR handle;
  std::shared_ptr<void> object;  ///< keeps what the handle is the address of
};

/// Names an element to the Load method of an object while that method runs. Handles belong to a
/// thread and nest as its calls do. A number that a client passes as a handle is looked up among
/// them before anything is read through it.
class NodeHandle {
 public:
  explicit NodeHandle(ElementPlace element);
  NodeHandle(const NodeHandle&) = delete;
  NodeHandle& operator=(const NodeHandle&) = delete;
  ~NodeHandle();

  /// The handle to call an object with. Raises ComError where the element cannot be given to
  /// another library; std::bad_alloc.
  ULONG_PTR For(IDispatch& receiver);

  /// The handle for another library of any element; it holds as long as this one. Raises as For.
  ULONG_PTR Issue(ElementPlace element);

  /// The one made last on this thread; null outside of such calls.
  static NodeHandle* Innermost();

  /// The element of a handle that still holds; nothing for any other number.
  static std::optional<ElementPlace> Find(ULONG_PTR handle) noexcept;

 private:
  struct Issued {
    ElementPlace element;
    std::shared_ptr<void> object;
  };

  const ElementPlace element_;
  NodeHandle* const outer_;
  std::unordered_map<ULONG_PTR, Issued> issued_;
};

/// The element that a Load method was handed.
class HandedElement {
 public:
  /// Raises ComError(E_INVALIDARG) for a number that is no handle, as far as that can be told: on
  /// Windows a host may pass DOM nodes of its own.
  /// @param handle not 0
  explicit HandedElement(ULONG_PTR handle);

  /// It can only be read, and lives no longer than this.
  ElementPlace Place() const { return place_; }

 private:
  std::unique_ptr<OpenDocument> own_;  // where the element is another library's
  ElementPlace place_;
};

// What differs between the platforms.

/// Raises ComError; std::bad_alloc.
ForeignNode MakeForeignNode(ElementPlace element);

/// Reads an element that another library has made.
/// @param place receives the element in the document
/// Raises ComError(E_INVALIDARG) for a number that names none.
std::unique_ptr<OpenDocument> ReadForeignNode(ULONG_PTR handle, ElementPlace& place);

}  // namespace sab
