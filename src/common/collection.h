#pragma once

#include <string>
#include <utility>
#include <vector>

#include "automation/script_list.h"
#include "base/com_error.h"
#include "common/position_list.h"
#include "object/component.h"

namespace sab {

/// The 28 methods of every collection class: a list of references to one item interface, walked
/// by opaque positions. Elements are compared by the very pointer that was passed in.
template <class Coclass, class Item>
class Collection : public ComponentBase<Coclass>, private ScriptList {
 public:
  using Coll = typename Coclass::Interface;

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override {
    if (riid == IID_NULL && names && ids && count == 1) {
      ids[0] = ScriptList::IdOf(names[0]);
      if (ids[0] != DISPID_UNKNOWN) return S_OK;
    }
    return Base::GetIDsOfNames(riid, names, count, locale, ids);
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID riid, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* bad_argument) override {
    if (ScriptList::Has(member)) {
      SetErrorInfo(0, nullptr);
      const HRESULT outcome = InvokeMember(member, riid, flags, parameters, result, bad_argument);
      if (outcome != kSubscriptOutOfRange) return outcome;
      Base::Guarded([this] {
        throw ComError(kSubscriptOutOfRange,
                       "There is no element of this index: the collection has " +
                           std::to_string(items_.Count()) + " elements, counted from 0.");
      });
      return RaiseFromInvoke(outcome, exception);
    }
    return Base::Invoke(member, riid, locale, flags, parameters, result, exception, bad_argument);
  }

