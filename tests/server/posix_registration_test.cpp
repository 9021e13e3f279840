// Registering in the tests' own registry. On Windows a script does the same with regsvr32.

#include <gtest/gtest.h>

#include "server/created_object.h"
#include "server/registration.h"
#include "server/registry_text.h"
#include "support/dynamic_library.h"
#include "support/host_double.h"
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

// An empty list is made when it is first asked for, of the class that served when its owner was
// made.
TEST(UserRegistration, AListIsOfTheClassThatWasRegisteredWhenItsOwnerWasMade) {
  OLECHAR clsid[40];
  StringFromGUID2(CLSID_VePrsRibbonButtonColl, clsid, 40);
  const Text key = Text(OLESTR("Software\\Classes\\CLSID\\")) + clsid;
  const Text library = FromUtf8(PathBesideTests("host/VeKit"));
  TemporaryFolder folder;
  folder.Write("ui.xml", "<UI><StatusBar><RibbonButton/></StatusBar></UI>");
  for (const bool is_substituted_before : {true, false, true}) {
    SCOPED_TRACE(is_substituted_before);
    const HostDouble host(HostBehaviour::kHasNoList);
    const auto substitute = [&] {
      HKEY opened = nullptr;
      ASSERT_EQ(ERROR_SUCCESS,
                RegCreateKeyExW(HKEY_CURRENT_USER, (key + OLESTR("\\InprocServer32")).c_str(), 0,
                                nullptr, 0, KEY_WRITE, nullptr, &opened, nullptr));
      EXPECT_EQ(ERROR_SUCCESS, RegSetValueExW(opened, nullptr, 0, REG_SZ,
                                              reinterpret_cast<const BYTE*>(library.c_str()),
                                              static_cast<DWORD>(2 * library.size() + 2)));
      RegCloseKey(opened);
    };
    if (is_substituted_before) substitute();
    const auto parser = Created<IVeUiParser>(CLSID_VeUiParser);
    ASSERT_EQ(S_OK, parser->put_ConfigurationPath(Bstr(folder.Name("ui.xml")).Get()));
    ASSERT_EQ(S_OK, parser->GenerateUI()) << TakeErrorDescription();
    const int made_while_reading = is_substituted_before ? 1 : 0;  // the list of the status bar
    EXPECT_EQ(made_while_reading, host.Created());
    if (!is_substituted_before) substitute();
    ComPtr<IVePrsUI> ui;
    ASSERT_EQ(S_OK, parser->get_UI(ui.Put()));
    for (int time = 0; time < 2; ++time) {
      ComPtr<IVePrsRibbonButtonColl> buttons;
      ASSERT_EQ(S_OK, ui->get_CaptionCustomButtons(buttons.Put()));
      EXPECT_EQ(2 * made_while_reading, host.Created());
    }
    EXPECT_EQ(ERROR_SUCCESS, RegDeleteTreeW(HKEY_CURRENT_USER, key.c_str()));
  }
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

// Three classes, of which the second cannot be registered.
TEST(Registration, StopsAtTheFirstFailureAndRestoresTheLocale) {
  const ScratchRegistry registry;
  ClassEntry rows[] = {ClassTable()[0], ClassTable()[1], ClassTable()[2]};
  rows[1].registered_prog_id = "SabTest\\Second";
  const LCID before = GetThreadLocale();
  constexpr LCID kOfTheCaller = 0x0404;
  SetThreadLocale(kOfTheCaller);
  EXPECT_TRUE(FAILED(RegisterServer(rows, RegistrationScope::kUser)));
  EXPECT_EQ(kOfTheCaller, GetThreadLocale());
  SetThreadLocale(before);
  const std::string description = TakeErrorDescription();
  EXPECT_NE(std::string::npos, description.find("class_with_progid.rgs:3:")) << description;
  for (const ClassEntry& row : rows)
    EXPECT_EQ("(none)", OfTheUser(row.VersionIndependentProgId())) << row.name;
}

}  // namespace
}  // namespace sab::testing
