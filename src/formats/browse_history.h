#pragma once

#include "formats/rule.h"

namespace sab::formats {

inline constexpr Rule kBrowseEntries[] = {
    Path("History", "A place that was visited, the oldest first")
        .Each()
        .MatchingWholeName()
        .OrAnyText(),
};
inline constexpr Rule kBrowseHistory[] = {
    Group("DCHistory", kBrowseEntries, "Places visited in the design centre"),
};

// "Historys" is how the files spell it.
inline constexpr Document kBrowseHistoryDocument = {
    .kind = Kind::kBrowseHistory,
    .root = "BrowseFileHistorys",
    .about = "browse history",
    .class_name = "VeFilePathCfgParser",
    .method = "Load",
    .content = kBrowseHistory,
    .help = "The places visited in the design centre",
};

}  // namespace sab::formats
