#include "framework/configuration_list.h"

#include "base/bstr.h"
#include "base/com_error.h"
#include "coclasses.h"

namespace sab {
namespace {

bool IsClassIdentifier(const Text& text) {
  CLSID clsid;
  return !text.empty() && text.front() == '{' && SUCCEEDED(CLSIDFromString(text.c_str(), &clsid));
}

// One "Configuration" element; of a name that occurs twice the later text wins.
struct Page {
  Text clsid;
  Text path;
  Text property_page_clsid;
  Text local_name;

  explicit Page(const ConfigElement& configuration) {
    Text text;
    for (const ConfigElement child : configuration.Children()) {
      if (child.Is("CLSID")) {
        child.ReadText(text);
        if (IsClassIdentifier(text)) clsid = text;
      } else if (child.Is("Path")) {
        child.ReadText(path);
      } else if (child.Is("PropertyPageCLSID")) {
        child.ReadText(property_page_clsid);
      } else if (child.Is("LocalName")) {
        child.ReadText(local_name);
      }
    }
  }
};

}  // namespace

void ReadConfigurations(const ConfigElement& configurations,
                        OwnedObject<coclass::VePrsConfigColl>& list) {
  if (!configurations) return;
  ComponentCreator creator;
  const ComponentCreator::Scope scope(creator);
  for (const ConfigElement child : configurations.Children()) {
    if (!child.Is("Configuration")) continue;
    const Page page(child);
    if (page.clsid.empty()) continue;
    const auto entry = creator.Create<coclass::VePrsConfig>();
    Check(entry->put_CLSID(Bstr(page.clsid).Get()), "CLSID could not be put");
    Check(entry->put_Path(Bstr(page.path).Get()), "Path could not be put");
    Check(entry->put_PropertyPageCLSID(Bstr(page.property_page_clsid).Get()),
          "PropertyPageCLSID could not be put");
    Check(entry->put_LocalName(Bstr(page.local_name).Get()), "LocalName could not be put");
    Check(list->AddTail(entry.Get(), nullptr), "the configuration page could not be added");
  }
}

}  // namespace sab
