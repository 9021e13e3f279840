#pragma once

#include "framework/descriptor_text.h"
#include "object/component.h"
#include "server/owned_object.h"

namespace sab {

/// Reads a template descriptor: a document template of the host with its file types, services,
/// editing objects and module descriptors.
struct TmplParserFields {
  Bstr ConfigurationPath;
  DescriptorText TmplID;
  DescriptorText TmplName;  ///< always empty: no file names its template
  DescriptorText WindowTitle;
  DescriptorText DocName;
  DescriptorText FileNewName;
  DescriptorText FilterName;
  DescriptorText FilterExt;
  DescriptorText RegFileTypeId;
  DescriptorText RegFileTypeName;
  DescriptorText DllPath;
  DescriptorText DefaultEnv;
  DescriptorText DefaultModule;
  DescriptorText DatabaseCLSID;
  DescriptorText SessionCLSID;
  DescriptorText DocCLSID;
  DescriptorText IconPath;
  DescriptorText ResPath;
  StringList ModulePaths;
  StringList PreServiceCLSIDs;
  StringList PostServiceCLSIDs;
  OwnedObject<coclass::VePrsOpenFileTypeColl> OpenFileTypes;
  OwnedObject<coclass::VePrsEditObjColl> EditObjs;

  void GenerateTmpl();
};
using CVeTmplParser = Component<coclass::VeTmplParser, TmplParserFields>;

}  // namespace sab
