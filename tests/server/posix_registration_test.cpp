// Registering in the tests' own registry. On Windows a script does the same with regsvr32.

#include <gtest/gtest.h>

#include "server/created_object.h"
#include "server/registration.h"
#include "server/registry_text.h"
#include "support/scratch_registry.h"
#include "support/server_library.h"

namespace sab::testing {
namespace {

// What the user alone has of a class.
std::string OfTheUser(const std::string& key) {
  return RegistryText("Software\\Classes\\" + key, {}, HKEY_CURRENT_USER);
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
  EXPECT_EQ("(none)", RegistryText("SabXmlParser.VeAppParser"));
  EXPECT_EQ("SabXmlParser.VeAppParser.1", OfTheUser("SabXmlParser.VeAppParser\\CurVer"));
  EXPECT_EQ(S_OK, CreateByProgId());

  EXPECT_EQ(S_OK, Server().Install(false, OLESTR("user")));
  EXPECT_EQ("(none)", OfTheUser("SabXmlParser.VeAppParser"));
  EXPECT_EQ(CO_E_CLASSSTRING, CreateByProgId());
  ASSERT_EQ(S_OK, Server().Install(true, nullptr));
  EXPECT_EQ(S_OK, CreateByProgId());
}

// Of the system's type library on Windows, and not of this library then.
TEST(TypeInformation, KeepsTheLibraryLoaded) {
  ComPtr<ITypeInfo> info;
  ComPtr<ITypeLib> library;
  ComPtr<ITypeComp> comp;
  ASSERT_EQ(S_OK, Created<IDispatch>(CLSID_VeAppParser)->GetTypeInfo(0, 0, info.Put()));
  EXPECT_EQ(S_FALSE, Server().CanUnloadNow());
  ASSERT_EQ(S_OK, info->GetContainingTypeLib(library.Put(), nullptr));
  info.Reset();
  EXPECT_EQ(S_FALSE, Server().CanUnloadNow());
  ASSERT_EQ(S_OK, library->GetTypeComp(comp.Put()));
  library.Reset();
  EXPECT_EQ(S_FALSE, Server().CanUnloadNow());
  comp.Reset();
  EXPECT_EQ(S_OK, Server().CanUnloadNow());
}

// Three classes, of which the second cannot be registered.
// What another copy, or anybody else, has written under our keys is not ours to remove.
TEST(Registration, UnregisteringRemovesOnlyWhatThisCopyRegistered) {
  const ScratchRegistry registry;
  const std::string prog_id = "SabXmlParser.VeAppParser";
  const std::string ours = "/libSabXmlParser.so";
  ASSERT_EQ(S_OK, Server().Register());
  const std::string file = registry.folder.Read("registry.reg");
  std::string of_another = file;
  for (std::size_t at = 0; (at = of_another.find(ours, at)) != std::string::npos;) {
    of_another.replace(at, ours.size(), "/gone/another.so");
  }
  registry.folder.Write("registry.reg", of_another);
  EXPECT_EQ(S_OK, Server().Unregister());
  EXPECT_EQ(of_another, registry.folder.Read("registry.reg"));

  std::string changed = file;
  changed.replace(changed.rfind("=\"VeAppParser Class\""), 20, "=\"Their own words\"\n");
  registry.folder.Write("registry.reg", changed);
  EXPECT_EQ(S_OK, Server().Unregister());
  EXPECT_EQ("(none)", RegistryText(prog_id + ".1\\CLSID"));
  EXPECT_EQ("(none)", RegistryText("SabXmlParser.VeTmplParser"));
  EXPECT_NE(std::string::npos, registry.folder.Read("registry.reg").find("Their own words"));
}

TEST(Registration, StopsAtTheFirstFailureAndRestoresTheLocale) {
  ClassEntry rows[] = {ClassTable()[0], ClassTable()[1], ClassTable()[2]};
  constexpr CLSID kClassIds[] = {
      {0x51F1A001, 1, 2, {3}}, {0x51F1A002, 1, 2, {3}}, {0x51F1A003, 1, 2, {3}}};
  constexpr std::string_view kProgIds[] = {"SabTest.First", "SabTest\\Second", "SabTest.Third"};
  for (std::size_t i = 0; i < 3; ++i) {
    rows[i].clsid = &kClassIds[i];
    rows[i].registered_prog_id = kProgIds[i];
    rows[i].registered_version_independent_prog_id = kProgIds[i];
  }
  const LCID before = GetThreadLocale();
  constexpr LCID kOfTheCaller = 0x0404;
  SetThreadLocale(kOfTheCaller);
  const HRESULT result = RegisterServer(rows, RegistrationScope::kUser);
  EXPECT_TRUE(FAILED(result));
  const std::string description = TakeErrorDescription();
  EXPECT_NE(std::string::npos, description.find("class_with_progid.rgs:3:")) << description;
  EXPECT_EQ(kOfTheCaller, GetThreadLocale());
  SetThreadLocale(before);
  EXPECT_EQ("(none)", OfTheUser("SabTest.First"));
  EXPECT_EQ("(none)", OfTheUser("SabTest.Third"));
}

}  // namespace
}  // namespace sab::testing
