#include "framework/tmpl_parser.h"

#include "formats/template.h"
#include "framework/element_objects.h"
#include "framework/make.h"

namespace sab {

void TmplParserFields::GenerateTmpl() {
  using F = TmplParserFields;
  using OpenFileType = Each<"FileType", New<coclass::VePrsOpenFileType>, &F::OpenFileTypes,
                            Bind<"FilterName", &IVePrsOpenFileType::put_FilterName>,
                            Bind<"FilterExt", &IVePrsOpenFileType::put_FilterExt>>;
  using EditObj = Each<"Item", New<coclass::VePrsEditObj>, &F::EditObjs,
                       Bind<"DbObjIID", &IVePrsEditObj::put_DbObjIID>,
                       Bind<"EditObjCLSID", &IVePrsEditObj::put_EditObjCLSID>>;
  using Elements = BoundPaths<
      formats::kTemplateDocument, Bind<"Identify", &F::TmplID>,
      Bind<"Attribute/Icon", &F::IconPath>, Bind<"Attribute/ResPath", &F::ResPath>,
      Bind<"Attribute/DocClSID", &F::DocCLSID>, Bind<"Attribute/WindowTitle", &F::WindowTitle>,
      Bind<"Attribute/DocName", &F::DocName>, Bind<"Attribute/FileNewName", &F::FileNewName>,
      Bind<"Attribute/FilterName", &F::FilterName>, Bind<"Attribute/FilterExt", &F::FilterExt>,
      Bind<"Attribute/RegFileTypeId", &F::RegFileTypeId>,
      Bind<"Attribute/RegFileTypeName", &F::RegFileTypeName>,
      Bind<"Attribute/DllPath", &F::DllPath>, Bind<"DatabaseCLSID", &F::DatabaseCLSID>,
      Bind<"SessionCLSID", &F::SessionCLSID>, Bind<"DefEnvironment/Identify", &F::DefaultEnv>,
      Bind<"DefModule/Identify", &F::DefaultModule>, Within<"OpenFileTypes", OpenFileType>,
      Within<"Modules", Bind<"Module", &F::ModulePaths>>,
      Within<"PreProcServices", Bind<"Service", &F::PreServiceCLSIDs>>,
      Within<"PostProcServices", Bind<"Service", &F::PostServiceCLSIDs>>,
      Within<"EditObjMap", EditObj>>;
  ReadDescriptor<Elements>(*this);
}

}  // namespace sab
