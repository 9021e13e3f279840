#include "settings/file_path_cfg_parser.h"

#include "formats/browse_history.h"
#include "formats/settings_file_path.h"
#include "platform/neighbour_file.h"

namespace sab {
namespace {

constexpr std::string_view kRoot = formats::kBrowseHistoryDocument.root;
constexpr std::string_view kList = kElement<formats::kBrowseHistory, "DCHistory">;
constexpr std::string_view kEntry = kElement<formats::kBrowseEntries, "History">;

Text HistoryFile(TextView configuration_file) {
  return NeighbourFile(configuration_file, OLESTR("BrowseHistory.xml"));
}

void SaveHistory(const std::vector<Bstr>& history, TextView file) {
  ConfigDocument document;
  document.Create(kRoot);
  AppendedElement list = document.Root().Append(kList);
  for (const Bstr& entry : history) list.Append(kEntry, entry.View());
  document.Save(file);
}

void LoadHistory(std::vector<Bstr>& history, TextView file) {
  ConfigDocument document;
  if (!document.Load(file)) return;
  const ConfigElement list = document.Select(std::string(kRoot).append("/").append(kList));
  if (!list) return;
  std::vector<Bstr> loaded;
  Text text;
  for (const ConfigElement entry : list.Children()) {
    if (entry.HasNodeName(kEntry)) loaded.emplace_back(entry.ReadText(text));
  }
  history = std::move(loaded);
}

}  // namespace

std::span<const SettingsRow> FilePathCfgFields::Rows() {
  using F = FilePathCfgFields;
  static constexpr auto kRows = BindSettings<
      formats::kFilePathSettings, Bind<"AutoSaveFilePath", &F::AutoSaveFilePath>,
      Bind<"ShapeFilePath", &F::ShapeFilePath>, Bind<"FormulaCurPath", &F::FormulaCurPath>,
      Bind<"TmplFilePath", &F::TmplFilePath>, Bind<"LibraryPath", &F::LibraryPath>,
      Bind<"LogFilePath", &F::LogFilePath>, Bind<"DesignCenterFavorite", &F::DCFavorite>,
      Bind<"XRefPath", &F::XRefPaths>, Bind<"FileSavePath", &F::FileSavePath>>();
  return kRows;
}

void FilePathCfgFields::Save(TextView file, TextView node_path) const {
  Settings::Save(file, node_path);
  SaveHistory(history, HistoryFile(file));
}

void FilePathCfgFields::Load(TextView file, TextView node_path) {
  Settings::Load(file, node_path);
  LoadHistory(history, HistoryFile(file));
}

}  // namespace sab
