// What <sabxml/client.h> makes of calls: texts, arrays, lists, failures.

#include <SabXmlParser.h>
#include <gtest/gtest.h>
#include <sabxml/client.h>

#include "config/temporary_folder.h"
#include "support/server_library.h"

namespace sab::testing {
namespace {

using sabxml::Check;
using sabxml::Get;
using sabxml::String;

constexpr char kText[] = "a\u00E9\u5B57\U0001F600";  // of one to four bytes

std::string Page(const std::string& name) {
  return "<Configuration><CLSID>{8F6C1A52-0B7D-4E39-9C44-2D1B7E5A9001}</CLSID><LocalName>" + name +
         "</LocalName></Configuration>";
}

TEST(ClientHeader, TurnsResultsIntoValuesAndFailuresIntoExceptions) {
  const TemporaryFolder folder;
  folder.Write("app.xml",
               std::string("<Application><AppTemplateID>T</AppTemplateID><ProductName>") + kText +
                   "</ProductName><CompanyName>C</CompanyName><Templates><Template><Path>p"
                   "</Path></Template><Template><Path>q</Path></Template></Templates>"
                   "<Configurations>" +
                   Page("1") + Page("2") + "</Configurations></Application>");
  const auto app = sabxml::CreateFrom<IVeAppParser>(Server().GetClassObject);
  const std::string names = folder.Path("").string();
  Check(app->put_ConfigurationPath(String(names + "app.xml")));
  Check(app->GenerateApp());
  EXPECT_EQ(kText, Get(app, &IVeAppParser::GetProductName));
  EXPECT_EQ((std::vector<std::string>{"p", "q"}), Get(app, &IVeAppParser::GetTmplatePaths));
  std::string pages;
  for (const auto& page : sabxml::Items(Get(app, &IVeAppParser::GetConfigurations)))
    pages += Get(page, &IVePrsConfig::get_LocalName);
  EXPECT_EQ("12", pages);

  Check(app->put_ConfigurationPath(String(names + "none.xml")));
  try {
    Check(app->GenerateApp());
    FAIL();
  } catch (const sabxml::Error& error) {
    EXPECT_EQ(sabxml::kDocumentNotLoaded, static_cast<std::uint32_t>(error.code()));
    EXPECT_EQ("SabXmlParser.VeAppParser", error.source());
    EXPECT_NE(std::string::npos, error.description().find("none.xml")) << error.description();
    EXPECT_EQ(error.description() + " (0x84000C06)", error.what());
  }
  try {
    sabxml::Create<IVeAppParser>(CLSID{1, 2, 3, {}});
    FAIL();
  } catch (const sabxml::Error& error) {
    EXPECT_STREQ(
        "No library is registered for the class {00000001-0002-0003-0000-000000000000}: run "
        "\"sabxml register\", or use CreateFrom (0x80040154)",
        error.what());
  }
  for (const char* bytes :
       {"\x80", "\xC0\x80", "\xE5\xAD", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xFF"})
    EXPECT_THROW(String text{bytes}, sabxml::Error) << bytes;
}

TEST(ClientHeader, PointersFillBothArgumentsOfAnInterfaceAndItsPlace) {
  sabxml::ComPtr<IVeAppParser> app;
  Check(
      CoCreateInstance(CLSID_VeAppParser, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(app.Put())));
  IDispatch* dispatch = nullptr;
  EXPECT_EQ(S_OK, app->QueryInterface(IID_PPV_ARGS(&dispatch)));
  dispatch->Release();
  EXPECT_FALSE(app.As<IVeCmdParser>());
}

}  // namespace
}  // namespace sab::testing
