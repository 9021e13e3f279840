#pragma once

#include "common/collection_items.h"
#include "object/component.h"

namespace sab {

/// The 28 methods of every collection class: a list of references to one item interface, walked
/// by opaque positions; see CollectionItems.
template <class Coclass, class Item>
class Collection : public ComponentBase<Coclass> {
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
      return items_.Invoke(Base::Origin(), member, riid, flags, parameters, result, exception,
                           bad_argument);
    }
    return Base::Invoke(member, riid, locale, flags, parameters, result, exception, bad_argument);
  }

  HRESULT STDMETHODCALLTYPE GetCount(ULONG_PTR* o_plCount) override {
    return items_.GetCount(Base::Origin(), o_plCount);
  }
  HRESULT STDMETHODCALLTYPE IsEmpty(VARIANT_BOOL* o_pbEmpty) override {
    return items_.IsEmpty(Base::Origin(), o_pbEmpty);
  }

  HRESULT STDMETHODCALLTYPE GetHead(Item** o_ppItem) override {
    return items_.GetEnd(Base::Origin(), End::kHead, Place(o_ppItem));
  }
  HRESULT STDMETHODCALLTYPE GetTail(Item** o_ppItem) override {
    return items_.GetEnd(Base::Origin(), End::kTail, Place(o_ppItem));
  }
  HRESULT STDMETHODCALLTYPE RemoveHead(Item** o_ppItem) override {
    return items_.RemoveEnd(Base::Origin(), End::kHead, Place(o_ppItem));
  }
  HRESULT STDMETHODCALLTYPE RemoveTail(Item** o_ppItem) override {
    return items_.RemoveEnd(Base::Origin(), End::kTail, Place(o_ppItem));
  }
  HRESULT STDMETHODCALLTYPE RemoveHeadNoReturn() override {
    return items_.RemoveEnd(Base::Origin(), End::kHead);
  }
  HRESULT STDMETHODCALLTYPE RemoveTailNoReturn() override {
    return items_.RemoveEnd(Base::Origin(), End::kTail);
  }
  HRESULT STDMETHODCALLTYPE RemoveItem(Item* i_pItem) override {
    return items_.RemoveItem(Base::Origin(), i_pItem);
  }
  HRESULT STDMETHODCALLTYPE RemoveAll() override { return items_.RemoveAll(); }

  HRESULT STDMETHODCALLTYPE AddHead(Item* i_pItem, LONG_PTR* o_lpPosition) override {
    return items_.Add(Base::Origin(), End::kHead, i_pItem, o_lpPosition);
  }
  HRESULT STDMETHODCALLTYPE AddHeadColl(Coll* i_pColl) override {
    return items_.AddAll(Base::Origin(), End::kHead, OwnUnknown(), i_pColl, kWalk);
  }
  HRESULT STDMETHODCALLTYPE AddTail(Item* i_pItem, LONG_PTR* o_lpPosition) override {
    return items_.Add(Base::Origin(), End::kTail, i_pItem, o_lpPosition);
  }
  HRESULT STDMETHODCALLTYPE AddTailColl(Coll* i_pColl) override {
    return items_.AddAll(Base::Origin(), End::kTail, OwnUnknown(), i_pColl, kWalk);
  }

  HRESULT STDMETHODCALLTYPE GetHeadPosition(LONG_PTR* o_pPos) override {
    return items_.GetEndPosition(Base::Origin(), End::kHead, o_pPos);
  }
  HRESULT STDMETHODCALLTYPE GetTailPosition(LONG_PTR* o_pPos) override {
    return items_.GetEndPosition(Base::Origin(), End::kTail, o_pPos);
  }
  HRESULT STDMETHODCALLTYPE GetNext(LONG_PTR* io_pPos, Item** o_ppItem) override {
    return items_.GetNext(Base::Origin(), io_pPos, Place(o_ppItem));
  }
  HRESULT STDMETHODCALLTYPE GetPrev(LONG_PTR* io_pPos, Item** o_ppItem) override {
    return items_.GetPrevious(Base::Origin(), io_pPos, Place(o_ppItem));
  }
  HRESULT STDMETHODCALLTYPE GetAt(LONG_PTR i_pos, Item** o_ppItem) override {
    return items_.GetAt(Base::Origin(), i_pos, Place(o_ppItem));
  }
  HRESULT STDMETHODCALLTYPE SetAt(LONG_PTR i_pos, Item* i_pItem) override {
    return items_.SetAt(Base::Origin(), i_pos, i_pItem);
  }
  HRESULT STDMETHODCALLTYPE RemoveAt(LONG_PTR i_pos) override {
    return items_.RemoveAt(Base::Origin(), i_pos);
  }
  HRESULT STDMETHODCALLTYPE InsertAfter(Item* i_pItem, LONG_PTR* io_lpPosition) override {
    return items_.InsertAfter(Base::Origin(), i_pItem, io_lpPosition);
  }
  HRESULT STDMETHODCALLTYPE InsertBefore(Item* i_pItem, LONG_PTR* io_lpPosition) override {
    return items_.InsertBefore(Base::Origin(), i_pItem, io_lpPosition);
  }

  HRESULT STDMETHODCALLTYPE Find(Item* i_pItem, LONG_PTR i_posStart, LONG_PTR* o_pPos) override {
    return items_.Find(Base::Origin(), i_pItem, i_posStart, o_pPos);
  }
  HRESULT STDMETHODCALLTYPE FindIndex(ULONG_PTR i_lIndex, LONG_PTR* o_lpPosition) override {
    return items_.FindIndex(Base::Origin(), i_lIndex, o_lpPosition);
  }

  HRESULT STDMETHODCALLTYPE MoveToHead(LONG_PTR i_pos) override {
    return items_.MoveToHead(Base::Origin(), i_pos);
  }
  HRESULT STDMETHODCALLTYPE MoveToTail(LONG_PTR i_pos) override {
    return items_.MoveToTail(Base::Origin(), i_pos);
  }
  HRESULT STDMETHODCALLTYPE SwapElements(LONG_PTR i_pos1, LONG_PTR i_pos2) override {
    return items_.Swap(Base::Origin(), i_pos1, i_pos2);
  }

 private:
  using Base = ComponentBase<Coclass>;
  using End = CollectionItems::End;

  // Where an element is handed out, as what it is.
  class Place {
   public:
    explicit Place(Item** place) : place_(place) {}
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;
    ~Place() {
      if (place_) *place_ = static_cast<Item*>(item_);
    }
    operator IUnknown**() { return place_ ? &item_ : nullptr; }

   private:
    Item** place_;
    IUnknown* item_ = nullptr;
  };

  static constexpr CollectionItems::Walk kWalk = {
      [](IUnknown* collection, LONG_PTR* position) {
        return static_cast<Coll*>(collection)->GetHeadPosition(position);
      },
      [](IUnknown* collection, LONG_PTR* position, IUnknown** item) {
        Item* found = nullptr;
        const HRESULT result = static_cast<Coll*>(collection)->GetNext(position, &found);
        *item = found;
        return result;
      }};

  IUnknown* OwnUnknown() { return static_cast<Coll*>(this); }

  CollectionItems items_;
};

}  // namespace sab
