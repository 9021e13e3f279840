// Creates a component with nothing registered: the program is linked with the server and asks it
// for the class factory. The same source is built for Linux and for Windows, where SabXmlParser.dll
// is in the folder of the program.
//
//   unregistered SAMPLES_WORKSHOP_FOLDER
//
// expect: Workshop Draft, of 2 pages

#include <SabXmlParser.h>
#include <sabxml/client.h>

#include <cstdio>
#include <string>

int main(int argc, char** argv) try {
  if (argc != 2) {
    std::fprintf(stderr, "usage: unregistered SAMPLES_WORKSHOP_FOLDER\n");
    return 2;
  }
  const sabxml::Apartment apartment;
  const auto app = sabxml::CreateFrom<IVeAppParser>(DllGetClassObject);
  const sabxml::String file(argv[1] + std::string("/application.xml"));
  sabxml::Check(app->put_ConfigurationPath(file));
  sabxml::Check(app->GenerateApp());
  const auto pages = sabxml::Get(app, &IVeAppParser::GetConfigurations);
  std::printf("%s, of %u pages\n", sabxml::Get(app, &IVeAppParser::GetProductName).c_str(),
              static_cast<unsigned>(sabxml::Get(pages, &IVePrsConfigColl::GetCount)));
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "unregistered: %s\n", error.what());
  return 1;
}