  HRESULT STDMETHODCALLTYPE GetCount(ULONG_PTR* o_plCount) override {
    if (!o_plCount) return NullArgument("o_plCount");
    *o_plCount = items_.Count();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE IsEmpty(VARIANT_BOOL* o_pbEmpty) override {
    if (!o_pbEmpty) return NullArgument("o_pbEmpty");
    *o_pbEmpty = items_.Count() == 0 ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE GetHead(Item** o_ppItem) override {
    return CopyElementIfAny(items_.Head(), o_ppItem);
  }
  HRESULT STDMETHODCALLTYPE GetTail(Item** o_ppItem) override {
    return CopyElementIfAny(items_.Tail(), o_ppItem);
  }
  HRESULT STDMETHODCALLTYPE RemoveHead(Item** o_ppItem) override {
    return RemoveTo(items_.Head(), o_ppItem);
  }
  HRESULT STDMETHODCALLTYPE RemoveTail(Item** o_ppItem) override {
    return RemoveTo(items_.Tail(), o_ppItem);
  }
  HRESULT STDMETHODCALLTYPE RemoveHeadNoReturn() override { return RemoveEnd(items_.Head()); }
  HRESULT STDMETHODCALLTYPE RemoveTailNoReturn() override { return RemoveEnd(items_.Tail()); }
  HRESULT STDMETHODCALLTYPE RemoveItem(Item* i_pItem) override {
    if (!i_pItem) return NullArgument("i_pItem");
    const LONG_PTR position = items_.Find(i_pItem, PositionList::kNone);
    if (position != PositionList::kNone) items_.Remove(position);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE RemoveAll() override {
    items_.Clear();
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE AddHead(Item* i_pItem, LONG_PTR* o_lpPosition) override {
    ComPtr<IUnknown> item(i_pItem);
    return Insert(items_.Head(), std::move(item), o_lpPosition);
  }
  HRESULT STDMETHODCALLTYPE AddHeadColl(Coll* i_pColl) override {
    return InsertAll(i_pColl, &PositionList::Head);
  }
  HRESULT STDMETHODCALLTYPE AddTail(Item* i_pItem, LONG_PTR* o_lpPosition) override {
    return Insert(PositionList::kNone, ComPtr<IUnknown>(i_pItem), o_lpPosition);
  }
  HRESULT STDMETHODCALLTYPE AddTailColl(Coll* i_pColl) override {
    return InsertAll(i_pColl, nullptr);
  }

  HRESULT STDMETHODCALLTYPE GetHeadPosition(LONG_PTR* o_pPos) override {
    if (!o_pPos) return NullArgument("o_pPos");
    *o_pPos = items_.Head();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTailPosition(LONG_PTR* o_pPos) override {
    if (!o_pPos) return NullArgument("o_pPos");
    *o_pPos = items_.Tail();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetNext(LONG_PTR* io_pPos, Item** o_ppItem) override {
    return Step(io_pPos, o_ppItem, &PositionList::Next);
  }
  HRESULT STDMETHODCALLTYPE GetPrev(LONG_PTR* io_pPos, Item** o_ppItem) override {
    return Step(io_pPos, o_ppItem, &PositionList::Previous);
  }
  HRESULT STDMETHODCALLTYPE GetAt(LONG_PTR i_pos, Item** o_ppItem) override {
    if (!o_ppItem) return NullArgument("o_ppItem");
    *o_ppItem = nullptr;
    if (!items_.Contains(i_pos)) return BadPosition(i_pos);
    CopyElement(i_pos, o_ppItem);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SetAt(LONG_PTR i_pos, Item* i_pItem) override {
    if (!i_pItem) return NullArgument("i_pItem");
    ComPtr<IUnknown> item(i_pItem);
    if (!items_.Contains(i_pos)) return BadPosition(i_pos);
    if (items_.At(i_pos) != i_pItem) item = items_.Replace(i_pos, std::move(item));
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE RemoveAt(LONG_PTR i_pos) override {
    if (i_pos == PositionList::kNone) return NullArgument("i_pos");
    if (!items_.Contains(i_pos)) return BadPosition(i_pos);
    items_.Remove(i_pos);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE InsertAfter(Item* i_pItem, LONG_PTR* io_lpPosition) override {
    if (!i_pItem || !io_lpPosition) return NullArgument(i_pItem ? "io_lpPosition" : "i_pItem");
    const LONG_PTR after = *io_lpPosition;
    ComPtr<IUnknown> item(i_pItem);
    if (after != PositionList::kNone && !items_.Contains(after)) return BadPosition(after);
    return Insert(after == PositionList::kNone ? after : items_.Next(after), std::move(item),
                  io_lpPosition);
  }
  HRESULT STDMETHODCALLTYPE InsertBefore(Item* i_pItem, LONG_PTR* io_lpPosition) override {
    if (!i_pItem || !io_lpPosition) return NullArgument(i_pItem ? "io_lpPosition" : "i_pItem");
    const LONG_PTR before = *io_lpPosition;
    ComPtr<IUnknown> item(i_pItem);
    if (before != PositionList::kNone && !items_.Contains(before)) return BadPosition(before);
    return Insert(before == PositionList::kNone ? items_.Head() : before, std::move(item),
                  io_lpPosition);
  }

  HRESULT STDMETHODCALLTYPE Find(Item* i_pItem, LONG_PTR i_posStart, LONG_PTR* o_pPos) override {
    if (!i_pItem || !o_pPos) return NullArgument(i_pItem ? "o_pPos" : "i_pItem");
    if (i_posStart != PositionList::kNone && !items_.Contains(i_posStart)) {
      return BadPosition(i_posStart);
    }
    *o_pPos = items_.Find(i_pItem, i_posStart);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE FindIndex(ULONG_PTR i_lIndex, LONG_PTR* o_lpPosition) override {
    if (!o_lpPosition) return NullArgument("o_lpPosition");
    *o_lpPosition = items_.AtIndex(i_lIndex);
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE MoveToHead(LONG_PTR i_pos) override {
    if (!items_.Contains(i_pos)) return BadPosition(i_pos);
    items_.MoveBefore(i_pos, items_.Head());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE MoveToTail(LONG_PTR i_pos) override {
    if (!items_.Contains(i_pos)) return BadPosition(i_pos);
    items_.MoveBefore(i_pos, PositionList::kNone);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SwapElements(LONG_PTR i_pos1, LONG_PTR i_pos2) override {
    if (i_pos1 == i_pos2) return S_OK;
    if (!items_.Contains(i_pos1)) return BadPosition(i_pos1);
    if (!items_.Contains(i_pos2)) return BadPosition(i_pos2);
    items_.Swap(i_pos1, i_pos2);
    return S_OK;
  }

 private:
  using Base = ComponentBase<Coclass>;

  static HRESULT NullArgument(const char* name) {
    return Base::Guarded(
        [name] { throw ComError(E_INVALIDARG, std::string(name) + " must not be null."); });
  }
  static HRESULT BadPosition(LONG_PTR position) {
    return position == PositionList::kNone
               ? Base::Fail(E_FAIL, "There is no element at the position 0.")
               : Base::Fail(E_INVALIDARG,
                            "The position does not name an element of this collection: the element "
                            "was removed or belongs to another collection.");
  }

  std::size_t ItemCount() const override { return items_.Count(); }
  IDispatch* ItemAt(std::size_t index) const override { return ItemOf(items_.AtIndex(index)); }

  // Elements, and other collections, are foreign code: whatever is called of them, AddRef and
  // Release too, may call this list and change it. So positions are looked at after such a call, or
  // again.

  // The item's interface derives from IUnknown alone, so both are the same pointer.
  Item* ItemOf(LONG_PTR position) const { return static_cast<Item*>(items_.At(position)); }

  void CopyElement(LONG_PTR position, Item** out) const {
    Item* const item = ItemOf(position);
    *out = item;
    item->AddRef();
  }
  HRESULT CopyElementIfAny(LONG_PTR position, Item** out) const {
    if (!out) return NullArgument("o_ppItem");
    *out = nullptr;
    if (position != PositionList::kNone) CopyElement(position, out);
    return S_OK;
  }

  HRESULT RemoveTo(LONG_PTR position, Item** out) {
    if (!out) return NullArgument("o_ppItem");
    *out = nullptr;
    if (position == PositionList::kNone) return Base::Fail(E_FAIL, "The collection is empty.");
    *out = static_cast<Item*>(items_.Remove(position).Detach());
    return S_OK;
  }
  HRESULT RemoveEnd(LONG_PTR position) {
    Item* removed = nullptr;
    const HRESULT result = RemoveTo(position, &removed);
    if (removed) removed->Release();
    return result;
  }

  HRESULT Step(LONG_PTR* position, Item** out, LONG_PTR (PositionList::*onward)(LONG_PTR) const) {
    if (out) *out = nullptr;
    if (!position || !out) return NullArgument(position ? "o_ppItem" : "io_pPos");
    const LONG_PTR here = *position;
    if (!items_.Contains(here)) return BadPosition(here);
    Item* const item = ItemOf(here);
    *position = (items_.*onward)(here);
    *out = item;
    item->AddRef();
    return S_OK;
  }

  HRESULT Insert(LONG_PTR before, ComPtr<IUnknown>&& item, LONG_PTR* inserted) {
    if (!item) return NullArgument("i_pItem");
    return Base::Guarded([&] {
      const LONG_PTR position = items_.InsertBefore(before, std::move(item));
      if (inserted) *inserted = position;
    });
  }

  // The other collection may be this one or the host's own, and may fail on the way: everything is
  // fetched before anything is added.
  HRESULT InsertAll(Coll* other, LONG_PTR (PositionList::*before)() const) {
    if (!other) return NullArgument("i_pColl");
    const ComPtr<Coll> self(this);
    return Base::Guarded([&]() -> HRESULT {
      std::vector<ComPtr<IUnknown>> fetched;
      LONG_PTR position = PositionList::kNone;
      HRESULT result = other->GetHeadPosition(&position);
      while (SUCCEEDED(result) && position != PositionList::kNone) {
        ComPtr<Item> item;
        result = other->GetNext(&position, item.Put());
        if (item) fetched.emplace_back().Attach(item.Detach());
      }
      if (FAILED(result)) return result;
      items_.Reserve(fetched.size());
      const LONG_PTR place = before ? (items_.*before)() : PositionList::kNone;
      for (ComPtr<IUnknown>& item : fetched) items_.InsertBefore(place, std::move(item));
      return S_OK;
    });
  }

  PositionList items_;
};

}  // namespace sab
