// Groups that keep the values that their files have.

#include "base/bstr.h"
#include "settings/settings_groups.h"
#include "settings/settings_test.h"
#include "support/server_library.h"

namespace sab::testing {
namespace {

using NamedValuesTest = SettingsTest;

std::string ValuesOf(const LateObject& object) {
  std::string values;
  const int count = std::stoi(object.Get("ValueCount"));
  for (int i = 0; i < count; ++i) {
    const std::string name = object.Get("ValueName", {std::to_string(i)});
    values += name + "=" + object.Get("Value", {name}) + " ";
  }
  return values;
}

TEST_F(NamedValuesTest, EveryGroupKeepsWhatItsFileHas) {
  for (const std::string_view name : NamedValueClasses()) {
    SCOPED_TRACE(name);
    const LateObject object{std::string(name)};
    Write(
        "<S><G><Scale> 2 </Scale><!-- c --><Font>仿宋</Font><Scale>3</Scale>text</G>"
        "<G><Font>no</Font><Third/></G><Saved/></S>");
    ASSERT_EQ(S_OK, Load(object));
    EXPECT_EQ("Scale=2 Font=仿宋 Third= ", ValuesOf(object));

    ASSERT_EQ(S_OK, object.Call("RemoveValue", {"Font"}));
    EXPECT_EQ("Scale=2 Third= ", ValuesOf(object));
    ASSERT_EQ(S_OK, Save(object, "/S/Saved"));
    EXPECT_EQ("Scale=2 Third=", Elements("/S/Saved"));

    Write("<S><G><New>n</New><Third>3</Third></G></S>");
    ASSERT_EQ(S_OK, Load(object));
    EXPECT_EQ("Scale=2 Third=3 New=n ", ValuesOf(object));
    ASSERT_EQ(S_OK, object.Call("RemoveAllValues"));
    EXPECT_EQ("", ValuesOf(object));
  }
}

TEST_F(NamedValuesTest, ValuesArePutByNameAndOddRequestsRefused) {
  const auto parser = LateObject("VeProductCfgParser").As<IVeProductCfgParser>();
  const auto put = [&](const char* name) {
    return parser->put_Value(Bstr(FromUtf8(name)).Get(), Bstr(OLESTR("1")).Get());
  };
  for (const char* name : {"B", "A", "B"}) EXPECT_EQ(S_OK, put(name));
  EXPECT_EQ("B=1 A=1 ", ValuesOf(LateObject(parser.As<IDispatch>())));
  for (const char* name : {"", "a b", "1", "p:a", "<"}) EXPECT_EQ(E_INVALIDARG, put(name));

  BSTR text = nullptr;
  for (const INT index : {-1, 2}) EXPECT_EQ(E_INVALIDARG, parser->get_ValueName(index, &text));
  for (const OLECHAR* name : {OLESTR("b"), OLESTR("")}) {
    EXPECT_EQ(E_INVALIDARG, parser->get_Value(Bstr(name).Get(), &text));
    EXPECT_EQ(E_INVALIDARG, parser->RemoveValue(Bstr(name).Get()));
  }
  EXPECT_EQ(E_POINTER, parser->get_Value(Bstr(OLESTR("A")).Get(), nullptr));
}

TEST_F(NamedValuesTest, KindsOfLinesAreNumbersFromZeroToTen) {
  const LateObject object("VeProjectionCfgParser");
  const auto parser = object.As<IVeProjectionCfgParser>();
  const Bstr name(OLESTR("Visible"));
  for (const char* text : {"0", "10", "11", "-1", "", "1x"}) {
    EXPECT_EQ(S_OK, parser->put_Value(name.Get(), Bstr(FromUtf8(text)).Get()));
    EXPECT_EQ(text[0] == '0' || text == std::string("10") ? text : "(0x80070057)",
              object.Get("LineType", {"Visible"}))
        << text;
  }
  EXPECT_EQ(S_OK, parser->put_LineType(name.Get(), PLT_CENTERLN));
  EXPECT_EQ(E_INVALIDARG, parser->put_LineType(name.Get(), static_cast<ProjectionLineType>(11)));
  EXPECT_EQ("Visible=2 ", ValuesOf(object));
}

TEST_F(NamedValuesTest, APackingHasSetsOfValues) {
  Write(
      "<S><G><Target>zip</Target><Bale><Path>a</Path><Path>b</Path><Deep><X/></Deep></Bale>"
      "<Bale><Path>c</Path><Level>2</Level></Bale></G><Saved/></S>");
  const LateObject object("VeFileBaleCfgParser");
  ASSERT_EQ(S_OK, Load(object));
  const LateObject bales = object.Follow("GetFileBales");
  EXPECT_EQ("[{Name=Bale ValueCount=1} {Name=Bale ValueCount=2}]", object.Get("GetFileBales"));
  const auto added = LateObject("VePrsFileBaleSet").As<IVePrsFileBaleSet>();
  EXPECT_EQ(E_INVALIDARG, added->put_Name(Bstr(OLESTR("a b")).Get()));
  EXPECT_EQ(S_OK, added->put_Name(Bstr(OLESTR("Extra")).Get()));
  EXPECT_EQ(S_OK, added->put_Value(Bstr(OLESTR("Path")).Get(), Bstr(OLESTR("d")).Get()));
  EXPECT_EQ(S_OK, bales.As<IVePrsFileBaleColl>()->AddTail(added.Get(), nullptr));
  ASSERT_EQ(S_OK, Save(object, "/S/Saved"));
  EXPECT_EQ("Target=zip Bale{Path=a} Bale{Path=c Level=2} Extra{Path=d}", Elements("/S/Saved"));

  // Without sets in the file those that there are stay; with some they are replaced.
  Write("<S><G><Target>7z</Target></G></S>");
  ASSERT_EQ(S_OK, Load(object));
  EXPECT_EQ("3", bales.Get("Count"));
  Write("<S><G><One><A>1</A></One></G></S>");
  ASSERT_EQ(S_OK, Load(object));
  EXPECT_EQ("[{Name=One ValueCount=1}]", object.Get("GetFileBales"));
}

TEST_F(NamedValuesTest, OneClassIsRegisteredByAnIdentifierAndCreatedByTwo) {
  ComPtr<IUnknown> object;
  EXPECT_TRUE(FAILED(CoCreateInstance(CLSID_VeCustomPTParser, nullptr, CLSCTX_INPROC_SERVER,
                                      IID_IUnknown, object.PutVoid())));
  ComPtr<IClassFactory> factory;
  EXPECT_EQ(S_OK,
            Server().GetClassObject(CLSID_VeCustomPTParser, IID_IClassFactory, factory.PutVoid()));
  EXPECT_TRUE(LateObject("VeCustomPTParser").As<IVeCustomPTParser>());
}

}  // namespace
}  // namespace sab::testing
