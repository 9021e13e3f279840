#include <gtest/gtest.h>

#include "config/temporary_folder.h"
#include "server/created_object.h"
#include "support/host_double.h"

namespace sab::testing {
namespace {

constexpr char kTwoPages[] =
    "<Application><AppTemplateID>T</AppTemplateID><ProductName>P</ProductName>"
    "<CompanyName>C</CompanyName><Configurations>"
    "<Configuration><CLSID>{1B2F4A60-9D33-4C41-8F52-0A6E7D21C9B4}</CLSID></Configuration>"
    "<Configuration><CLSID>{1B2F4A60-9D33-4C41-8F52-0A6E7D21C9B4}</CLSID></Configuration>"
    "</Configurations></Application>";

// The host puts a class of its own in the place of VePrsConfig, or fails to, in several ways; the
// result is the same list of two pages.
TEST(HostSubstitution, TheHostsClassComesFirstAndItsFailureFallsThrough) {
  const struct {
    const char* name;
    HostBehaviour behaviour;
    int substituted;
  } rows[] = {
      {"substitutes its own class", HostBehaviour::kSubstitutes, 2},
      {"fails to create", HostBehaviour::kFailsToCreate, 0},
      {"creates an object without the interface", HostBehaviour::kCreatesForeignObject, 0},
      {"has no list", HostBehaviour::kHasNoList, 0},
  };
  TemporaryFolder folder;
  folder.Write("app.xml", kTwoPages);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const HostDouble host(row.behaviour);
    const auto app = Created<IVeAppParser>(CLSID_VeAppParser);
    ASSERT_EQ(S_OK, app->put_ConfigurationPath(Bstr(folder.Name("app.xml")).Get()));
    ASSERT_EQ(S_OK, app->GenerateApp()) << TakeErrorDescription();
    ComPtr<IVePrsConfigColl> pages;
    ASSERT_EQ(S_OK, app->GetConfigurations(pages.Put()));
    ULONG_PTR count = 0;
    ASSERT_EQ(S_OK, pages->GetCount(&count));
    EXPECT_EQ(2U, count);
    EXPECT_EQ(row.substituted, host.Created());
    EXPECT_EQ(row.behaviour != HostBehaviour::kHasNoList, host.WasAsked());
  }
}

}  // namespace
}  // namespace sab::testing
