#pragma once

#include <sabxml/com.h>

#include "automation/script_list.h"
#include "base/com_ptr.h"
#include "common/position_list.h"
#include "object/error_edge.h"

namespace sab {

/// What the methods of every collection class do, once for all kinds of items. Elements are
/// compared by the very pointer that was passed in; what is handed out is counted for the caller.
///
/// Elements, and other collections, are foreign code: whatever is called of them, AddRef and
/// Release too, may call this list and change it. So positions are looked at after such a call, or
/// again.
class CollectionItems final : public ScriptList {
 public:
  /// Walks a collection that may be the host's own.
  struct Walk {
    HRESULT (*first)(IUnknown* collection, LONG_PTR* position);
    HRESULT (*next)(IUnknown* collection, LONG_PTR* position, IUnknown** item);
  };
  enum class End { kHead, kTail };

  HRESULT GetCount(const ErrorOrigin& origin, ULONG_PTR* count) const noexcept;
  HRESULT IsEmpty(const ErrorOrigin& origin, VARIANT_BOOL* is_empty) const noexcept;

  HRESULT GetEnd(const ErrorOrigin& origin, End end, IUnknown** item) const noexcept;
  HRESULT RemoveEnd(const ErrorOrigin& origin, End end, IUnknown** item) noexcept;
  HRESULT RemoveEnd(const ErrorOrigin& origin, End end) noexcept;
  HRESULT RemoveItem(const ErrorOrigin& origin, IUnknown* item) noexcept;
  HRESULT RemoveAll() noexcept;

  HRESULT Add(const ErrorOrigin& origin, End end, IUnknown* item, LONG_PTR* position) noexcept;
  /// The other collection may be this one, and may fail on the way: everything is fetched before
  /// anything is added.
  /// @param self the collection that this is part of
  HRESULT AddAll(const ErrorOrigin& origin, End end, IUnknown* self, IUnknown* other,
                 const Walk& walk) noexcept;

  HRESULT GetEndPosition(const ErrorOrigin& origin, End end, LONG_PTR* position) const noexcept;
  HRESULT GetNext(const ErrorOrigin& origin, LONG_PTR* position, IUnknown** item) const noexcept;
  HRESULT GetPrevious(const ErrorOrigin& origin, LONG_PTR* position,
                      IUnknown** item) const noexcept;
  HRESULT GetAt(const ErrorOrigin& origin, LONG_PTR position, IUnknown** item) const noexcept;
  HRESULT SetAt(const ErrorOrigin& origin, LONG_PTR position, IUnknown* item) noexcept;
  HRESULT RemoveAt(const ErrorOrigin& origin, LONG_PTR position) noexcept;
  HRESULT InsertAfter(const ErrorOrigin& origin, IUnknown* item, LONG_PTR* position) noexcept;
  HRESULT InsertBefore(const ErrorOrigin& origin, IUnknown* item, LONG_PTR* position) noexcept;

  HRESULT Find(const ErrorOrigin& origin, IUnknown* item, LONG_PTR start,
               LONG_PTR* position) const noexcept;
  HRESULT FindIndex(const ErrorOrigin& origin, ULONG_PTR index, LONG_PTR* position) const noexcept;

  HRESULT MoveToHead(const ErrorOrigin& origin, LONG_PTR position) noexcept;
  HRESULT MoveToTail(const ErrorOrigin& origin, LONG_PTR position) noexcept;
  HRESULT Swap(const ErrorOrigin& origin, LONG_PTR first, LONG_PTR second) noexcept;

  /// IDispatch::Invoke for the members that every list has for scripts.
  HRESULT Invoke(const ErrorOrigin& origin, DISPID member, REFIID riid, WORD flags,
                 const DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                 UINT* bad_argument) const noexcept;

  std::size_t ItemCount() const override { return items_.Count(); }
  IDispatch* ItemAt(std::size_t index) const override;

 private:
  using Onward = LONG_PTR (PositionList::*)(LONG_PTR) const;

  LONG_PTR PositionOf(End end) const { return end == End::kHead ? items_.Head() : items_.Tail(); }
  HRESULT Step(const ErrorOrigin& origin, LONG_PTR* position, IUnknown** item,
               Onward onward) const noexcept;
  HRESULT Insert(const ErrorOrigin& origin, LONG_PTR before, ComPtr<IUnknown>&& item,
                 LONG_PTR* position) noexcept;

  PositionList items_;
};

}  // namespace sab
