// Elements and collections of the host's own, which call back while they are called.

#include <gtest/gtest.h>

#include <functional>

#include "common/accel_list.h"
#include "framework/user_interface/element_objects.h"
#include "support/late_value.h"

namespace sab::testing {
namespace {

using Action = std::function<void()>;

// Does something once, at the next reference that is added or when its last one is gone.
class Item final : public CVePrsAccel {
 public:
  explicit Item(const char* key = "x") { fields.Key.Assign(FromUtf8(key)); }
  ~Item() override {
    if (at_end) at_end();
  }
  ULONG STDMETHODCALLTYPE AddRef() override {
    if (const Action action = std::exchange(at_add, {})) action();
    return CVePrsAccel::AddRef();
  }

  Action at_add;
  Action at_end;
};

class List final : public CVePrsAccelColl {
 public:
  HRESULT STDMETHODCALLTYPE GetNext(LONG_PTR* position, IVePrsAccel** out) override {
    if (const Action action = std::exchange(at_next, {})) action();
    return CVePrsAccelColl::GetNext(position, out);
  }

  Action at_next;
};

template <class Class, class... Arguments>
ComPtr<Class> New(Arguments... arguments) {
  ComPtr<Class> object;
  object.Attach(new Class(arguments...));
  return object;
}

ComPtr<Item> Add(List& list, const char* key) {
  const auto item = New<Item>(key);
  EXPECT_EQ(S_OK, list.AddTail(item.Get(), nullptr));
  return item;
}

// An outer object.
class Outer final : public Counted<IUnknown> {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    return AnswerFor(IID_IUnknown, riid, object);
  }
};

TEST(ForeignCode, ADyingObjectIsDestroyedOnce) {
  const auto outer = New<Outer>();
  struct Row {
    const char* name;
    std::function<ComPtr<IUnknown>(const ComPtr<List>&)> owner;  // holds the list
  };
  const Row rows[] = {
      {"list", [](const auto& list) { return ComPtr<IUnknown>(list.Get()); }},
      {"object",
       [](const auto& list) {
         const auto holder = New<Item>();
         holder->at_end = [list] {};
         return ComPtr<IUnknown>(holder.Get());
       }},
      {"tear-off",
       [](const auto& list) {
         ComPtr<IUnknown> tear_off;
         list->QueryInterface(IID_ISupportErrorInfo, tear_off.PutVoid());
         return tear_off;
       }},
      {"walk",
       [](const auto& list) {
         const LateResult walk = client::Invoke(*list, DISPID_NEWENUM, DISPATCH_METHOD);
         return ComPtr<IUnknown>(walk.value.Get().punkVal);
       }},
      {"aggregated list",
       [&](const auto& list) {
         ComPtr<IUnknown> inner;
         auto* const part = new Aggregated<CVePrsAccelColl>(outer.Get());
         inner.Attach(part->Inner());
         EXPECT_EQ(S_OK, part->AddTailColl(list.Get()));
         return inner;
       }},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const long before = ModuleLocks::Count();
    ComPtr<List> list = New<List>();
    Item& item = *Add(*list, "x").Get();
    ComPtr<IUnknown> owner = row.owner(list);
    // An aggregated object's own count is behind its lists's interface once it dies.
    ComPtr<IVePrsAccelColl> own = owner.As<IVePrsAccelColl>();
    IUnknown* const dying = own ? static_cast<IUnknown*>(own.Get()) : owner.Get();
    own.Reset();
    bool has_ended = false;
    item.at_end = [&] {
      dying->AddRef();
      dying->Release();
      has_ended = true;
    };
    list.Reset();
    EXPECT_FALSE(has_ended);
    owner.Reset();
    EXPECT_TRUE(has_ended);
    EXPECT_EQ(before, ModuleLocks::Count());
  }
}

// A list "abc" and a call of it; what the called element, or the other collection, does to the list
// meanwhile; and what becomes of the list and of the call.
TEST(ForeignCode, AListThatIsChangedDuringItsOwnCallStaysWhole) {
  ComPtr<List> list;
  ComPtr<Item> x;
  ComPtr<List> other;
  LONG_PTR at_a = 0;
  LONG_PTR at_b = 0;
  ComPtr<IVePrsAccel> out;
  const auto remove_all = [&] { list->RemoveAll(); };
  const auto remove_head = [&] { list->RemoveHeadNoReturn(); };
  const auto add_head = [&] { list->AddHead(New<Item>("h").Get(), nullptr); };
  const struct {
    const char* name;
    Action meanwhile;
    std::function<HRESULT()> call;
    HRESULT result;
    const char* keys;
  } rows[] = {
      {"AddTail", remove_all, [&] { return list->AddTail(x.Get(), nullptr); }, S_OK, "x"},
      {"AddHead", remove_all, [&] { return list->AddHead(x.Get(), nullptr); }, S_OK, "x"},
      {"AddHead", add_head, [&] { return list->AddHead(x.Get(), nullptr); }, S_OK, "xhabc"},
      {"before a", remove_head, [&] { return list->InsertBefore(x.Get(), &at_a); }, E_INVALIDARG,
       "bc"},
      {"after a", remove_all, [&] { return list->InsertAfter(x.Get(), &at_a); }, E_INVALIDARG, ""},
      {"after b", remove_head, [&] { return list->InsertAfter(x.Get(), &at_b); }, S_OK, "bxc"},
      {"SetAt", remove_all, [&] { return list->SetAt(at_b, x.Get()); }, E_INVALIDARG, ""},
      {"GetNext", remove_all, [&] { return list->GetNext(&at_a, out.Put()); }, S_OK, ""},
      {"GetHead", remove_all, [&] { return list->GetHead(out.Put()); }, S_OK, ""},
      {"For Each", remove_head,
       [&] { return client::Invoke(*list, DISPID_NEWENUM, DISPATCH_METHOD).code; }, S_OK, "bc"},
      {"AddHeadColl", remove_head, [&] { return list->AddHeadColl(other.Get()); }, S_OK, "yzbc"},
      {"AddHeadColl", remove_all, [&] { return list->AddHeadColl(other.Get()); }, S_OK, "yz"},
      {"AddTailColl", add_head, [&] { return list->AddTailColl(other.Get()); }, S_OK, "habcyz"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    list = New<List>();
    const ComPtr<Item> first = Add(*list, "a");  // may be called after the list has let go of it
    for (const char* const key : {"b", "c"}) Add(*list, key);
    x = New<Item>();
    other = New<List>();
    for (const char* const key : {"y", "z"}) Add(*other, key);
    at_a = PositionAt(*list, 0);
    at_b = PositionAt(*list, 1);
    x->at_add = first->at_add = other->at_next = row.meanwhile;
    EXPECT_EQ(row.result, row.call());
    x->at_add = first->at_add = {};
    EXPECT_EQ(row.keys, Keys(*list));
  }
}

}  // namespace
}  // namespace sab::testing
