#pragma once

#include <sabxml/result_codes.h>

#include "formats/configuration.h"
#include "formats/rule.h"

namespace sab::formats {

inline constexpr Rule kEnvironmentPath[] = {
    Path("Path", "Path of an environment descriptor")
        .Each()
        .CompletesItem()
        .LeadsTo(Kind::kEnvironment, "GetEnvPaths"),
};
inline constexpr Rule kEnvironmentPaths[] = {
    Entry("Environment", kEnvironmentPath, "An environment of the module"),
};

inline constexpr auto kModule = FirstCounts({
    Text("Identify", "Identifier of the module").Required().Defines(Subject::kModule),
    Text("TemplateID", "Template that it belongs to").RefersTo(Subject::kTemplate),
    Text("Title", "Name that a user sees"),
    Text("Description", "What it is for"),
    Guid("CLSID", "Class of the module"),
    Guid("UiStateObj", "Class of the object that keeps the state of the user interface"),
    Group("Environments", kEnvironmentPaths, "Environments").EntryIfPresent(),
    Group("Configurations", kConfigurations, "Pages of the options"),
});

inline constexpr Document kModuleDocument = {
    .kind = Kind::kModule,
    .root = "Module",
    .about = "module",
    .class_name = "VeModuleParser",
    .method = "GenerateModule",
    .result = sabxml::kInvalidModule,
    .content = kModule,
    .help = "A part of the application with environments of its own",
};

}  // namespace sab::formats
