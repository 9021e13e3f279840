#include <gtest/gtest.h>

#include "server/class_entry.h"
#include "server/created_object.h"
#include "support/allocation_faults.h"
#include "support/server_library.h"

namespace sab::testing {
namespace {

// Whatever allocation fails, a class is created or says that there is no memory, and leaves nothing
// behind; that what it could not create of its own is missing then is no failure.
TEST(CreationFaults, EveryAllocationMayFailForEveryClass) {
  long failures = 0;
  for (const ClassEntry& entry : ClassTable()) {
    SCOPED_TRACE(entry.name);
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(S_OK, Server().GetClassObject(*entry.clsid, IID_IClassFactory, factory.PutVoid()));
    bool has_struck = true;
    for (long successes = 0; has_struck; ++successes) {
      ASSERT_LT(successes, 10000);
      ComPtr<IDispatch> object;
      HRESULT result = S_OK;
      bool is_created = false;
      {
        const AllocationFaults faults(successes);
        result = factory->CreateInstance(nullptr, IID_IDispatch, object.PutVoid());
        is_created = static_cast<bool>(object);
        object.Reset();  // when there is no memory either
        has_struck = faults.HasStruck();
      }
      ASSERT_EQ(SUCCEEDED(result), is_created) << successes;
      if (FAILED(result)) {
        ASSERT_EQ(E_OUTOFMEMORY, result) << successes;
        ++failures;
      }
      factory.Reset();
      ASSERT_EQ(S_OK, Server().CanUnloadNow()) << successes;
      Server().GetClassObject(*entry.clsid, IID_IClassFactory, factory.PutVoid());
    }
  }
  EXPECT_GE(failures, static_cast<long>(ClassTable().size()));
}

}  // namespace
}  // namespace sab::testing
