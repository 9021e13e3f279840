#include "settings/file_path_cfg_parser.h"

#include "formats/browse_history.h"
#include "formats/settings_file_path.h"
#include "platform/neighbour_file.h"
#include "settings/indexes.h"

namespace sab {
namespace {

constexpr std::string_view kRoot = formats::kBrowseHistoryDocument.root;
constexpr std::string_view kList = kElement<formats::kBrowseHistory, "DCHistory">;
constexpr std::string_view kEntry = kElement<formats::kBrowseEntries, "History">;

Text HistoryFile(TextView configuration_file) {
  return NeighbourFile(configuration_file, OLESTR("BrowseHistory.xml"));
}

}  // namespace

using F = FilePathCfgFields;

std::span<const SettingsRow> FilePathCfgFields::Rows() {
  static constexpr auto kRows = BindSettings<
      formats::kFilePathSettings, Bind<"AutoSaveFilePath", &F::AutoSaveFilePath>,
      Bind<"ShapeFilePath", &F::ShapeFilePath>, Bind<"FormulaCurPath", &F::FormulaCurPath>,
      Bind<"TmplFilePath", &F::TmplFilePath>, Bind<"LibraryPath", &F::LibraryPath>,
      Bind<"LogFilePath", &F::LogFilePath>, Bind<"DesignCenterFavorite", &F::DCFavorite>,
      Bind<"XRefPath", &F::XRefPaths>, Bind<"FileSavePath", &F::FileSavePath>>();
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
  const ConfigElement list = document.Select(std::string(kRoot).append("/").append(kList));
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
