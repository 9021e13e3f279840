#pragma once

#include "server/created_object.h"

namespace sab::testing {

// Lists of accelerators, which stand for all lists: their class differs in the element alone.
using Accel = ComPtr<IVePrsAccel>;
using AccelList = ComPtr<IVePrsAccelColl>;

inline Accel NewAccel(const std::string& key) {
  Accel accel = Created<IVePrsAccel>(CLSID_VePrsAccel);
  EXPECT_EQ(S_OK, accel->put_Key(Bstr(FromUtf8(key)).Get()));
  return accel;
}

/// @param keys a letter for each element
inline AccelList NewList(const std::string& keys = {}) {
  AccelList list = Created<IVePrsAccelColl>(CLSID_VePrsAccelColl);
  for (const char key : keys) EXPECT_EQ(S_OK, list->AddTail(NewAccel({key}).Get(), nullptr));
  return list;
}

inline LONG_PTR PositionAt(IVePrsAccelColl& list, ULONG_PTR index) {
  LONG_PTR position = -1;
  EXPECT_EQ(S_OK, list.FindIndex(index, &position));
  return position;
}

/// The keys from head to tail; they must read the same from tail to head.
inline std::string Keys(IVePrsAccelColl& list) {
  std::string forward;
  std::string backward;
  LONG_PTR position = 0;
  EXPECT_EQ(S_OK, list.GetHeadPosition(&position));
  for (Accel accel; position; forward += TextOf(*accel, &IVePrsAccel::get_Key))
    EXPECT_EQ(S_OK, list.GetNext(&position, accel.Put()));
  EXPECT_EQ(S_OK, list.GetTailPosition(&position));
  for (Accel accel; position; backward.insert(0, TextOf(*accel, &IVePrsAccel::get_Key)))
    EXPECT_EQ(S_OK, list.GetPrev(&position, accel.Put()));
  EXPECT_EQ(forward, backward);
  ULONG_PTR count = 0;
  EXPECT_EQ(S_OK, list.GetCount(&count));
  EXPECT_EQ(forward.size(), count);
  return forward;
}

}  // namespace sab::testing
