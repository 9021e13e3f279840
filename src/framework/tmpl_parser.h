#pragma once

#include "common/string_list.h"
#include "framework/text_getters.h"
#include "server/owned_object.h"

namespace sab {

struct TmplParserFields {
  Bstr ConfigurationPath;
  Bstr TmplID;
  Bstr WindowTitle;
  Bstr DocName;
  Bstr FileNewName;
  Bstr FilterName;
  Bstr FilterExt;
  Bstr RegFileTypeId;
  Bstr RegFileTypeName;
  Bstr DllPath;
  Bstr DefaultEnv;
  Bstr DefaultModule;
  Bstr DatabaseCLSID;
  Bstr SessionCLSID;
  Bstr DocCLSID;
  Bstr IconPath;
  Bstr ResPath;
  StringList ModulePaths;
  StringList PreServiceCLSIDs;
  StringList PostServiceCLSIDs;
  OwnedObject<coclass::VePrsOpenFileTypeColl> OpenFileTypes;
  OwnedObject<coclass::VePrsEditObjColl> EditObjs;
};

/// Reads a template descriptor: a document template of the host with its file types, services,
/// editing objects and module descriptors.
class CVeTmplParser : public TextGetters<coclass::VeTmplParser, TmplParserFields> {
 public:
  HRESULT STDMETHODCALLTYPE GenerateTmpl() override;

  // clang-format off
  HRESULT STDMETHODCALLTYPE GetTmplID(BSTR* bsTmplID) override { return CopyText(fields.TmplID, bsTmplID); }
  HRESULT STDMETHODCALLTYPE GetModulePaths(SAFEARRAY** o_pModulePaths) override { return Reported(fields.ModulePaths.CopyTo(o_pModulePaths)); }
  /// Always empty: no file names its template.
  HRESULT STDMETHODCALLTYPE GetTmplName(BSTR* pTmplName) override { return CopyText(Bstr(), pTmplName); }
  HRESULT STDMETHODCALLTYPE GetWindowTitle(BSTR* sWindowTitle) override { return CopyText(fields.WindowTitle, sWindowTitle); }
  HRESULT STDMETHODCALLTYPE GetDocName(BSTR* sDocName) override { return CopyText(fields.DocName, sDocName); }
  HRESULT STDMETHODCALLTYPE GetFileNewName(BSTR* sFileNewName) override { return CopyText(fields.FileNewName, sFileNewName); }
  HRESULT STDMETHODCALLTYPE GetFilterName(BSTR* sFilterName) override { return CopyText(fields.FilterName, sFilterName); }
  HRESULT STDMETHODCALLTYPE GetFilterExt(BSTR* sFilterExt) override { return CopyText(fields.FilterExt, sFilterExt); }
  HRESULT STDMETHODCALLTYPE GetRegFileTypeId(BSTR* sRegFileTypeId) override { return CopyText(fields.RegFileTypeId, sRegFileTypeId); }
  HRESULT STDMETHODCALLTYPE GetRegFileTypeName(BSTR* sRegFileTypeName) override { return CopyText(fields.RegFileTypeName, sRegFileTypeName); }
  HRESULT STDMETHODCALLTYPE GetDllPath(BSTR* pDllPath) override { return CopyText(fields.DllPath, pDllPath); }
  HRESULT STDMETHODCALLTYPE GetDefaultEnv(BSTR* pDefaultEnv) override { return CopyText(fields.DefaultEnv, pDefaultEnv); }
  HRESULT STDMETHODCALLTYPE GetDefaultModule(BSTR* pDefaultModule) override { return CopyText(fields.DefaultModule, pDefaultModule); }
  HRESULT STDMETHODCALLTYPE GetPreServiceCLSIDs(SAFEARRAY** o_sPreServiceCLSIDs) override { return Reported(fields.PreServiceCLSIDs.CopyTo(o_sPreServiceCLSIDs)); }
  HRESULT STDMETHODCALLTYPE GetPostServiceCLSIDs(SAFEARRAY** o_sPostServiceCLSIDs) override { return Reported(fields.PostServiceCLSIDs.CopyTo(o_sPostServiceCLSIDs)); }
  HRESULT STDMETHODCALLTYPE GetDatabaseCLSID(BSTR* pDatabaseCLSID) override { return CopyText(fields.DatabaseCLSID, pDatabaseCLSID); }
  HRESULT STDMETHODCALLTYPE GetSessionCLSID(BSTR* pSessionCLSID) override { return CopyText(fields.SessionCLSID, pSessionCLSID); }
  HRESULT STDMETHODCALLTYPE GetDocCLSID(BSTR* pDocCLSID) override { return CopyText(fields.DocCLSID, pDocCLSID); }
  HRESULT STDMETHODCALLTYPE GetOpenFileTypes(IVePrsOpenFileTypeColl** o_ppOpenFileTypes) override { return Reported(GetField(fields.OpenFileTypes, o_ppOpenFileTypes)); }
  HRESULT STDMETHODCALLTYPE GetIconPath(BSTR* o_pIconPath) override { return CopyText(fields.IconPath, o_pIconPath); }
  HRESULT STDMETHODCALLTYPE GetEditObjs(IVePrsEditObjColl** o_ppEditObjs) override { return Reported(GetField(fields.EditObjs, o_ppEditObjs)); }
  HRESULT STDMETHODCALLTYPE GetResPath(BSTR* o_pResPath) override { return CopyText(fields.ResPath, o_pResPath); }
  // clang-format on
};

}  // namespace sab
