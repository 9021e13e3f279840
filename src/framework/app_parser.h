#pragma once

#include "object/component.h"
#include "server/owned_object.h"

namespace sab {

/// Reads the application descriptor: which application the host is running, its About box, its
/// template descriptors and its configuration pages.
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

  void GenerateApp();
};
using CVeAppParser = Component<coclass::VeAppParser, AppParserFields>;

}  // namespace sab
