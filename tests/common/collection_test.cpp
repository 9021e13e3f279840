#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <vector>

#include "server/created_object.h"

namespace sab::testing {
namespace {

using Accel = ComPtr<IVePrsAccel>;
using AccelColl = ComPtr<IVePrsAccelColl>;

class CollectionTest : public ::testing::Test {
 protected:
  static Accel NewAccel(const std::string& key) {
    Accel accel = Created<IVePrsAccel>(CLSID_VePrsAccel);
    EXPECT_EQ(S_OK, accel->put_Key(Bstr(FromUtf8(key)).Get()));
    return accel;
  }
  static AccelColl NewCollection(const std::string& keys = {}) {
    AccelColl collection = Created<IVePrsAccelColl>(CLSID_VePrsAccelColl);
    for (const char key : keys) {
      EXPECT_EQ(S_OK, collection->AddTail(NewAccel({key}).Get(), nullptr));
    }
    return collection;
  }
  static LONG_PTR PositionAt(const AccelColl& collection, ULONG_PTR index) {
    LONG_PTR position = -1;
    EXPECT_EQ(S_OK, collection->FindIndex(index, &position));
    return position;
  }
  // The keys from head to tail; they must read the same from tail to head.
  static std::string Keys(const AccelColl& collection) {
    std::string forward;
    std::string backward;
    LONG_PTR position = 0;
    EXPECT_EQ(S_OK, collection->GetHeadPosition(&position));
    while (position) {
      Accel accel;
      EXPECT_EQ(S_OK, collection->GetNext(&position, accel.Put()));
      forward += TextOf(*accel, &IVePrsAccel::get_Key);
    }
    EXPECT_EQ(S_OK, collection->GetTailPosition(&position));
    while (position) {
      Accel accel;
      EXPECT_EQ(S_OK, collection->GetPrev(&position, accel.Put()));
      backward = TextOf(*accel, &IVePrsAccel::get_Key) + backward;
    }
    EXPECT_EQ(forward, backward);
    ULONG_PTR count = 0;
    EXPECT_EQ(S_OK, collection->GetCount(&count));
    EXPECT_EQ(forward.size(), count);
    return forward;
  }
};

TEST_F(CollectionTest, EveryOrderingOperationGivesItsOrder) {
  struct Row {
    const char* name;
    const char* before;
    std::function<HRESULT(IVePrsAccelColl&, const std::function<LONG_PTR(ULONG_PTR)>&)> operation;
    const char* after;
  };
  const Accel x = NewAccel("x");
  const AccelColl ab = NewCollection("ab");
  const Row rows[] = {
      {"add head", "c", [&](auto& c, auto&) { return c.AddHead(x.Get(), nullptr); }, "xc"},
      {"add tail", "c", [&](auto& c, auto&) { return c.AddTail(x.Get(), nullptr); }, "cx"},
      {"add collection at head", "c", [&](auto& c, auto&) { return c.AddHeadColl(ab.Get()); },
       "abc"},
      {"add collection at tail", "c", [&](auto& c, auto&) { return c.AddTailColl(ab.Get()); },
       "cab"},
      {"add itself at head", "pq", [&](auto& c, auto&) { return c.AddHeadColl(&c); }, "pqpq"},
      {"add itself at tail", "pq", [&](auto& c, auto&) { return c.AddTailColl(&c); }, "pqpq"},
      {"insert after the tail", "pq",
       [&](auto& c, auto& at) {
         LONG_PTR position = at(1);
         return c.InsertAfter(x.Get(), &position);
       },
       "pqx"},
      {"insert after none", "pq",
       [&](auto& c, auto&) {
         LONG_PTR position = 0;
         return c.InsertAfter(x.Get(), &position);
       },
       "pqx"},
      {"insert before the middle", "pq",
       [&](auto& c, auto& at) {
         LONG_PTR position = at(1);
         return c.InsertBefore(x.Get(), &position);
       },
       "pxq"},
      {"insert before none", "pq",
       [&](auto& c, auto&) {
         LONG_PTR position = 0;
         return c.InsertBefore(x.Get(), &position);
       },
       "xpq"},
      {"move the tail to the head", "pqr", [](auto& c, auto& at) { return c.MoveToHead(at(2)); },
       "rpq"},
      {"move the head to the head", "pqr", [](auto& c, auto& at) { return c.MoveToHead(at(0)); },
       "pqr"},
      {"move the middle to the tail", "pqr", [](auto& c, auto& at) { return c.MoveToTail(at(1)); },
       "prq"},
      {"swap neighbours", "pqrs", [](auto& c, auto& at) { return c.SwapElements(at(1), at(2)); },
       "prqs"},
      {"swap neighbours backwards", "pqrs",
       [](auto& c, auto& at) { return c.SwapElements(at(2), at(1)); }, "prqs"},
      {"swap the ends", "pqrs", [](auto& c, auto& at) { return c.SwapElements(at(3), at(0)); },
       "sqrp"},
      {"swap two of two", "pq", [](auto& c, auto& at) { return c.SwapElements(at(1), at(0)); },
       "qp"},
      {"swap with itself", "pq", [](auto& c, auto& at) { return c.SwapElements(at(1), at(1)); },
       "pq"},
      {"remove at", "pqr", [](auto& c, auto& at) { return c.RemoveAt(at(1)); }, "pr"},
      {"remove the head", "pqr", [](auto& c, auto&) { return c.RemoveHeadNoReturn(); }, "qr"},
      {"remove the tail", "pqr", [](auto& c, auto&) { return c.RemoveTailNoReturn(); }, "pq"},
      {"remove a stranger", "pqr", [&](auto& c, auto&) { return c.RemoveItem(x.Get()); }, "pqr"},
      {"remove all", "pqr", [](auto& c, auto&) { return c.RemoveAll(); }, ""},
      {"set at", "pqr", [&](auto& c, auto& at) { return c.SetAt(at(1), x.Get()); }, "pxr"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const AccelColl collection = NewCollection(row.before);
    EXPECT_EQ(S_OK,
              row.operation(*collection, [&](ULONG_PTR i) { return PositionAt(collection, i); }));
    EXPECT_EQ(row.after, Keys(collection));
  }
}

TEST_F(CollectionTest, PositionsNameElementsNotPlaces) {
  const AccelColl collection = NewCollection("pqrs");
  const LONG_PTR q = PositionAt(collection, 1);
  const LONG_PTR s = PositionAt(collection, 3);
  EXPECT_EQ(S_OK, collection->SwapElements(q, s));
  EXPECT_EQ(S_OK, collection->MoveToHead(q));
  Accel at_q;
  EXPECT_EQ(S_OK, collection->GetAt(q, at_q.Put()));
  EXPECT_EQ("q", TextOf(*at_q, &IVePrsAccel::get_Key));
  EXPECT_EQ(q, PositionAt(collection, 0));
}

TEST_F(CollectionTest, FindLooksBehindTheStart) {
  const AccelColl collection = NewCollection("p");
  const Accel twice = NewAccel("x");
  LONG_PTR first = 0;
  LONG_PTR second = 0;
  EXPECT_EQ(S_OK, collection->AddTail(twice.Get(), &first));
  EXPECT_EQ(S_OK, collection->AddTail(twice.Get(), &second));
  const struct {
    LONG_PTR start;
    LONG_PTR found;
  } rows[] = {{0, first}, {first, second}, {second, 0}};
  for (const auto& row : rows) {
    LONG_PTR position = -1;
    EXPECT_EQ(S_OK, collection->Find(twice.Get(), row.start, &position));
    EXPECT_EQ(row.found, position);
  }
}

TEST_F(CollectionTest, WrongPositionsAndNullPointersAreRefused) {
  const AccelColl collection = NewCollection("pq");
  const AccelColl other = NewCollection("pq");
  const Accel x = NewAccel("x");
  LONG_PTR stale = 0;
  ASSERT_EQ(S_OK, collection->AddTail(x.Get(), &stale));
  ASSERT_EQ(S_OK, collection->RemoveAt(stale));
  ASSERT_EQ(S_OK, collection->AddTail(NewAccel("r").Get(), nullptr));  // takes the freed node

  for (const LONG_PTR bad :
       {stale, PositionAt(other, 0), LONG_PTR{-1}, LONG_PTR{1}, LONG_PTR{0x7FFFFFFF}}) {
    Accel out;
    LONG_PTR position = bad;
    EXPECT_EQ(E_INVALIDARG, collection->GetAt(bad, out.Put()));
    EXPECT_EQ(E_INVALIDARG, collection->GetNext(&position, out.Put()));
    EXPECT_EQ(E_INVALIDARG, collection->GetPrev(&position, out.Put()));
    EXPECT_EQ(E_INVALIDARG, collection->SetAt(bad, x.Get()));
    EXPECT_EQ(E_INVALIDARG, collection->RemoveAt(bad));
    EXPECT_EQ(E_INVALIDARG, collection->InsertAfter(x.Get(), &position));
    EXPECT_EQ(E_INVALIDARG, collection->InsertBefore(x.Get(), &position));
    EXPECT_EQ(E_INVALIDARG, collection->Find(x.Get(), bad, &position));
    EXPECT_EQ(E_INVALIDARG, collection->MoveToHead(bad));
    EXPECT_EQ(E_INVALIDARG, collection->MoveToTail(bad));
    EXPECT_EQ(E_INVALIDARG, collection->SwapElements(bad, PositionAt(collection, 0)));
    EXPECT_EQ(E_INVALIDARG, collection->SwapElements(PositionAt(collection, 0), bad));
    EXPECT_EQ(bad, position);
  }

  Accel out;
  LONG_PTR none = 0;
  EXPECT_EQ(E_FAIL, collection->GetAt(0, out.Put()));
  EXPECT_EQ(E_FAIL, collection->GetNext(&none, out.Put()));
  EXPECT_EQ(E_FAIL, collection->GetPrev(&none, out.Put()));
  EXPECT_EQ(E_FAIL, collection->SetAt(0, x.Get()));
  EXPECT_EQ(E_FAIL, collection->MoveToHead(0));
  EXPECT_EQ(E_FAIL, collection->MoveToTail(0));
  EXPECT_EQ(E_INVALIDARG, collection->RemoveAt(0));

  EXPECT_EQ(E_INVALIDARG, collection->GetCount(nullptr));
  EXPECT_EQ(E_INVALIDARG, collection->IsEmpty(nullptr));
  EXPECT_EQ(E_INVALIDARG, collection->GetHead(nullptr));
  EXPECT_EQ(E_INVALIDARG, collection->RemoveTail(nullptr));
  EXPECT_EQ(E_INVALIDARG, collection->RemoveItem(nullptr));
  EXPECT_EQ(E_INVALIDARG, collection->AddHead(nullptr, nullptr));
  EXPECT_EQ(E_INVALIDARG, collection->AddTailColl(nullptr));
  EXPECT_EQ(E_INVALIDARG, collection->GetHeadPosition(nullptr));
  EXPECT_EQ(E_INVALIDARG, collection->GetNext(nullptr, out.Put()));
  EXPECT_EQ(E_INVALIDARG, collection->GetAt(PositionAt(collection, 0), nullptr));
  EXPECT_EQ(E_INVALIDARG, collection->InsertAfter(x.Get(), nullptr));
  EXPECT_EQ(E_INVALIDARG, collection->Find(x.Get(), 0, nullptr));
  EXPECT_EQ(E_INVALIDARG, collection->FindIndex(0, nullptr));
  EXPECT_EQ("pqr", Keys(collection));
}

TEST_F(CollectionTest, AnEmptyCollectionAnswersForItself) {
  const AccelColl collection = NewCollection();
  VARIANT_BOOL empty = VARIANT_FALSE;
  EXPECT_EQ(S_OK, collection->IsEmpty(&empty));
  EXPECT_EQ(VARIANT_TRUE, empty);
  Accel none;
  EXPECT_EQ(S_OK, collection->GetHead(none.Put()));
  EXPECT_FALSE(none);
  EXPECT_EQ(0, PositionAt(collection, 0));
  EXPECT_EQ(E_FAIL, collection->RemoveHead(none.Put()));
  EXPECT_EQ(E_FAIL, collection->RemoveTailNoReturn());
  EXPECT_NE("", TakeErrorDescription());
}

// A long random life against a plain vector: any slip in the links, the free list, the counts or
// the references shows as another order or as a live object at the end.
TEST_F(CollectionTest, BehavesAsAVectorThroughRandomOperations) {
  std::mt19937 random(20260117);
  const AccelColl collection = NewCollection();
  std::vector<IVePrsAccel*> model;
  std::vector<Accel> pool;
  for (char key = 'a'; key <= 'z'; ++key) pool.push_back(NewAccel({key}));
  for (int step = 0; step < 4000; ++step) {
    const auto pick = [&](std::size_t bound) {
      return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random);
    };
    const Accel& accel = pool[pick(pool.size())];
    const std::size_t operation = pick(8);
    if (operation < 3 || model.empty()) {
      const std::size_t index = pick(model.size() + 1);
      LONG_PTR position = index < model.size() ? PositionAt(collection, index) : 0;
      ASSERT_EQ(S_OK, index < model.size() ? collection->InsertBefore(accel.Get(), &position)
                                           : collection->AddTail(accel.Get(), &position));
      model.insert(model.begin() + static_cast<std::ptrdiff_t>(index), accel.Get());
      continue;
    }
    const std::size_t i = pick(model.size());
    const std::size_t j = pick(model.size());
    const auto at_i = model.begin() + static_cast<std::ptrdiff_t>(i);
    if (operation < 5) {
      ASSERT_EQ(S_OK, collection->RemoveAt(PositionAt(collection, i)));
      model.erase(at_i);
    } else if (operation == 5) {
      ASSERT_EQ(S_OK,
                collection->SwapElements(PositionAt(collection, i), PositionAt(collection, j)));
      std::swap(model[i], model[j]);
    } else if (operation == 6) {
      ASSERT_EQ(S_OK, collection->SetAt(PositionAt(collection, i), accel.Get()));
      model[i] = accel.Get();
    } else {
      ASSERT_EQ(S_OK, collection->MoveToHead(PositionAt(collection, i)));
      std::rotate(model.begin(), at_i, at_i + 1);
    }
  }
  std::string expected;
  for (IVePrsAccel* const accel : model) expected += TextOf(*accel, &IVePrsAccel::get_Key);
  EXPECT_EQ(expected, Keys(collection));
}

}  // namespace
}  // namespace sab::testing
