// Type information of the tables, as other platforms give it, against the type library in the DLL.

#include <gtest/gtest.h>

#include "automation/table_type_lib.h"
#include "idl/type_library_text.h"
#include "server/created_object.h"

namespace sab::testing {
namespace {

TEST(TypeInformation, TheTablesSayInEveryFieldWhatTheTypeLibrarySays) {
  ComPtr<ITypeInfo> info;
  ComPtr<ITypeLib> library;
  ASSERT_EQ(S_OK, Created<IDispatch>(CLSID_VeAppParser)->GetTypeInfo(0, 0, info.Put()));
  ASSERT_EQ(S_OK, info->GetContainingTypeLib(library.Put(), nullptr));
  const auto of_library = TextsOf(*library.Get());
  TableTypeLib* const tables = new TableTypeLib;
  const auto of_tables = TextsOf(*tables);
  tables->Release();
  EXPECT_EQ(173U, of_library.size());
  EXPECT_EQ(of_library.size(), of_tables.size());
  for (const auto& [name, text] : of_library) {
    const auto found = of_tables.find(name);
    EXPECT_EQ(text, found == of_tables.end() ? "nothing" : found->second);
  }
}

}  // namespace
}  // namespace sab::testing
