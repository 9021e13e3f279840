#pragma once

#include "common/string_list.h"
#include "object/component.h"
#include "server/owned_object.h"

namespace sab {

struct AppParserFields {
  Bstr ConfigurationPath;
  Bstr AppID;
  Bstr AppTmplID;
  StringList TmplatePaths;
  OwnedObject<coclass::VePrsConfigColl> Configurations;
  Bstr ProductName;
  Bstr SubProductName;
  Bstr ProductPubName;
  Bstr ProductPubVer;
  Bstr ProductPubDate;
  Bstr ProductPubBuild;
  Bstr CompanyName;
  Bstr DlgTitle;
  Bstr Email;
  Bstr URL;
  Bstr CopyrightFile;
  Bstr LicenseFile;
  Bstr LogoFile;
  Bstr TelNum;
  Bstr OnlineReport;
  Bstr OnlineResource;
  Bstr OnlineCon;
  Bstr OnlineCloud;
  Bstr OnlineWhatsNew;
  Bstr CloudSpaceWebSite;
  Bstr CloudSpaceRigisWeb;
  Bstr CloudSpaceBuyOrderWeb;
  Bstr ProductDownloadWebSite;
  Bstr BuyOrderWebSite;
  Bstr OnlineHelpWebSite;
  Bstr ProductEdition;
};

/// Reads the application descriptor: which application the host is running, its About box, its
/// template descriptors and its configuration pages.
class CVeAppParser : public Component<coclass::VeAppParser, AppParserFields> {
 public:
  HRESULT STDMETHODCALLTYPE GenerateApp() override;

  // clang-format off
  HRESULT STDMETHODCALLTYPE GetAppID(BSTR* bsAppID) override { return Reported(GetField(fields.AppID, bsAppID)); }
  HRESULT STDMETHODCALLTYPE GetAppTmplID(BSTR* bsAppTmplID) override { return Reported(GetField(fields.AppTmplID, bsAppTmplID)); }
  HRESULT STDMETHODCALLTYPE GetTmplatePaths(SAFEARRAY** o_pTemplatePaths) override { return Reported(fields.TmplatePaths.CopyTo(o_pTemplatePaths)); }
  HRESULT STDMETHODCALLTYPE GetConfigurations(IVePrsConfigColl** o_ppConfigurations) override { return Reported(GetField(fields.Configurations, o_ppConfigurations)); }
  HRESULT STDMETHODCALLTYPE GetProductName(BSTR* bsProductName) override { return Reported(GetField(fields.ProductName, bsProductName)); }
  HRESULT STDMETHODCALLTYPE GetSubProductName(BSTR* bsSubProductName) override { return Reported(GetField(fields.SubProductName, bsSubProductName)); }
  HRESULT STDMETHODCALLTYPE GetProductPubName(BSTR* bsProductPubName) override { return Reported(GetField(fields.ProductPubName, bsProductPubName)); }
  HRESULT STDMETHODCALLTYPE GetProductPubVer(BSTR* bsProductPubVer) override { return Reported(GetField(fields.ProductPubVer, bsProductPubVer)); }
  HRESULT STDMETHODCALLTYPE GetProductPubDate(BSTR* bsProductPubDate) override { return Reported(GetField(fields.ProductPubDate, bsProductPubDate)); }
  HRESULT STDMETHODCALLTYPE GetProductPubBuild(BSTR* bsProductPubBuild) override { return Reported(GetField(fields.ProductPubBuild, bsProductPubBuild)); }
  HRESULT STDMETHODCALLTYPE GetCompanyName(BSTR* bsCompanyName) override { return Reported(GetField(fields.CompanyName, bsCompanyName)); }
  HRESULT STDMETHODCALLTYPE GetDlgTitle(BSTR* bsDlgTilte) override { return Reported(GetField(fields.DlgTitle, bsDlgTilte)); }
  HRESULT STDMETHODCALLTYPE GetEmail(BSTR* bsEmail) override { return Reported(GetField(fields.Email, bsEmail)); }
  HRESULT STDMETHODCALLTYPE GetURL(BSTR* bsURL) override { return Reported(GetField(fields.URL, bsURL)); }
  HRESULT STDMETHODCALLTYPE GetCopyrightFile(BSTR* bsCopyrightFile) override { return Reported(GetField(fields.CopyrightFile, bsCopyrightFile)); }
  HRESULT STDMETHODCALLTYPE GetLicenseFile(BSTR* bsLicenseFile) override { return Reported(GetField(fields.LicenseFile, bsLicenseFile)); }
  HRESULT STDMETHODCALLTYPE GetLogoFile(BSTR* bsLogoFile) override { return Reported(GetField(fields.LogoFile, bsLogoFile)); }
  HRESULT STDMETHODCALLTYPE GetTelNum(BSTR* bsTelNum) override { return Reported(GetField(fields.TelNum, bsTelNum)); }
  HRESULT STDMETHODCALLTYPE GetOnlineReport(BSTR* bsOnlineReport) override { return Reported(GetField(fields.OnlineReport, bsOnlineReport)); }
  HRESULT STDMETHODCALLTYPE GetOnlineResource(BSTR* bsOnlineResource) override { return Reported(GetField(fields.OnlineResource, bsOnlineResource)); }
  HRESULT STDMETHODCALLTYPE GetOnlineCon(BSTR* bsOnlineCon) override { return Reported(GetField(fields.OnlineCon, bsOnlineCon)); }
  HRESULT STDMETHODCALLTYPE GetOnlineCloud(BSTR* bsOnlineCloud) override { return Reported(GetField(fields.OnlineCloud, bsOnlineCloud)); }
  HRESULT STDMETHODCALLTYPE GetOnlineWhatsNew(BSTR* bsOnlineWhatsNew) override { return Reported(GetField(fields.OnlineWhatsNew, bsOnlineWhatsNew)); }
  HRESULT STDMETHODCALLTYPE GetCloudSpaceWebSite(BSTR* bsCloudSpaceWebSite) override { return Reported(GetField(fields.CloudSpaceWebSite, bsCloudSpaceWebSite)); }
  HRESULT STDMETHODCALLTYPE GetCloudSpaceRigisWeb(BSTR* bsCloudSpaceRigisWeb) override { return Reported(GetField(fields.CloudSpaceRigisWeb, bsCloudSpaceRigisWeb)); }
  HRESULT STDMETHODCALLTYPE GetCloudSpaceBuyOrderWeb(BSTR* bsCloudSpaceBuyOrderWeb) override { return Reported(GetField(fields.CloudSpaceBuyOrderWeb, bsCloudSpaceBuyOrderWeb)); }
  HRESULT STDMETHODCALLTYPE GetProductDownloadWebSite(BSTR* bsProductDownloadWebSite) override { return Reported(GetField(fields.ProductDownloadWebSite, bsProductDownloadWebSite)); }
  HRESULT STDMETHODCALLTYPE GetBuyOrderWebSite(BSTR* bsBuyOrderWebSite) override { return Reported(GetField(fields.BuyOrderWebSite, bsBuyOrderWebSite)); }
  HRESULT STDMETHODCALLTYPE GetOnlineHelpWebSite(BSTR* bsOnlineHelpWebSite) override { return Reported(GetField(fields.OnlineHelpWebSite, bsOnlineHelpWebSite)); }
  HRESULT STDMETHODCALLTYPE GetProductEdition(BSTR* pVal) override { return Reported(GetField(fields.ProductEdition, pVal)); }
  // clang-format on
};

}  // namespace sab
