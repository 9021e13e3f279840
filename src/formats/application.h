#pragma once

#include <sabxml/result_codes.h>

#include "formats/configuration.h"
#include "formats/rule.h"

namespace sab::formats {

// "Rigist" is how the files spell it.
inline constexpr auto kAboutBox = FirstCounts({
    Text("ProductPubName", "Name of the product as it is published"),
    Text("ProductPubVer", "Version as it is published"),
    Text("ProductPubDate", "Date of publication"),
    Text("ProductPubBuild", "Number of the build"),
    Url("OnlineReport", "Where to report a problem"),
    Url("OnlineResource", "Where to find drawings and parts"),
    Url("OnlineCon", "Where to get in contact"),
    Url("OnlineCloud", "Where the cloud service is"),
    Text("DlgTitle", "Title of the about box"),
    Text("Tel", "Telephone number"),
    Text("E-mail", "Address for electronic mail"),
    Url("URL", "Web site of the product"),
    Path("CopyrightFile", "File with the copyright notice"),
    Path("LicenseFile", "File with the licence agreement"),
    Image("LogoFile", "Picture of the logo"),
    Url("OnlineWhatsNew", "Where to read what is new"),
    Url("CloudSpaceWebSite", "Where the cloud space is"),
    Url("CloudSpaceRigistWebSite", "Where to register for cloud space; spelt so"),
    Url("CloudSpaceBuyOrderWebSite", "Where to order cloud space"),
    Url("ProductDownloadWebSite", "Where to download the product"),
    Url("BuyOrderWebSite", "Where to order the product"),
    Url("OnlineHelpWebSite", "Where to read the help"),
});

inline constexpr Rule kTemplatePath[] = {
    Path("Path", "Path of a template descriptor")
        .Each()
        .CompletesItem()
        .LeadsTo(Kind::kTemplate, "GetTmplatePaths"),
};
inline constexpr Rule kTemplatePaths[] = {
    Entry("Template", kTemplatePath, "A template that the application offers"),
};

inline constexpr auto kApplication = FirstCounts({
    Text("Identify", "Identifier of the application")
        .Defines(Subject::kApplication)
        .WhenEmpty("ID_APP_QUARN"),
    Text("AppTemplateID", "Identifier of the application template").Required(),
    Text("ProductName", "Name of the product").Required(),
    Text("SubProductName", "Name below the name of the product"),
    Text("CompanyName", "Who makes it").Required(),
    Text("ProductEdition", "Edition"),
    Group("LocalAbout", kAboutBox, "Texts of the about box"),
    Group("Templates", kTemplatePaths, "Templates").EntryIfPresent(sabxml::kInvalidTemplate),
    Group("Configurations", kConfigurations, "Pages of the options"),
});

inline constexpr Document kApplicationDocument = {
    .kind = Kind::kApplication,
    .root = "Application",
    .about = "application",
    .class_name = "VeAppParser",
    .method = "GenerateApp",
    .result = sabxml::kInvalidApplication,
    .content = kApplication,
    .help = "What the application is called, what its about box says, which templates it offers",
};

}  // namespace sab::formats
