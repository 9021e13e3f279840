#pragma once

#include "formats/settings_group.h"

namespace sab::formats {

inline constexpr auto kUpdateSettings = FirstCounts({
    Value<Type::kMinusOne>("DisableHttp", "Whether updates over HTTP are forbidden").OnlyLoaded(),
    Value<Type::kMinusOne>("ReadOnly", "Whether users may not change these settings").OnlyLoaded(),
    Value<Type::kInt32OrMax>("Interval", "Time between two updates; INT_MAX for never")
        .OnlyLoaded(),
    Text("Server", "Where updates are").OnlyLoaded(),
});

inline constexpr SettingsGroup kUpdateGroup = {
    "VeAutoUpdateAdminCfgParser", "administration of the automatic update", kUpdateSettings};

}  // namespace sab::formats
