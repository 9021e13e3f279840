#include "common/collection_items.h"

#include <string>
#include <utility>
#include <vector>

#include "automation/dispatch.h"
#include "base/com_error.h"

namespace sab {
namespace {

HRESULT NullArgument(const ErrorOrigin& origin, const char* name) noexcept {
  return Guard(origin,
               [name] { throw ComError(E_INVALIDARG, std::string(name) + " must not be null."); });
}

HRESULT BadPosition(const ErrorOrigin& origin, LONG_PTR position) noexcept {
  return position == PositionList::kNone
             ? ReportError(origin, E_FAIL, "There is no element at the position 0.")
             : ReportError(origin, E_INVALIDARG,
                           "The position does not name an element of this collection: the element "
                           "was removed or belongs to another collection.");
}

void HandOut(IUnknown* item, IUnknown** place) {
  *place = item;
  item->AddRef();
}

}  // namespace

HRESULT CollectionItems::GetCount(const ErrorOrigin& origin, ULONG_PTR* count) const noexcept {
  if (!count) return NullArgument(origin, "o_plCount");
  *count = items_.Count();
  return S_OK;
}

HRESULT CollectionItems::IsEmpty(const ErrorOrigin& origin, VARIANT_BOOL* is_empty) const noexcept {
  if (!is_empty) return NullArgument(origin, "o_pbEmpty");
  *is_empty = items_.Count() == 0 ? VARIANT_TRUE : VARIANT_FALSE;
  return S_OK;
}

HRESULT CollectionItems::GetEnd(const ErrorOrigin& origin, End end,
                                IUnknown** item) const noexcept {
  if (!item) return NullArgument(origin, "o_ppItem");
  *item = nullptr;
  const LONG_PTR position = PositionOf(end);
  if (position != PositionList::kNone) HandOut(items_.At(position), item);
  return S_OK;
}

HRESULT CollectionItems::RemoveEnd(const ErrorOrigin& origin, End end, IUnknown** item) noexcept {
  if (!item) return NullArgument(origin, "o_ppItem");
  *item = nullptr;
  const LONG_PTR position = PositionOf(end);
  if (position == PositionList::kNone) {
    return ReportError(origin, E_FAIL, "The collection is empty.");
  }
  *item = items_.Remove(position).Detach();
  return S_OK;
}

HRESULT CollectionItems::RemoveEnd(const ErrorOrigin& origin, End end) noexcept {
  ComPtr<IUnknown> removed;
  return RemoveEnd(origin, end, removed.Put());
}

HRESULT CollectionItems::RemoveItem(const ErrorOrigin& origin, IUnknown* item) noexcept {
  if (!item) return NullArgument(origin, "i_pItem");
  const LONG_PTR position = items_.Find(item, PositionList::kNone);
  if (position != PositionList::kNone) items_.Remove(position);
  return S_OK;
}

HRESULT CollectionItems::RemoveAll() noexcept {
  items_.Clear();
  return S_OK;
}

HRESULT CollectionItems::Add(const ErrorOrigin& origin, End end, IUnknown* item,
                             LONG_PTR* position) noexcept {
  ComPtr<IUnknown> counted(item);
  return Insert(origin, end == End::kHead ? items_.Head() : PositionList::kNone, std::move(counted),
                position);
}

HRESULT CollectionItems::AddAll(const ErrorOrigin& origin, End end, IUnknown* self, IUnknown* other,
                                const Walk& walk) noexcept {
  if (!other) return NullArgument(origin, "i_pColl");
  const ComPtr<IUnknown> kept(self);
  return Guard(origin, [&]() -> HRESULT {
    std::vector<ComPtr<IUnknown>> fetched;
    LONG_PTR position = PositionList::kNone;
    HRESULT result = walk.first(other, &position);
    while (SUCCEEDED(result) && position != PositionList::kNone) {
      ComPtr<IUnknown> item;
      result = walk.next(other, &position, item.Put());
      if (item) fetched.emplace_back().Attach(item.Detach());
    }
    if (FAILED(result)) return result;
    items_.Reserve(fetched.size());
    const LONG_PTR before = end == End::kHead ? items_.Head() : PositionList::kNone;
    for (ComPtr<IUnknown>& item : fetched) items_.InsertBefore(before, std::move(item));
    return S_OK;
  });
}

HRESULT CollectionItems::GetEndPosition(const ErrorOrigin& origin, End end,
                                        LONG_PTR* position) const noexcept {
  if (!position) return NullArgument(origin, "o_pPos");
  *position = PositionOf(end);
  return S_OK;
}

HRESULT CollectionItems::GetNext(const ErrorOrigin& origin, LONG_PTR* position,
                                 IUnknown** item) const noexcept {
  return Step(origin, position, item, &PositionList::Next);
}

HRESULT CollectionItems::GetPrevious(const ErrorOrigin& origin, LONG_PTR* position,
                                     IUnknown** item) const noexcept {
  return Step(origin, position, item, &PositionList::Previous);
}

HRESULT CollectionItems::GetAt(const ErrorOrigin& origin, LONG_PTR position,
                               IUnknown** item) const noexcept {
  if (!item) return NullArgument(origin, "o_ppItem");
  *item = nullptr;
  if (!items_.Contains(position)) return BadPosition(origin, position);
  HandOut(items_.At(position), item);
  return S_OK;
}

HRESULT CollectionItems::SetAt(const ErrorOrigin& origin, LONG_PTR position,
                               IUnknown* item) noexcept {
  if (!item) return NullArgument(origin, "i_pItem");
  ComPtr<IUnknown> counted(item);
  if (!items_.Contains(position)) return BadPosition(origin, position);
  if (items_.At(position) != item) counted = items_.Replace(position, std::move(counted));
  return S_OK;
}

HRESULT CollectionItems::RemoveAt(const ErrorOrigin& origin, LONG_PTR position) noexcept {
  if (position == PositionList::kNone) return NullArgument(origin, "i_pos");
  if (!items_.Contains(position)) return BadPosition(origin, position);
  items_.Remove(position);
  return S_OK;
}

HRESULT CollectionItems::InsertAfter(const ErrorOrigin& origin, IUnknown* item,
                                     LONG_PTR* position) noexcept {
  if (!item || !position) return NullArgument(origin, item ? "io_lpPosition" : "i_pItem");
  const LONG_PTR after = *position;
  ComPtr<IUnknown> counted(item);
  if (after != PositionList::kNone && !items_.Contains(after)) return BadPosition(origin, after);
  return Insert(origin, after == PositionList::kNone ? after : items_.Next(after),
                std::move(counted), position);
}

HRESULT CollectionItems::InsertBefore(const ErrorOrigin& origin, IUnknown* item,
                                      LONG_PTR* position) noexcept {
  if (!item || !position) return NullArgument(origin, item ? "io_lpPosition" : "i_pItem");
  const LONG_PTR before = *position;
  ComPtr<IUnknown> counted(item);
  if (before != PositionList::kNone && !items_.Contains(before)) {
    return BadPosition(origin, before);
  }
  return Insert(origin, before == PositionList::kNone ? items_.Head() : before, std::move(counted),
                position);
}

HRESULT CollectionItems::Find(const ErrorOrigin& origin, IUnknown* item, LONG_PTR start,
                              LONG_PTR* position) const noexcept {
  if (!item || !position) return NullArgument(origin, item ? "o_pPos" : "i_pItem");
  if (start != PositionList::kNone && !items_.Contains(start)) return BadPosition(origin, start);
  *position = items_.Find(item, start);
  return S_OK;
}

HRESULT CollectionItems::FindIndex(const ErrorOrigin& origin, ULONG_PTR index,
                                   LONG_PTR* position) const noexcept {
  if (!position) return NullArgument(origin, "o_lpPosition");
  *position = items_.AtIndex(index);
  return S_OK;
}

HRESULT CollectionItems::MoveToHead(const ErrorOrigin& origin, LONG_PTR position) noexcept {
  if (!items_.Contains(position)) return BadPosition(origin, position);
  items_.MoveBefore(position, items_.Head());
  return S_OK;
}

HRESULT CollectionItems::MoveToTail(const ErrorOrigin& origin, LONG_PTR position) noexcept {
  if (!items_.Contains(position)) return BadPosition(origin, position);
  items_.MoveBefore(position, PositionList::kNone);
  return S_OK;
}

HRESULT CollectionItems::Swap(const ErrorOrigin& origin, LONG_PTR first, LONG_PTR second) noexcept {
  if (first == second) return S_OK;
  if (!items_.Contains(first)) return BadPosition(origin, first);
  if (!items_.Contains(second)) return BadPosition(origin, second);
  items_.Swap(first, second);
  return S_OK;
}

HRESULT CollectionItems::Invoke(const ErrorOrigin& origin, DISPID member, REFIID riid, WORD flags,
                                const DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                UINT* bad_argument) const noexcept {
  SetErrorInfo(0, nullptr);
  const HRESULT outcome = InvokeMember(member, riid, flags, parameters, result, bad_argument);
  if (outcome != kSubscriptOutOfRange) return outcome;
  Guard(origin, [this] {
    throw ComError(kSubscriptOutOfRange, "There is no element of this index: the collection has " +
                                             std::to_string(items_.Count()) +
                                             " elements, counted from 0.");
  });
  return RaiseFromInvoke(outcome, exception);
}

// The items' interfaces are dual, and derive from one another alone: the pointers are the same.
IDispatch* CollectionItems::ItemAt(std::size_t index) const {
  return static_cast<IDispatch*>(items_.At(items_.AtIndex(index)));
}

HRESULT CollectionItems::Step(const ErrorOrigin& origin, LONG_PTR* position, IUnknown** item,
                              Onward onward) const noexcept {
  if (item) *item = nullptr;
  if (!position || !item) return NullArgument(origin, position ? "o_ppItem" : "io_pPos");
  const LONG_PTR here = *position;
  if (!items_.Contains(here)) return BadPosition(origin, here);
  IUnknown* const found = items_.At(here);
  *position = (items_.*onward)(here);
  HandOut(found, item);
  return S_OK;
}

HRESULT CollectionItems::Insert(const ErrorOrigin& origin, LONG_PTR before, ComPtr<IUnknown>&& item,
                                LONG_PTR* position) noexcept {
  if (!item) return NullArgument(origin, "i_pItem");
  return Guard(origin, [&] {
    const LONG_PTR inserted = items_.InsertBefore(before, std::move(item));
    if (position) *position = inserted;
  });
}

}  // namespace sab
