// Creates a component with nothing registered: the program is linked with the server and asks it
// for the class factory. The same source is built for Linux and for Windows, where SabXmlParser.dll
// stands beside the program.
//
//   unregistered SAMPLES_WORKSHOP_FOLDER
//
// expect: Workshop Draft, of 2 pages

#include <SabXmlParser.h>
#include <sabxml/com.h>

#include <cstdio>
#include <string>

namespace {

HRESULT CreateParser(IVeAppParser** parser) {
  IClassFactory* factory = nullptr;
  HRESULT result =
      DllGetClassObject(CLSID_VeAppParser, IID_IClassFactory, reinterpret_cast<void**>(&factory));
  if (FAILED(result)) return result;
  result = factory->CreateInstance(nullptr, IID_IVeAppParser, reinterpret_cast<void**>(parser));
  factory->Release();
  return result;
}

// This program's paths are ASCII; others would be converted to UTF-16 here.
HRESULT Read(IVeAppParser* parser, const std::string& file) {
  const std::basic_string<OLECHAR> wide(file.begin(), file.end());
  const BSTR path = SysAllocString(wide.c_str());
  HRESULT result = parser->put_ConfigurationPath(path);
  SysFreeString(path);
  if (SUCCEEDED(result)) result = parser->GenerateApp();
  return result;
}

HRESULT Print(IVeAppParser* parser) {
  BSTR product = nullptr;
  IVePrsConfigColl* pages = nullptr;
  ULONG_PTR count = 0;
  HRESULT result = parser->GetProductName(&product);
  if (SUCCEEDED(result)) result = parser->GetConfigurations(&pages);
  if (SUCCEEDED(result)) result = pages->GetCount(&count);
  if (SUCCEEDED(result)) {
    for (UINT i = 0; i < SysStringLen(product); ++i) std::putchar(static_cast<char>(product[i]));
    std::printf(", of %u pages\n", static_cast<unsigned>(count));
  }
  if (pages) pages->Release();
  SysFreeString(product);
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: unregistered SAMPLES_WORKSHOP_FOLDER\n");
    return 2;
  }
  if (FAILED(CoInitialize(nullptr))) return 1;
  IVeAppParser* parser = nullptr;
  HRESULT result = CreateParser(&parser);
  if (SUCCEEDED(result)) result = Read(parser, argv[1] + std::string("/application.xml"));
  if (SUCCEEDED(result)) result = Print(parser);
  if (parser) parser->Release();
  CoUninitialize();
  if (FAILED(result)) {
    std::fprintf(stderr, "unregistered: error %08X\n", static_cast<unsigned>(result));
    return 1;
  }
  return 0;
}
