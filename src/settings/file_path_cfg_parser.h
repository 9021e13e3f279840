#pragma once

#include <vector>

#include "common/indexes.h"
#include "settings/settings_parser.h"

namespace sab {

/// The folders of the host, and the browse history of its design centre. The history lies in a file
/// of its own, BrowseHistory.xml, beside the configuration file; a save writes it anew.
struct FilePathCfgFields : Settings<FilePathCfgFields> {
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
  std::vector<Bstr> history;  ///< oldest first

  /// Without a configuration file the history alone is written.
  void Save(TextView file, TextView node_path) const;
  void Load(TextView file, TextView node_path);

  INT DCHistoryCount() const noexcept { return CountOf(history); }
  /// Raises ComError(E_INVALIDARG) for an index outside the history.
  KeepsPlaces<Bstr> DCHistoryAt(INT index) const { return EntryAt(history, index); }
  /// Adds an entry at the end, even where it is there already.
  void DCBrowseHistory(Bstr entry) { history.push_back(std::move(entry)); }
  void RemoveAllDCHistory() noexcept { history.clear(); }

  static std::span<const SettingsRow> Rows();
};
using CVeFilePathCfgParser = Component<coclass::VeFilePathCfgParser, FilePathCfgFields>;

}  // namespace sab
