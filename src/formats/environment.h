#pragma once

#include <sabxml/result_codes.h>

#include "formats/rule.h"

namespace sab::formats {

inline constexpr Rule kCommandPath[] = {
    Path("Path", "Path of a command file")
        .Each()
        .CompletesItem()
        .LeadsTo(Kind::kCommands, "GetCmdPaths"),
};
inline constexpr Rule kCommandPaths[] = {
    Entry("Command", kCommandPath, "Commands of the environment"),
};

inline constexpr auto kEnvironment = FirstCounts({
    Text("Identify", "Identifier of the environment").Required().Defines(Subject::kEnvironment),
    Path("UIPath", "Path of the user-interface file")
        .Required()
        .LeadsTo(Kind::kUserInterface, "GetUiPath"),
    Text("DefaultPanel", "Identifier of the default panel").RefersTo(Subject::kPanel),
    Text("DefaultCmd", "Identifier of the default command").Required().RefersTo(Subject::kCommand),
    Group("Commands", kCommandPaths, "Command files").EntryIfPresent(),
});

inline constexpr Document kEnvironmentDocument = {
    .kind = Kind::kEnvironment,
    .root = "Environment",
    .about = "environment",
    .class_name = "VeEnvParser",
    .method = "GenerateEnv",
    .result = sabxml::kInvalidEnvironment,
    .content = kEnvironment,
    .help = "What a user works in: a user interface and the commands that it offers",
};

}  // namespace sab::formats
