#pragma once

#include <vector>

#include "settings/settings_parser.h"

namespace sab {

struct FilePathCfgFields {
  // Kept in the file.
  Bstr AutoSaveFilePath;
  Bstr ShapeFilePath;
  Bstr FormulaCurPath;
  Bstr TmplFilePath;
  Bstr LibraryPath;
  Bstr LogFilePath;
  Bstr DCFavorite;
  Bstr XRefPaths;
  Bstr FileSavePath;

  // Only in memory.
  Bstr NEBPrefix;
  Bstr SearchFilePath;
  Bstr FontFilePath;
  Bstr HatchPicPath;
  Bstr HelpFilePath;
  Bstr CfgFilePath;
  Bstr LastLnTypePath;

  static std::span<const SettingsRow> Rows();
};

/// The folders of the host, and the browse history of its design centre. The history lies in a file
/// of its own, BrowseHistory.xml, beside the configuration file; a save writes it anew.
class CVeFilePathCfgParser
    : public SettingsParser<coclass::VeFilePathCfgParser, FilePathCfgFields> {
 public:
  /// Without a configuration file the history alone is written.
  HRESULT STDMETHODCALLTYPE Save(BSTR i_bsCfgPath, BSTR i_bsNodePath) override;
  HRESULT STDMETHODCALLTYPE Load(BSTR i_bsCfgPath, BSTR i_bsNodePath) override;

  HRESULT STDMETHODCALLTYPE get_DCHistoryCount(INT* o_iVal) override;
  /// @return E_INVALIDARG for an index outside the history
  HRESULT STDMETHODCALLTYPE get_DCHistoryAt(INT i_iVal, BSTR* pVal) override;
  /// Adds an entry at the end, even where it is there already.
  HRESULT STDMETHODCALLTYPE put_DCBrowseHistory(BSTR pVal) override;
  HRESULT STDMETHODCALLTYPE RemoveAllDCHistory() override;

 private:
  void SaveHistory(TextView file) const;
  void LoadHistory(TextView file);

  std::vector<Bstr> history_;  // oldest first
};

}  // namespace sab
