#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <vector>

#include "common/accel_list.h"

namespace sab::testing {
namespace {

// A list and the text of its keys, changed alike through a long random life: any slip in the order,
// the links, the free list or the counts shows as another text.
TEST(CollectionTest, EveryOperationGivesItsOrderThroughARandomLife) {
  const AccelList list = NewList();
  const AccelList pair = NewList("YZ");
  std::string keys;
  // What the operations take: an element and its key, and two of the list's places.
  Accel x;
  char key = 0;
  std::size_t i = 0;
  std::size_t j = 0;
  LONG_PTR at_i = 0;
  LONG_PTR at_j = 0;
  LONG_PTR none = 0;
  struct Operation {
    std::function<HRESULT()> on_list;
    std::function<void()> on_keys;
  };
  constexpr std::size_t kOperationsOnEmptyList = 8;
  const Operation operations[] = {
      {[&] { return list->AddHead(x.Get(), nullptr); }, [&] { keys.insert(0, 1, key); }},
      {[&] { return list->AddTail(x.Get(), nullptr); }, [&] { keys += key; }},
      {[&] { return list->AddHeadColl(pair.Get()); }, [&] { keys.insert(0, "YZ"); }},
      {[&] { return list->AddTailColl(pair.Get()); }, [&] { keys += "YZ"; }},
      {[&] { return list->AddHeadColl(list.Get()); }, [&] { keys += std::string(keys); }},
      {[&] { return list->AddTailColl(list.Get()); }, [&] { keys += std::string(keys); }},
      {[&] { return list->InsertBefore(x.Get(), &none); }, [&] { keys.insert(0, 1, key); }},
      {[&] { return list->InsertAfter(x.Get(), &none); }, [&] { keys += key; }},
      {[&] { return list->InsertBefore(x.Get(), &at_i); }, [&] { keys.insert(i, 1, key); }},
      {[&] { return list->InsertAfter(x.Get(), &at_i); }, [&] { keys.insert(i + 1, 1, key); }},
      {[&] { return list->SetAt(at_i, x.Get()); }, [&] { keys[i] = key; }},
      {[&] { return list->SwapElements(at_i, at_j); }, [&] { std::swap(keys[i], keys[j]); }},
      {[&] { return list->MoveToHead(at_i); },
       [&] { keys = keys[i] + keys.substr(0, i) + keys.substr(i + 1); }},
      {[&] { return list->MoveToTail(at_i); },
       [&] { keys = keys.substr(0, i) + keys.substr(i + 1) + keys[i]; }},
      {[&] { return list->RemoveAt(at_i); }, [&] { keys.erase(i, 1); }},
      {[&] { return list->RemoveHeadNoReturn(); }, [&] { keys.erase(0, 1); }},
      {[&] { return list->RemoveTailNoReturn(); }, [&] { keys.pop_back(); }},
      {[&] { return list->RemoveItem(x.Get()); },
       [&] { keys.erase(std::min(keys.find(key), keys.size()), 1); }},
      {[&] { return list->RemoveAll(); }, [&] { keys.clear(); }},
  };
  std::vector<Accel> pool;
  for (char c = 'a'; c <= 'z'; ++c) pool.push_back(NewAccel({c}));
  std::mt19937 random(20260117);
  const auto pick = [&](std::size_t bound) { return random() % bound; };
  for (int step = 0; step < 4000; ++step) {
    const std::size_t element = pick(pool.size());
    x = pool[element];
    key = static_cast<char>('a' + element);
    std::size_t chosen = pick(kOperationsOnEmptyList);
    if (!keys.empty()) {
      i = pick(keys.size());
      j = pick(keys.size());
      at_i = PositionAt(*list, i);
      at_j = PositionAt(*list, j);
      none = 0;
      chosen = keys.size() < 100 ? pick(std::size(operations)) : std::size(operations) - 1;
    }
    ASSERT_EQ(S_OK, operations[chosen].on_list()) << chosen;
    operations[chosen].on_keys();
    ASSERT_EQ(keys, Keys(*list)) << chosen;
  }
}

TEST(CollectionTest, PositionsNameElementsAndFindLooksAfterTheStart) {
  const AccelList list = NewList("pqrs");
  const LONG_PTR q = PositionAt(*list, 1);
  EXPECT_EQ(S_OK, list->SwapElements(q, PositionAt(*list, 3)));
  EXPECT_EQ(S_OK, list->MoveToHead(q));
  Accel at_q;
  EXPECT_EQ(S_OK, list->GetAt(q, at_q.Put()));
  EXPECT_EQ("q", TextOf(*at_q, &IVePrsAccel::get_Key));
  EXPECT_EQ(q, PositionAt(*list, 0));

  LONG_PTR twice = 0;
  EXPECT_EQ(S_OK, list->AddTail(at_q.Get(), &twice));
  const std::pair<LONG_PTR, LONG_PTR> rows[] = {{0, q}, {q, twice}, {twice, 0}};
  for (const auto& [start, expected] : rows) {
    LONG_PTR found = -1;
    EXPECT_EQ(S_OK, list->Find(at_q.Get(), start, &found));
    EXPECT_EQ(expected, found);
  }
}

TEST(CollectionTest, WrongPositionsAndNullPointersAreRefused) {
  const AccelList collection = NewList("pq");
  const AccelList other = NewList("pq");
  const Accel x = NewAccel("x");
  LONG_PTR stale = 0;
  ASSERT_EQ(S_OK, collection->AddTail(x.Get(), &stale));
  ASSERT_EQ(S_OK, collection->RemoveAt(stale));
  ASSERT_EQ(S_OK, collection->AddTail(NewAccel("r").Get(), nullptr));  // takes the freed node

  using Results = std::vector<HRESULT>;
  Accel out;
  const LONG_PTR head = PositionAt(*collection, 0);
  for (const LONG_PTR bad :
       {stale, PositionAt(*other, 0), LONG_PTR{-1}, LONG_PTR{1}, LONG_PTR{0x7FFFFFFF}}) {
    LONG_PTR position = bad;
    EXPECT_EQ(Results(12, E_INVALIDARG),
              Results({collection->GetAt(bad, out.Put()), collection->GetNext(&position, out.Put()),
                       collection->GetPrev(&position, out.Put()), collection->SetAt(bad, x.Get()),
                       collection->RemoveAt(bad), collection->InsertAfter(x.Get(), &position),
                       collection->InsertBefore(x.Get(), &position),
                       collection->Find(x.Get(), bad, &position), collection->MoveToHead(bad),
                       collection->MoveToTail(bad), collection->SwapElements(bad, head),
                       collection->SwapElements(head, bad)}));
    EXPECT_EQ(bad, position);
  }
  LONG_PTR none = 0;
  EXPECT_EQ(Results(6, E_FAIL),
            Results({collection->GetAt(0, out.Put()), collection->GetNext(&none, out.Put()),
                     collection->GetPrev(&none, out.Put()), collection->SetAt(0, x.Get()),
                     collection->MoveToHead(0), collection->MoveToTail(0)}));
  EXPECT_EQ(Results(14, E_INVALIDARG),
            Results({collection->RemoveAt(0), collection->GetCount(nullptr),
                     collection->IsEmpty(nullptr), collection->GetHead(nullptr),
                     collection->RemoveTail(nullptr), collection->RemoveItem(nullptr),
                     collection->AddHead(nullptr, nullptr), collection->AddTailColl(nullptr),
                     collection->GetHeadPosition(nullptr), collection->GetNext(nullptr, out.Put()),
                     collection->GetAt(head, nullptr), collection->InsertAfter(x.Get(), nullptr),
                     collection->Find(x.Get(), 0, nullptr), collection->FindIndex(0, nullptr)}));
  EXPECT_EQ("pqr", Keys(*collection));
}

TEST(CollectionTest, AStalePositionStaysRefused) {
  const AccelList list = NewList();
  const Accel x = NewAccel("x");
  LONG_PTR stale = 0;
  ASSERT_EQ(S_OK, list->AddTail(x.Get(), &stale));
  for (int i = 0; i < (1 << 23) + 9; ++i) {
    LONG_PTR position = 0;
    list->RemoveHeadNoReturn();
    list->AddTail(x.Get(), &position);
    if (position == stale) FAIL() << i;
  }
}

TEST(CollectionTest, AnEmptyCollectionAnswersForItself) {
  const AccelList list = NewList();
  VARIANT_BOOL empty = VARIANT_FALSE;
  EXPECT_EQ(S_OK, list->IsEmpty(&empty));
  EXPECT_EQ(VARIANT_TRUE, empty);
  Accel none;
  EXPECT_EQ(S_OK, list->GetHead(none.Put()));
  EXPECT_FALSE(none || PositionAt(*list, 0));
  EXPECT_EQ(E_FAIL, list->RemoveHead(none.Put()));
  EXPECT_EQ(E_FAIL, list->RemoveTailNoReturn());
}

}  // namespace
}  // namespace sab::testing
