#include "framework/app_parser.h"

#include "formats/application.h"
#include "framework/configuration.h"

namespace sab {

void AppParserFields::GenerateApp() {
  using F = AppParserFields;
  using Elements = BoundPaths<
      formats::kApplicationDocument, Bind<"Identify", &F::AppID>,
      Bind<"AppTemplateID", &F::AppTmplID>, Bind<"ProductName", &F::ProductName>,
      Bind<"SubProductName", &F::SubProductName>, Bind<"CompanyName", &F::CompanyName>,
      Bind<"ProductEdition", &F::ProductEdition>,
      Bind<"LocalAbout/ProductPubName", &F::ProductPubName>,
      Bind<"LocalAbout/ProductPubVer", &F::ProductPubVer>,
      Bind<"LocalAbout/ProductPubDate", &F::ProductPubDate>,
      Bind<"LocalAbout/ProductPubBuild", &F::ProductPubBuild>,
      Bind<"LocalAbout/OnlineReport", &F::OnlineReport>,
      Bind<"LocalAbout/OnlineResource", &F::OnlineResource>,
      Bind<"LocalAbout/OnlineCon", &F::OnlineCon>, Bind<"LocalAbout/OnlineCloud", &F::OnlineCloud>,
      Bind<"LocalAbout/DlgTitle", &F::DlgTitle>, Bind<"LocalAbout/Tel", &F::TelNum>,
      Bind<"LocalAbout/E-mail", &F::Email>, Bind<"LocalAbout/URL", &F::URL>,
      Bind<"LocalAbout/CopyrightFile", &F::CopyrightFile>,
      Bind<"LocalAbout/LicenseFile", &F::LicenseFile>, Bind<"LocalAbout/LogoFile", &F::LogoFile>,
      Bind<"LocalAbout/OnlineWhatsNew", &F::OnlineWhatsNew>,
      Bind<"LocalAbout/CloudSpaceWebSite", &F::CloudSpaceWebSite>,
      Bind<"LocalAbout/CloudSpaceRigistWebSite", &F::CloudSpaceRigisWeb>,
      Bind<"LocalAbout/CloudSpaceBuyOrderWebSite", &F::CloudSpaceBuyOrderWeb>,
      Bind<"LocalAbout/ProductDownloadWebSite", &F::ProductDownloadWebSite>,
      Bind<"LocalAbout/BuyOrderWebSite", &F::BuyOrderWebSite>,
      Bind<"LocalAbout/OnlineHelpWebSite", &F::OnlineHelpWebSite>,
      Within<"Templates", Within<"Template", Bind<"Path", &F::TmplatePaths>>>,
      ConfigurationPages<&F::Configurations>>;
  ReadDescriptor<Elements>(*this);
}

}  // namespace sab
