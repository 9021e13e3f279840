#pragma once

#include "common/component.h"
#include "common/string_list.h"
#include "framework/descriptor_reader.h"
#include "server/owned_object.h"

namespace sab {

struct AppParserFields {
  Bstr ConfigurationPath;
};

/// Reads the application descriptor: which application the host is running, its About box, its
/// template descriptors and its configuration pages.
class CVeAppParser : public Component<coclass::VeAppParser, AppParserFields> {
 public:
  HRESULT STDMETHODCALLTYPE GenerateApp() override;

  // clang-format off
  HRESULT STDMETHODCALLTYPE GetAppID(BSTR* bsAppID) override { return Reported(GetField(app_id_, bsAppID)); }
  HRESULT STDMETHODCALLTYPE GetAppTmplID(BSTR* bsAppTmplID) override { return Reported(GetField(app_template_id_, bsAppTmplID)); }
  HRESULT STDMETHODCALLTYPE GetTmplatePaths(SAFEARRAY** o_pTemplatePaths) override { return Reported(template_paths_.CopyTo(o_pTemplatePaths)); }
  HRESULT STDMETHODCALLTYPE GetConfigurations(IVePrsConfigColl** o_ppConfigurations) override { return Reported(GetField(configurations_, o_ppConfigurations)); }
  HRESULT STDMETHODCALLTYPE GetProductName(BSTR* bsProductName) override { return Reported(GetField(product_name_, bsProductName)); }
  HRESULT STDMETHODCALLTYPE GetSubProductName(BSTR* bsSubProductName) override { return Reported(GetField(sub_product_name_, bsSubProductName)); }
  HRESULT STDMETHODCALLTYPE GetProductPubName(BSTR* bsProductPubName) override { return Reported(GetField(product_pub_name_, bsProductPubName)); }
  HRESULT STDMETHODCALLTYPE GetProductPubVer(BSTR* bsProductPubVer) override { return Reported(GetField(product_pub_version_, bsProductPubVer)); }
  HRESULT STDMETHODCALLTYPE GetProductPubDate(BSTR* bsProductPubDate) override { return Reported(GetField(product_pub_date_, bsProductPubDate)); }
  HRESULT STDMETHODCALLTYPE GetProductPubBuild(BSTR* bsProductPubBuild) override { return Reported(GetField(product_pub_build_, bsProductPubBuild)); }
  HRESULT STDMETHODCALLTYPE GetCompanyName(BSTR* bsCompanyName) override { return Reported(GetField(company_name_, bsCompanyName)); }
  HRESULT STDMETHODCALLTYPE GetDlgTitle(BSTR* bsDlgTilte) override { return Reported(GetField(dialog_title_, bsDlgTilte)); }
  HRESULT STDMETHODCALLTYPE GetEmail(BSTR* bsEmail) override { return Reported(GetField(e_mail_, bsEmail)); }
  HRESULT STDMETHODCALLTYPE GetURL(BSTR* bsURL) override { return Reported(GetField(url_, bsURL)); }
  HRESULT STDMETHODCALLTYPE GetCopyrightFile(BSTR* bsCopyrightFile) override { return Reported(GetField(copyright_file_, bsCopyrightFile)); }
  HRESULT STDMETHODCALLTYPE GetLicenseFile(BSTR* bsLicenseFile) override { return Reported(GetField(license_file_, bsLicenseFile)); }
  HRESULT STDMETHODCALLTYPE GetLogoFile(BSTR* bsLogoFile) override { return Reported(GetField(logo_file_, bsLogoFile)); }
  HRESULT STDMETHODCALLTYPE GetTelNum(BSTR* bsTelNum) override { return Reported(GetField(telephone_, bsTelNum)); }
  HRESULT STDMETHODCALLTYPE GetOnlineReport(BSTR* bsOnlineReport) override { return Reported(GetField(online_report_, bsOnlineReport)); }
  HRESULT STDMETHODCALLTYPE GetOnlineResource(BSTR* bsOnlineResource) override { return Reported(GetField(online_resource_, bsOnlineResource)); }
  HRESULT STDMETHODCALLTYPE GetOnlineCon(BSTR* bsOnlineCon) override { return Reported(GetField(online_con_, bsOnlineCon)); }
  HRESULT STDMETHODCALLTYPE GetOnlineCloud(BSTR* bsOnlineCloud) override { return Reported(GetField(online_cloud_, bsOnlineCloud)); }
  HRESULT STDMETHODCALLTYPE GetOnlineWhatsNew(BSTR* bsOnlineWhatsNew) override { return Reported(GetField(online_whats_new_, bsOnlineWhatsNew)); }
  HRESULT STDMETHODCALLTYPE GetCloudSpaceWebSite(BSTR* bsCloudSpaceWebSite) override { return Reported(GetField(cloud_space_web_site_, bsCloudSpaceWebSite)); }
  HRESULT STDMETHODCALLTYPE GetCloudSpaceRigisWeb(BSTR* bsCloudSpaceRigisWeb) override { return Reported(GetField(cloud_space_registration_web_site_, bsCloudSpaceRigisWeb)); }
  HRESULT STDMETHODCALLTYPE GetCloudSpaceBuyOrderWeb(BSTR* bsCloudSpaceBuyOrderWeb) override { return Reported(GetField(cloud_space_buy_order_web_site_, bsCloudSpaceBuyOrderWeb)); }
  HRESULT STDMETHODCALLTYPE GetProductDownloadWebSite(BSTR* bsProductDownloadWebSite) override { return Reported(GetField(product_download_web_site_, bsProductDownloadWebSite)); }
  HRESULT STDMETHODCALLTYPE GetBuyOrderWebSite(BSTR* bsBuyOrderWebSite) override { return Reported(GetField(buy_order_web_site_, bsBuyOrderWebSite)); }
  HRESULT STDMETHODCALLTYPE GetOnlineHelpWebSite(BSTR* bsOnlineHelpWebSite) override { return Reported(GetField(online_help_web_site_, bsOnlineHelpWebSite)); }
  HRESULT STDMETHODCALLTYPE GetProductEdition(BSTR* pVal) override { return Reported(GetField(product_edition_, pVal)); }
  // clang-format on

 private:
  struct OptionalText;
  static const OptionalText kEditionAndAboutBox[];

  void ReadTemplatePaths(DescriptorReader& file);

  Bstr app_id_;
  Bstr app_template_id_;
  Bstr product_name_;
  Bstr company_name_;
  Bstr sub_product_name_;
  Bstr product_pub_name_;
  Bstr product_pub_version_;
  Bstr product_pub_date_;
  Bstr product_pub_build_;
  Bstr dialog_title_;
  Bstr telephone_;
  Bstr e_mail_;
  Bstr url_;
  Bstr copyright_file_;
  Bstr license_file_;
  Bstr logo_file_;
  Bstr online_report_;
  Bstr online_resource_;
  Bstr online_con_;
  Bstr online_help_web_site_;
  Bstr online_cloud_;
  Bstr online_whats_new_;
  Bstr cloud_space_web_site_;
  Bstr cloud_space_registration_web_site_;
  Bstr cloud_space_buy_order_web_site_;
  Bstr product_download_web_site_;
  Bstr buy_order_web_site_;
  Bstr product_edition_;
  StringList template_paths_;
  OwnedObject<coclass::VePrsConfigColl> configurations_;
};

}  // namespace sab
