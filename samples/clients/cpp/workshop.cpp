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
#include <sabxml/com.h>

#include <cstdio>
#include <stdexcept>
#include <string>

namespace {

// This program's texts are ASCII; others would be converted from and to UTF-16 here.
class Text {
 public:
  Text() = default;
  explicit Text(const std::string& text) {
    const std::basic_string<OLECHAR> wide(text.begin(), text.end());
    string_ = SysAllocString(wide.c_str());
  }
  ~Text() { SysFreeString(string_); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;

  BSTR Get() const { return string_; }
  BSTR* Put() { return &string_; }
  std::string Ascii() const {
    std::string text;
    for (UINT i = 0; i < SysStringLen(string_); ++i) text += static_cast<char>(string_[i]);
    return text;
  }

 private:
  BSTR string_ = nullptr;
};

template <typename Interface>
class Pointer {
 public:
  Pointer() = default;
  ~Pointer() {
    if (object_) object_->Release();
  }
  Pointer(const Pointer&) = delete;
  Pointer& operator=(const Pointer&) = delete;

  Interface* operator->() const { return object_; }
  Interface** Put() { return &object_; }

 private:
  Interface* object_ = nullptr;
};

// What a failing call says of itself.
std::string Explain(HRESULT result) {
  char code[32];
  std::snprintf(code, sizeof code, "error %08lX",
                static_cast<unsigned long>(result) & 0xFFFFFFFFUL);
  Pointer<IErrorInfo> info;
  if (GetErrorInfo(0, info.Put()) != S_OK) return code;
  Text source, description;
  info->GetSource(source.Put());
  info->GetDescription(description.Put());
  return code + (" from " + source.Ascii()) + "\n" + description.Ascii();
}

void Check(HRESULT result) {
  if (FAILED(result)) throw std::runtime_error(Explain(result));
}

template <typename Interface>
void Create(Pointer<Interface>& object, REFCLSID clsid, REFIID iid) {
  Check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid,
                         reinterpret_cast<void**>(object.Put())));
}

void ReadApplication(const std::string& folder) {
  Pointer<IVeAppParser> app;
  Create(app, CLSID_VeAppParser, IID_IVeAppParser);
  Check(app->put_ConfigurationPath(Text(folder + "/application.xml").Get()));
  Check(app->GenerateApp());
  Text product, edition;
  Check(app->GetProductName(product.Put()));
  Check(app->GetProductEdition(edition.Put()));
  std::printf("%s, %s\n", product.Ascii().c_str(), edition.Ascii().c_str());

  Pointer<IVePrsConfigColl> pages;
  Check(app->GetConfigurations(pages.Put()));
  LONG_PTR position = 0;
  Check(pages->GetHeadPosition(&position));
  while (position != 0) {
    Pointer<IVePrsConfig> page;
    Check(pages->GetNext(&position, page.Put()));
    Text clsid;
    Check(page->get_CLSID(clsid.Put()));
    std::printf("page %s\n", clsid.Ascii().c_str());
  }
}

void ChangeSetting(const std::string& file) {
  const Text path(file), node("/Settings/Display"), other_node("/Settings/Apprentice");
  Pointer<IVeDisplayCfgParser> display, again;
  Create(display, CLSID_VeDisplayCfgParser, IID_IVeDisplayCfgParser);
  Check(display->Load(path.Get(), node.Get()));
  SHORT before = 0, after = 0;
  Check(display->get_CursorSize(&before));
  Check(display->put_CursorSize(9));
  // Save leaves what a block has already, so the change goes into another one.
  Check(display->Save(path.Get(), other_node.Get()));
  Create(again, CLSID_VeDisplayCfgParser, IID_IVeDisplayCfgParser);
  Check(again->Load(path.Get(), other_node.Get()));
  Check(again->get_CursorSize(&after));
  std::printf("cursor size %d, then %d\n", before, after);
}

void ShowError(const std::string& file) {
  Pointer<IVeAutoUpdateAdminCfgParser> update;
  Create(update, CLSID_VeAutoUpdateAdminCfgParser, IID_IVeAutoUpdateAdminCfgParser);
  const HRESULT result = update->Save(Text(file).Get(), Text("/Settings/Update").Get());
  if (FAILED(result)) std::printf("%s\n", Explain(result).c_str());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: workshop SAMPLES_WORKSHOP_FOLDER COPY_OF_SETTINGS\n");
    return 2;
  }
  if (FAILED(CoInitialize(nullptr))) return 1;
  int result = 0;
  try {
    ReadApplication(argv[1]);
    ChangeSetting(argv[2]);
    ShowError(argv[2]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "workshop: %s\n", error.what());
    result = 1;
  }
  CoUninitialize();
  return result;
}
