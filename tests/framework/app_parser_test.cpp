#include <gtest/gtest.h>

#include "config/temporary_folder.h"
#include "server/created_object.h"

namespace sab::testing {
namespace {

constexpr HRESULT kInvalidApplication = static_cast<HRESULT>(0x84000C00);
constexpr HRESULT kInvalidTemplate = static_cast<HRESULT>(0x84000C01);
constexpr HRESULT kDocumentNotLoaded = static_cast<HRESULT>(0x84000C06);

constexpr char kHead[] =
    "<AppTemplateID>T1</AppTemplateID><ProductName>Drafter</ProductName>"
    "<CompanyName>Bench &amp; Sons</CompanyName>";

using App = ComPtr<IVeAppParser>;

class AppParserTest : public ::testing::Test {
 protected:
  App Put(const std::string& content) {
    App app = Created<IVeAppParser>(CLSID_VeAppParser);
    const Text path = WriteFile("<Application>" + content + "</Application>");
    EXPECT_EQ(S_OK, app->put_ConfigurationPath(Bstr(path).Get()));
    return app;
  }

  Text WriteFile(const std::string& bytes) {
    folder_.Write("app.xml", bytes);
    return folder_.Name("app.xml");
  }

  TemporaryFolder folder_;
};

using Getter = HRESULT (STDMETHODCALLTYPE IVeAppParser::*)(BSTR*);

TEST_F(AppParserTest, EveryTextHasItsOwnElement) {
  struct Row {
    const char* path;
    Getter get;
  };
  constexpr Row kRows[] = {
      {"Identify", &IVeAppParser::GetAppID},
      {"AppTemplateID", &IVeAppParser::GetAppTmplID},
      {"ProductName", &IVeAppParser::GetProductName},
      {"SubProductName", &IVeAppParser::GetSubProductName},
      {"CompanyName", &IVeAppParser::GetCompanyName},
      {"ProductEdition", &IVeAppParser::GetProductEdition},
      {"LocalAbout/ProductPubName", &IVeAppParser::GetProductPubName},
      {"LocalAbout/ProductPubVer", &IVeAppParser::GetProductPubVer},
      {"LocalAbout/ProductPubDate", &IVeAppParser::GetProductPubDate},
      {"LocalAbout/ProductPubBuild", &IVeAppParser::GetProductPubBuild},
      {"LocalAbout/OnlineReport", &IVeAppParser::GetOnlineReport},
      {"LocalAbout/OnlineResource", &IVeAppParser::GetOnlineResource},
      {"LocalAbout/OnlineCon", &IVeAppParser::GetOnlineCon},
      {"LocalAbout/OnlineCloud", &IVeAppParser::GetOnlineCloud},
      {"LocalAbout/DlgTitle", &IVeAppParser::GetDlgTitle},
      {"LocalAbout/Tel", &IVeAppParser::GetTelNum},
      {"LocalAbout/E-mail", &IVeAppParser::GetEmail},
      {"LocalAbout/URL", &IVeAppParser::GetURL},
      {"LocalAbout/CopyrightFile", &IVeAppParser::GetCopyrightFile},
      {"LocalAbout/LicenseFile", &IVeAppParser::GetLicenseFile},
      {"LocalAbout/LogoFile", &IVeAppParser::GetLogoFile},
      {"LocalAbout/OnlineWhatsNew", &IVeAppParser::GetOnlineWhatsNew},
      {"LocalAbout/CloudSpaceWebSite", &IVeAppParser::GetCloudSpaceWebSite},
      {"LocalAbout/CloudSpaceRigistWebSite", &IVeAppParser::GetCloudSpaceRigisWeb},
      {"LocalAbout/CloudSpaceBuyOrderWebSite", &IVeAppParser::GetCloudSpaceBuyOrderWeb},
      {"LocalAbout/ProductDownloadWebSite", &IVeAppParser::GetProductDownloadWebSite},
      {"LocalAbout/BuyOrderWebSite", &IVeAppParser::GetBuyOrderWebSite},
      {"LocalAbout/OnlineHelpWebSite", &IVeAppParser::GetOnlineHelpWebSite},
  };
  // Each element holds its own path, so that a value in the wrong place is recognised.
  std::string top;
  std::string about;
  for (const Row& row : kRows) {
    const std::string path = row.path;
    const std::size_t slash = path.find('/');
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    (slash == std::string::npos ? top : about) += "<" + name + ">" + path + "</" + name + ">\n";
  }
  const App app = Put(top + "<LocalAbout>" + about + "</LocalAbout>");
  for (const Row& row : kRows) EXPECT_EQ("(null)", TextOf(*app, row.get)) << row.path;
  ASSERT_EQ(S_OK, app->GenerateApp()) << TakeErrorDescription();
  for (const Row& row : kRows) {
    EXPECT_EQ(row.path, TextOf(*app, row.get));
    EXPECT_EQ(E_POINTER, (app.Get()->*row.get)(nullptr)) << row.path;
  }
}

TEST_F(AppParserTest, WhatIsMissingDecidesTheResult) {
  struct Row {
    const char* name;
    const char* content;
    HRESULT result;
    const char* app_id;
    const char* product_name;
    const char* company_name;
  };
  const std::string with_empty_template = std::string(kHead) +
                                          "<LocalAbout><Tel>1</Tel></LocalAbout>"
                                          "<Templates><Template><Path/></Template></Templates>";
  const Row rows[] = {
      {"only what is required", kHead, S_OK, "ID_APP_QUARN", "Drafter", "Bench & Sons"},
      {"empty identifier",
       "<Identify/><AppTemplateID>T</AppTemplateID><ProductName>P</ProductName>"
       "<CompanyName>C</CompanyName>",
       S_OK, "ID_APP_QUARN", "P", "C"},
      {"no template id", "<Identify>I</Identify><ProductName>P</ProductName>", kInvalidApplication,
       "I", "(null)", "(null)"},
      {"empty template id", "<Identify>I</Identify><AppTemplateID> </AppTemplateID>",
       kInvalidApplication, "I", "(null)", "(null)"},
      {"no product name", "<AppTemplateID>T</AppTemplateID>", kInvalidApplication, "ID_APP_QUARN",
       "(null)", "(null)"},
      {"no company name", "<AppTemplateID>T</AppTemplateID><ProductName>P</ProductName>",
       kInvalidApplication, "ID_APP_QUARN", "P", "(null)"},
      {"names in another case",
       "<apptemplateid>T</apptemplateid><ProductName>P</ProductName><CompanyName>C</CompanyName>",
       kInvalidApplication, "ID_APP_QUARN", "(null)", "(null)"},
      {"templates without a path", with_empty_template.c_str(), kInvalidTemplate, "ID_APP_QUARN",
       "Drafter", "Bench & Sons"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const App app = Put(row.content);
    EXPECT_EQ(row.result, app->GenerateApp());
    const std::string description = TakeErrorDescription();
    EXPECT_EQ(SUCCEEDED(row.result), description.empty()) << description;
    EXPECT_EQ(row.app_id, TextOf(*app, &IVeAppParser::GetAppID));
    EXPECT_EQ(row.product_name, TextOf(*app, &IVeAppParser::GetProductName));
    EXPECT_EQ(row.company_name, TextOf(*app, &IVeAppParser::GetCompanyName));
  }
}

TEST_F(AppParserTest, AFileThatCannotBeReadSaysWhy) {
  const App app = Created<IVeAppParser>(CLSID_VeAppParser);
  EXPECT_EQ(kDocumentNotLoaded, app->GenerateApp());
  const Text missing = folder_.Name("no such file.xml");
  EXPECT_EQ(S_OK, app->put_ConfigurationPath(Bstr(missing).Get()));
  EXPECT_EQ(kDocumentNotLoaded, app->GenerateApp());
  EXPECT_NE(std::string::npos, TakeErrorDescription().find("no such file.xml"));

  const Text broken = WriteFile("<Application>\n<AppTemplateID>x</Apptemplateid>\n</Application>");
  EXPECT_EQ(S_OK, app->put_ConfigurationPath(Bstr(broken).Get()));
  EXPECT_EQ(kDocumentNotLoaded, app->GenerateApp());
  const std::string description = TakeErrorDescription();
  EXPECT_NE(std::string::npos, description.find(":2:")) << description;
}

TEST_F(AppParserTest, ListsAccumulateInDocumentOrder) {
  const App app =
      Put(std::string(kHead) +
          "<Templates>"
          "<Template><Path> a.xml </Path><path>no</path><Path>sub\\b.xml</Path></Template>"
          "<template><Path>no</Path></template>"
          "<Template><Path></Path><Path>c.xml</Path></Template>"
          "</Templates>");
  for (const int runs : {1, 2}) {
    ASSERT_EQ(S_OK, app->GenerateApp());
    SAFEARRAY* array = nullptr;
    ASSERT_EQ(S_OK, app->GetTmplatePaths(&array));
    LONG lower = -1;
    LONG upper = -1;
    EXPECT_EQ(S_OK, SafeArrayGetLBound(array, 1, &lower));
    EXPECT_EQ(S_OK, SafeArrayGetUBound(array, 1, &upper));
    EXPECT_EQ(0, lower);
    ASSERT_EQ(3 * runs - 1, upper);
    const char* const expected[] = {"a.xml", "sub\\b.xml", "c.xml"};
    for (LONG i = 0; i <= upper; ++i) {
      Bstr path;
      EXPECT_EQ(S_OK, SafeArrayGetElement(array, &i, path.Put()));
      EXPECT_EQ(expected[i % 3], ToUtf8(path.View()));
    }
    EXPECT_EQ(S_OK, SafeArrayDestroy(array));
  }
  EXPECT_EQ(E_POINTER, app->GetTmplatePaths(nullptr));
}

TEST_F(AppParserTest, OnlyConfigurationsWithAClassIdentifierCount) {
  constexpr char kGuid[] = "{1B2F4A60-9D33-4C41-8F52-0A6E7D21C9B4}";
  const App app = Put(std::string(kHead) +
                      "<Configurations>"
                      "<Configuration><CLSID>abc</CLSID><Path>lost</Path></Configuration>"
                      "<Configuration><Path>p</Path><LocalName>old</LocalName><CLSID>" +
                      kGuid +
                      "</CLSID><LocalName>new</LocalName>"
                      "<PropertyPageCLSID>any text</PropertyPageCLSID></Configuration>"
                      "<Configuration><CLSID>" +
                      kGuid +
                      "</CLSID></Configuration>"
                      "<Configuration/><Other/>"
                      "</Configurations>");
  ASSERT_EQ(S_OK, app->GenerateApp());
  ComPtr<IVePrsConfigColl> pages;
  ASSERT_EQ(S_OK, app->GetConfigurations(pages.Put()));
  std::string found;
  LONG_PTR position = 0;
  ASSERT_EQ(S_OK, pages->GetHeadPosition(&position));
  while (position) {
    ComPtr<IVePrsConfig> page;
    ASSERT_EQ(S_OK, pages->GetNext(&position, page.Put()));
    EXPECT_EQ(kGuid, TextOf(*page, &IVePrsConfig::get_CLSID));
    found += TextOf(*page, &IVePrsConfig::get_Path) + "|" +
             TextOf(*page, &IVePrsConfig::get_PropertyPageCLSID) + "|" +
             TextOf(*page, &IVePrsConfig::get_LocalName) + "\n";
  }
  EXPECT_EQ("p|any text|new\n||\n", found);
}

}  // namespace
}  // namespace sab::testing
