#include "settings/file_path_cfg_parser.h"

#include "platform/neighbour_file.h"
#include "settings/indexes.h"

namespace sab {
namespace {

// "Historys" is how the files spell it.
constexpr char kRoot[] = "BrowseFileHistorys";
constexpr char kList[] = "DCHistory";
constexpr char kEntry[] = "History";

Text HistoryFile(TextView configuration_file) {
  return NeighbourFile(configuration_file, OLESTR("BrowseHistory.xml"));
}

}  // namespace

using F = FilePathCfgFields;

std::span<const SettingsRow> FilePathCfgFields::Rows() {
  static constexpr SettingsRow kRows[] = {
      Setting<&F::AutoSaveFilePath>("AutoSaveFilePath"),
      Setting<&F::ShapeFilePath>("ShapeFilePath"),
      Setting<&F::FormulaCurPath>("FormulaCurPath"),
      Setting<&F::TmplFilePath>("TmplFilePath"),
      Setting<&F::LibraryPath>("LibraryPath"),
      Setting<&F::LogFilePath>("LogFilePath"),
      Setting<&F::DCFavorite>("DesignCenterFavorite").Of("DCFavorite"),
      Setting<&F::XRefPaths>("XRefPath").Of("XRefPaths"),
      Setting<&F::FileSavePath>("FileSavePath"),
  };
  return kRows;
}

HRESULT CVeFilePathCfgParser::Save(BSTR i_bsCfgPath, BSTR i_bsNodePath) {
  return Guarded([&] {
    const TextView file = Bstr::ViewOf(i_bsCfgPath);
    SaveTo(file, Bstr::ViewOf(i_bsNodePath));
    SaveHistory(HistoryFile(file));
  });
}

HRESULT CVeFilePathCfgParser::Load(BSTR i_bsCfgPath, BSTR i_bsNodePath) {
  return Guarded([&] {
    const TextView file = Bstr::ViewOf(i_bsCfgPath);
    LoadFrom(file, Bstr::ViewOf(i_bsNodePath));
    LoadHistory(HistoryFile(file));
  });
}

void CVeFilePathCfgParser::SaveHistory(TextView file) const {
  ConfigDocument document;
  document.Create(kRoot);
  AppendedElement list = document.Root().Append(kList);
  for (const Bstr& entry : history_) list.Append(kEntry, entry.View());
  document.Save(file);
}

void CVeFilePathCfgParser::LoadHistory(TextView file) {
  ConfigDocument document;
  if (!document.Load(file)) return;
  const ConfigElement list = document.Select(std::string(kRoot) + '/' + kList);
  if (!list) return;
  std::vector<Bstr> loaded;
  Text text;
  for (const ConfigElement entry : list.Children()) {
    if (entry.HasNodeName(kEntry)) loaded.emplace_back(entry.ReadText(text));
  }
  history_ = std::move(loaded);
}

HRESULT CVeFilePathCfgParser::get_DCHistoryCount(INT* o_iVal) {
  return Reported(GetField(CountOf(history_), o_iVal));
}

HRESULT CVeFilePathCfgParser::get_DCHistoryAt(INT i_iVal, BSTR* pVal) {
  return Guarded([&] { return GetField(EntryAt(history_, i_iVal), pVal); });
}

HRESULT CVeFilePathCfgParser::put_DCBrowseHistory(BSTR pVal) {
  return Guarded([&] { history_.push_back(Bstr::CopyOf(pVal)); });
}

HRESULT CVeFilePathCfgParser::RemoveAllDCHistory() {
  history_.clear();
  return S_OK;
}

}  // namespace sab
