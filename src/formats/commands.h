#pragma once

#include <sabxml/result_codes.h>

#include "formats/rule.h"

namespace sab::formats {

inline constexpr Rule kCommand[] = {
    Text("Identify", "Identifier, by which user interfaces name the command")
        .Defines(Subject::kCommand)
        .Expected(),
    Guid("CLSID", "Class that carries it out"),
    Text("Priority", "Kept as text"),
    Text("LocalName", "Name that a user sees"),
    Value<Type::kTrue>("SystemCmd", "Whether it is a command of the system"),
    Text("Property", "Text for the command itself"),
    Int32("AppMode", "Number whose meaning is the host's"),
};

inline constexpr Rule kCommandList[] = {
    Text("Group", "Heading of the commands that follow").Each(),
    Entry("Command", kCommand, "A command"),
};

inline constexpr auto kCommands = FirstCounts({
    Text("Identify", "Identifier of the file").Required().Defines(Subject::kCommandFile),
    Group("Commands", kCommandList, "Commands in order, with headings between them"),
});

inline constexpr Document kCommandsDocument = {
    .kind = Kind::kCommands,
    .root = "Cmd",
    .about = "commands",
    .class_name = "VeCmdParser",
    .method = "GenerateCmd",
    .result = sabxml::kInvalidCommand,
    .content = kCommands,
    .help = "The commands of an environment, in order, with headings between them",
};

}  // namespace sab::formats
