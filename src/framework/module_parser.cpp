#include "framework/module_parser.h"

#include "base/com_error.h"
#include "framework/configuration_list.h"
#include "framework/descriptor_reader.h"
#include "framework/path_list.h"

namespace sab {

HRESULT CVeModuleParser::GenerateModule() {
  return Guarded([this] {
    DescriptorReader file(fields.ConfigurationPath);

    file.ReadRequired("Module/Identify", module_id_, kInvalidModule);
    file.Read("Module/TemplateID", template_id_);
    file.Read("Module/Title", title_);
    file.Read("Module/Description", description_);
    file.Read("Module/CLSID", module_clsid_);
    file.Read("Module/UiStateObj", ui_state_object_clsid_);

    if (const ConfigElement environments = file.Find("Module/Environments")) {
      ReadPaths(environments, "Environment", environment_paths_);
      if (environment_paths_.IsEmpty()) {
        file.Fail(kInvalidModule, "Module/Environments",
                  "names no environment: give it an Environment with a Path, or leave it out");
      }
    }

    ReadConfigurations(file.Find("Module/Configurations"), configurations_);
  });
}

}  // namespace sab
