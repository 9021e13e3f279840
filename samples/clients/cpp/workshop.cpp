// Reads the workshop's application descriptor, changes a setting in a copy of its settings file,
// and shows what an error looks like. The same source is built for Linux and for Windows; the
// server is found through its registration.
//
//   workshop SAMPLES_WORKSHOP_FOLDER COPY_OF_SETTINGS
//
// expect: Workshop Draft, Journeyman
// expect: page {6E0D3B52-4C1F-4B7A-9C0E-52D4A8F1730B}
// expect: page {A41C7D90-2E58-4F63-B1B7-96E0C35D28AA}
// expect: cursor size 5, then 9
// expect: error 80004001 from SabXmlParser.VeAutoUpdateAdminCfgParser
// expect: The administration of the automatic update is read-only.

#include <SabXmlParser.h>
#include <sabxml/client.h>

#include <cstdio>
#include <string>

using sabxml::Check;
using sabxml::Create;
using sabxml::Get;
using sabxml::String;

namespace {

void ReadApplication(const std::string& folder) {
  const auto app = Create<IVeAppParser>();
  Check(app->put_ConfigurationPath(String(folder + "/application.xml")));
  Check(app->GenerateApp());
  std::printf("%s, %s\n", Get(app, &IVeAppParser::GetProductName).c_str(),
              Get(app, &IVeAppParser::GetProductEdition).c_str());
  for (const auto& page : sabxml::Items(Get(app, &IVeAppParser::GetConfigurations))) {
    std::printf("page %s\n", Get(page, &IVePrsConfig::get_CLSID).c_str());
  }
}

void ChangeSetting(const std::string& file) {
  const String path(file), node("/Settings/Display"), other_node("/Settings/Apprentice");
  const auto display = Create<IVeDisplayCfgParser>();
  Check(display->Load(path, node));
  const int before = Get(display, &IVeDisplayCfgParser::get_CursorSize);
  Check(display->put_CursorSize(9));
  // Save leaves what a block has already, so the change goes into another one.
  Check(display->Save(path, other_node));
  const auto again = Create<IVeDisplayCfgParser>();
  Check(again->Load(path, other_node));
  std::printf("cursor size %d, then %d\n", before,
              Get(again, &IVeDisplayCfgParser::get_CursorSize));
}

void ShowError(const std::string& file) try {
  const auto update = Create<IVeAutoUpdateAdminCfgParser>();
  Check(update->Save(String(file), String("/Settings/Update")));
} catch (const sabxml::Error& error) {
  std::printf("error %08X from %s\n%s\n", static_cast<unsigned>(error.code()),
              error.source().c_str(), error.description().c_str());
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc != 3) {
    std::fprintf(stderr, "usage: workshop SAMPLES_WORKSHOP_FOLDER COPY_OF_SETTINGS\n");
    return 2;
  }
  const sabxml::Apartment apartment;
  ReadApplication(argv[1]);
  ChangeSetting(argv[2]);
  ShowError(argv[2]);
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "workshop: %s\n", error.what());
  return 1;
}
