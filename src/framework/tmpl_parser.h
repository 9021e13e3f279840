#pragma once

#include "common/string_list.h"
#include "framework/descriptor_reader.h"
#include "framework/text_getters.h"
#include "server/owned_object.h"

namespace sab {

struct TmplParserFields {
  Bstr ConfigurationPath;
};

/// Reads a template descriptor: a document template of the host with its file types, services,
/// editing objects and module descriptors.
class CVeTmplParser : public TextGetters<coclass::VeTmplParser, TmplParserFields> {
 public:
  HRESULT STDMETHODCALLTYPE GenerateTmpl() override;

  // clang-format off
  HRESULT STDMETHODCALLTYPE GetTmplID(BSTR* bsTmplID) override { return CopyText(template_id_, bsTmplID); }
  HRESULT STDMETHODCALLTYPE GetModulePaths(SAFEARRAY** o_pModulePaths) override { return Reported(module_paths_.CopyTo(o_pModulePaths)); }
  /// Always empty: no file names its template.
  HRESULT STDMETHODCALLTYPE GetTmplName(BSTR* pTmplName) override { return CopyText(Bstr(), pTmplName); }
  HRESULT STDMETHODCALLTYPE GetWindowTitle(BSTR* sWindowTitle) override { return CopyText(window_title_, sWindowTitle); }
  HRESULT STDMETHODCALLTYPE GetDocName(BSTR* sDocName) override { return CopyText(document_name_, sDocName); }
  HRESULT STDMETHODCALLTYPE GetFileNewName(BSTR* sFileNewName) override { return CopyText(new_file_name_, sFileNewName); }
  HRESULT STDMETHODCALLTYPE GetFilterName(BSTR* sFilterName) override { return CopyText(filter_name_, sFilterName); }
  HRESULT STDMETHODCALLTYPE GetFilterExt(BSTR* sFilterExt) override { return CopyText(filter_extension_, sFilterExt); }
  HRESULT STDMETHODCALLTYPE GetRegFileTypeId(BSTR* sRegFileTypeId) override { return CopyText(registered_file_type_id_, sRegFileTypeId); }
  HRESULT STDMETHODCALLTYPE GetRegFileTypeName(BSTR* sRegFileTypeName) override { return CopyText(registered_file_type_name_, sRegFileTypeName); }
  HRESULT STDMETHODCALLTYPE GetDllPath(BSTR* pDllPath) override { return CopyText(library_path_, pDllPath); }
  HRESULT STDMETHODCALLTYPE GetDefaultEnv(BSTR* pDefaultEnv) override { return CopyText(default_environment_, pDefaultEnv); }
  HRESULT STDMETHODCALLTYPE GetDefaultModule(BSTR* pDefaultModule) override { return CopyText(default_module_, pDefaultModule); }
  HRESULT STDMETHODCALLTYPE GetPreServiceCLSIDs(SAFEARRAY** o_sPreServiceCLSIDs) override { return Reported(pre_services_.CopyTo(o_sPreServiceCLSIDs)); }
  HRESULT STDMETHODCALLTYPE GetPostServiceCLSIDs(SAFEARRAY** o_sPostServiceCLSIDs) override { return Reported(post_services_.CopyTo(o_sPostServiceCLSIDs)); }
  HRESULT STDMETHODCALLTYPE GetDatabaseCLSID(BSTR* pDatabaseCLSID) override { return CopyText(database_clsid_, pDatabaseCLSID); }
  HRESULT STDMETHODCALLTYPE GetSessionCLSID(BSTR* pSessionCLSID) override { return CopyText(session_clsid_, pSessionCLSID); }
  HRESULT STDMETHODCALLTYPE GetDocCLSID(BSTR* pDocCLSID) override { return CopyText(document_clsid_, pDocCLSID); }
  HRESULT STDMETHODCALLTYPE GetOpenFileTypes(IVePrsOpenFileTypeColl** o_ppOpenFileTypes) override { return Reported(GetField(open_file_types_, o_ppOpenFileTypes)); }
  HRESULT STDMETHODCALLTYPE GetIconPath(BSTR* o_pIconPath) override { return CopyText(icon_path_, o_pIconPath); }
  HRESULT STDMETHODCALLTYPE GetEditObjs(IVePrsEditObjColl** o_ppEditObjs) override { return Reported(GetField(edit_objects_, o_ppEditObjs)); }
  HRESULT STDMETHODCALLTYPE GetResPath(BSTR* o_pResPath) override { return CopyText(resource_path_, o_pResPath); }
  // clang-format on

 private:
  struct AttributeText;
  static const AttributeText kAttributes[];

  void ReadOpenFileTypes(const ConfigElement& list);
  void ReadModulePaths(DescriptorReader& file);
  static void ReadServices(const ConfigElement& list, StringList& services);
  void ReadEditObjects(const ConfigElement& list);

  Bstr template_id_;
  Bstr document_clsid_;
  Bstr default_environment_;
  Bstr default_module_;
  Bstr database_clsid_;
  Bstr session_clsid_;
  Bstr icon_path_;
  Bstr resource_path_;
  Bstr window_title_;
  Bstr document_name_;
  Bstr new_file_name_;
  Bstr filter_name_;
  Bstr filter_extension_;
  Bstr registered_file_type_id_;
  Bstr registered_file_type_name_;
  Bstr library_path_;
  StringList module_paths_;
  StringList pre_services_;
  StringList post_services_;
  OwnedObject<coclass::VePrsOpenFileTypeColl> open_file_types_;
  OwnedObject<coclass::VePrsEditObjColl> edit_objects_;
};

}  // namespace sab
