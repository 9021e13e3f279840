#include "framework/app_parser.h"

#include "base/com_error.h"
#include "framework/configuration_list.h"
#include "framework/path_list.h"

namespace sab {

struct CVeAppParser::OptionalText {
  std::string_view path;
  Bstr CVeAppParser::*member;
};

// In file order. "Rigist" is how the files spell it.
constexpr CVeAppParser::OptionalText CVeAppParser::kEditionAndAboutBox[] = {
    {"Application/ProductEdition", &CVeAppParser::product_edition_},
    {"Application/LocalAbout/ProductPubName", &CVeAppParser::product_pub_name_},
    {"Application/LocalAbout/ProductPubVer", &CVeAppParser::product_pub_version_},
    {"Application/LocalAbout/ProductPubDate", &CVeAppParser::product_pub_date_},
    {"Application/LocalAbout/ProductPubBuild", &CVeAppParser::product_pub_build_},
    {"Application/LocalAbout/OnlineReport", &CVeAppParser::online_report_},
    {"Application/LocalAbout/OnlineResource", &CVeAppParser::online_resource_},
    {"Application/LocalAbout/OnlineCon", &CVeAppParser::online_con_},
    {"Application/LocalAbout/OnlineCloud", &CVeAppParser::online_cloud_},
    {"Application/LocalAbout/DlgTitle", &CVeAppParser::dialog_title_},
    {"Application/LocalAbout/Tel", &CVeAppParser::telephone_},
    {"Application/LocalAbout/E-mail", &CVeAppParser::e_mail_},
    {"Application/LocalAbout/URL", &CVeAppParser::url_},
    {"Application/LocalAbout/CopyrightFile", &CVeAppParser::copyright_file_},
    {"Application/LocalAbout/LicenseFile", &CVeAppParser::license_file_},
    {"Application/LocalAbout/LogoFile", &CVeAppParser::logo_file_},
    {"Application/LocalAbout/OnlineWhatsNew", &CVeAppParser::online_whats_new_},
    {"Application/LocalAbout/CloudSpaceWebSite", &CVeAppParser::cloud_space_web_site_},
    {"Application/LocalAbout/CloudSpaceRigistWebSite",
     &CVeAppParser::cloud_space_registration_web_site_},
    {"Application/LocalAbout/CloudSpaceBuyOrderWebSite",
     &CVeAppParser::cloud_space_buy_order_web_site_},
    {"Application/LocalAbout/ProductDownloadWebSite", &CVeAppParser::product_download_web_site_},
    {"Application/LocalAbout/BuyOrderWebSite", &CVeAppParser::buy_order_web_site_},
    {"Application/LocalAbout/OnlineHelpWebSite", &CVeAppParser::online_help_web_site_},
};

HRESULT CVeAppParser::GenerateApp() {
  return Guarded([this] {
    DescriptorReader file(fields.ConfigurationPath);

    Bstr identify;
    file.Read("Application/Identify", identify);
    app_id_ = identify.IsEmpty() ? Bstr(OLESTR("ID_APP_QUARN")) : std::move(identify);
    file.ReadRequired("Application/AppTemplateID", app_template_id_, kInvalidApplication);
    file.ReadRequired("Application/ProductName", product_name_, kInvalidApplication);
    file.Read("Application/SubProductName", sub_product_name_);
    file.ReadRequired("Application/CompanyName", company_name_, kInvalidApplication);
    for (const OptionalText& text : kEditionAndAboutBox) file.Read(text.path, this->*text.member);

    ReadTemplatePaths(file);

    ReadConfigurations(file.Find("Application/Configurations"), configurations_);
  });
}

void CVeAppParser::ReadTemplatePaths(DescriptorReader& file) {
  const ConfigElement templates = file.Find("Application/Templates");
  if (!templates) return;
  ReadPaths(templates, "Template", template_paths_);
  if (template_paths_.IsEmpty()) {
    file.Fail(kInvalidTemplate, "Application/Templates",
              "names no template: give it a Template with a Path, or leave it out");
  }
}

}  // namespace sab
