#pragma once

#include "formats/settings_group.h"

namespace sab::formats {

inline constexpr auto kFilePathSettings = FirstCounts({
    Path("AutoSaveFilePath", "Where drawings are saved automatically"),
    Path("ShapeFilePath", "Where shapes are"),
    Path("FormulaCurPath", "Where formulas of curves are"),
    Path("TmplFilePath", "Where templates are"),
    Path("LibraryPath", "Where the library of parts is"),
    Path("LogFilePath", "Where log files are written"),
    Path("DesignCenterFavorite", "Favourites of the design centre").Of("DCFavorite"),
    Path("XRefPath", "Where external references are searched for").Of("XRefPaths"),
    Path("FileSavePath", "Where drawings are saved"),
});

inline constexpr SettingsGroup kFilePathGroup = {"VeFilePathCfgParser", "folders",
                                                 kFilePathSettings};

}  // namespace sab::formats
