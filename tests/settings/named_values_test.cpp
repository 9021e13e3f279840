// Groups that keep the values that their files have.

#include <gtest/gtest.h>

#include "base/com_error.h"
#include "config/temporary_folder.h"
#include "server/created_object.h"
#include "settings/settings_groups.h"
#include "settings/settings_object.h"

namespace sab::testing {
namespace {

class NamedValuesTest : public ::testing::Test {
 protected:
  void Write(const std::string& elements) { folder_.Write("t.xml", "<S>" + elements + "</S>"); }

  TemporaryFolder folder_;
  Text file_ = folder_.Name("t.xml");
};

std::string ValuesOf(SettingsObject& object) {
  std::string values;
  const int count = std::stoi(object.Get("ValueCount"));
  for (int i = 0; i < count; ++i) {
    const std::string name = object.Get("ValueName", std::to_string(i));
    values += name + "=" + object.Get("Value", name) + " ";
  }
  return values;
}

TEST_F(NamedValuesTest, EveryGroupKeepsWhatItsFileHas) {
  for (const std::string_view name : NamedValueClasses()) {
    SCOPED_TRACE(name);
    SettingsObject object{std::string(name)};
    Write(
        "<G><Scale> 2 </Scale><!-- c --><Font>仿宋</Font><Scale>3</Scale>text</G>"
        "<G><Font>no</Font><Third/></G><Saved/>");
    ASSERT_EQ(S_OK, object.Load(file_, "/S/G"));
    EXPECT_EQ("Scale=2 Font=仿宋 Third= ", ValuesOf(object));

    ASSERT_EQ(S_OK, object.Call("RemoveValue", {"Font"}));
    EXPECT_EQ("Scale=2 Third= ", ValuesOf(object));
    ASSERT_EQ(S_OK, object.Save(file_, "/S/Saved"));
    EXPECT_EQ("Scale=2 Third=", ElementsOf(file_, "/S/Saved"));

    Write("<G><New>n</New><Third>3</Third></G>");
    ASSERT_EQ(S_OK, object.Load(file_, "/S/G"));
    EXPECT_EQ("Scale=2 Third=3 New=n ", ValuesOf(object));
    ASSERT_EQ(S_OK, object.Call("RemoveAllValues", {}));
    EXPECT_EQ("", ValuesOf(object));
  }
}

TEST_F(NamedValuesTest, ValuesArePutByNameAndOddRequestsRefused) {
  const auto parser = Created<IVeProductCfgParser>(CLSID_VeProductCfgParser);
  const auto put = [&](const char* name, const char* value) {
    return parser->put_Value(Bstr(FromUtf8(name)).Get(), Bstr(FromUtf8(value)).Get());
  };
  for (const char* name : {"B", "A", "B"}) EXPECT_EQ(S_OK, put(name, "1"));
  INT count = 0;
  EXPECT_EQ(S_OK, parser->get_ValueCount(&count));
  EXPECT_EQ(2, count);
  for (const char* name : {"", "a b", "1", "p:a", "<"}) EXPECT_EQ(E_INVALIDARG, put(name, "1"));

  OLECHAR mark[] = OLESTR("mark");
  BSTR text = mark;
  for (const INT index : {-1, 2}) EXPECT_EQ(E_INVALIDARG, parser->get_ValueName(index, &text));
  for (const OLECHAR* name : {OLESTR("b"), OLESTR("")}) {
    EXPECT_EQ(E_INVALIDARG, parser->get_Value(Bstr(name).Get(), &text));
    EXPECT_NE(std::string::npos, TakeErrorDescription().find("no value named"));
    EXPECT_EQ(E_INVALIDARG, parser->RemoveValue(Bstr(name).Get()));
  }
  EXPECT_EQ(mark, text);
  EXPECT_EQ(E_POINTER, parser->get_Value(Bstr(OLESTR("A")).Get(), nullptr));
}

TEST_F(NamedValuesTest, KindsOfLinesAreNumbersFromZeroToTen) {
  struct Row {
    const char* text;
    HRESULT result;
    int line_type;
  };
  const Row rows[] = {{"0", S_OK, PLT_VISIBLELN}, {"10", S_OK, PLT_HATCH},
                      {"11", E_INVALIDARG, -7},   {"-1", E_INVALIDARG, -7},
                      {"", E_INVALIDARG, -7},     {"1x", E_INVALIDARG, -7}};
  const auto parser = Created<IVeProjectionCfgParser>(CLSID_VeProjectionCfgParser);
  const Bstr name(OLESTR("Visible"));
  for (const Row& row : rows) {
    auto line_type = static_cast<ProjectionLineType>(-7);
    EXPECT_EQ(S_OK, parser->put_Value(name.Get(), Bstr(FromUtf8(row.text)).Get()));
    EXPECT_EQ(row.result, parser->get_LineType(name.Get(), &line_type)) << row.text;
    EXPECT_EQ(row.line_type, static_cast<int>(line_type)) << row.text;
  }
  EXPECT_EQ(S_OK, parser->put_LineType(name.Get(), PLT_CENTERLN));
  EXPECT_EQ(E_INVALIDARG, parser->put_LineType(name.Get(), static_cast<ProjectionLineType>(11)));
  Bstr text;
  EXPECT_EQ(S_OK, parser->get_Value(name.Get(), text.Put()));
  EXPECT_EQ("2", ToUtf8(text.View()));
}

TEST_F(NamedValuesTest, APackingHasSetsOfValues) {
  Write(
      "<G><Target>zip</Target><Bale><Path>a</Path><Path>b</Path><Deep><X/></Deep></Bale>"
      "<Bale><Path>c</Path><Level>2</Level></Bale></G><Saved/>");
  const auto parser = Created<IVeFileBaleCfgParser>(CLSID_VeFileBaleCfgParser);
  ASSERT_EQ(S_OK, parser->Load(Bstr(file_).Get(), Bstr(OLESTR("/S/G")).Get()));
  ComPtr<IVePrsFileBaleColl> bales;
  ASSERT_EQ(S_OK, parser->GetFileBales(bales.Put()));
  ULONG_PTR count = 0;
  EXPECT_EQ(S_OK, bales->GetCount(&count));
  EXPECT_EQ(2U, count);
  const auto added = Created<IVePrsFileBaleSet>(CLSID_VePrsFileBaleSet);
  EXPECT_EQ(E_INVALIDARG, added->put_Name(Bstr(OLESTR("a b")).Get()));
  EXPECT_EQ(S_OK, added->put_Name(Bstr(OLESTR("Extra")).Get()));
  EXPECT_EQ(S_OK, added->put_Value(Bstr(OLESTR("Path")).Get(), Bstr(OLESTR("d")).Get()));
  EXPECT_EQ(S_OK, bales->AddTail(added.Get(), nullptr));
  ASSERT_EQ(S_OK, parser->Save(Bstr(file_).Get(), Bstr(OLESTR("/S/Saved")).Get()));
  EXPECT_EQ("Target=zip Bale{Path=a} Bale{Path=c Level=2} Extra{Path=d}",
            ElementsOf(file_, "/S/Saved"));

  // Without sets in the file those that there are stay; with some they are replaced.
  Write("<G><Target>7z</Target></G>");
  ASSERT_EQ(S_OK, parser->Load(Bstr(file_).Get(), Bstr(OLESTR("/S/G")).Get()));
  EXPECT_EQ(S_OK, bales->GetCount(&count));
  EXPECT_EQ(3U, count);
  Write("<G><One><A>1</A></One></G>");
  ASSERT_EQ(S_OK, parser->Load(Bstr(file_).Get(), Bstr(OLESTR("/S/G")).Get()));
  EXPECT_EQ(S_OK, bales->GetCount(&count));
  EXPECT_EQ(1U, count);
}

TEST_F(NamedValuesTest, CustomPrintingIsNotCreatedByTheTypeLibrarysIdentifier) {
  ComPtr<IUnknown> object;
  EXPECT_TRUE(FAILED(CoCreateInstance(CLSID_VeCustomPTParser, nullptr, CLSCTX_INPROC_SERVER,
                                      IID_IUnknown, object.PutVoid())));
  EXPECT_TRUE(Created<IVeCustomPTParser>(RegisteredClassId("VeCustomPTParser")));
}

}  // namespace
}  // namespace sab::testing
