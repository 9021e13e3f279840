// Registering for one user, in the tests' own registry. On Windows a script does the same with
// regsvr32.

#include <gtest/gtest.h>

#include "server/created_object.h"
#include "support/server_library.h"

namespace sab::testing {
namespace {

bool IsThere(HKEY root, const OLECHAR* path) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path, 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
  RegCloseKey(key);
  return true;
}

HRESULT CreateByProgId() {
  CLSID clsid{};
  const HRESULT result = CLSIDFromProgID(OLESTR("SabXmlParser.VeAppParser"), &clsid);
  if (FAILED(result)) return result;
  ComPtr<IDispatch> object;
  return CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.PutVoid());
}

TEST(UserRegistration, ClassesOfTheUserAreFoundAndTheMachineIsLeftAlone) {
  EXPECT_EQ(E_INVALIDARG, Server().Install(true, OLESTR("users")));
  EXPECT_EQ(E_INVALIDARG, Server().Install(true, OLESTR("u")));
  ASSERT_EQ(S_OK, Server().Unregister());
  EXPECT_EQ(CO_E_CLASSSTRING, CreateByProgId());

  EXPECT_EQ(S_OK, Server().Install(true, OLESTR("User")));
  EXPECT_FALSE(IsThere(HKEY_CLASSES_ROOT, OLESTR("SabXmlParser.VeAppParser")));
  EXPECT_TRUE(
      IsThere(HKEY_CURRENT_USER, OLESTR("Software\\Classes\\SabXmlParser.VeAppParser\\CurVer")));
  EXPECT_EQ(S_OK, CreateByProgId());

  EXPECT_EQ(S_OK, Server().Install(false, OLESTR("user")));
  EXPECT_FALSE(IsThere(HKEY_CURRENT_USER, OLESTR("Software\\Classes\\SabXmlParser.VeAppParser")));
  EXPECT_EQ(CO_E_CLASSSTRING, CreateByProgId());
  ASSERT_EQ(S_OK, Server().Install(true, nullptr));
  EXPECT_EQ(S_OK, CreateByProgId());
}

}  // namespace
}  // namespace sab::testing
