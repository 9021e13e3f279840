#include "framework/module_parser.h"

#include "formats/module.h"
#include "framework/configuration.h"

namespace sab {

void ModuleParserFields::GenerateModule() {
  using F = ModuleParserFields;
  using Elements =
      BoundPaths<formats::kModuleDocument, Bind<"Identify", &F::ModuleID>,
                 Bind<"TemplateID", &F::TmplID>, Bind<"Title", &F::ModuleTitle>,
                 Bind<"Description", &F::Description>, Bind<"CLSID", &F::CLSID>,
                 Bind<"UiStateObj", &F::UiStateObjCLSID>,
                 Within<"Environments", Within<"Environment", Bind<"Path", &F::EnvPaths>>>,
                 ConfigurationPages<&F::Configurations>>;
  ReadDescriptor<Elements>(*this);
}

}  // namespace sab
