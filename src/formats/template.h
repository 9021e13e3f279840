#pragma once

#include <sabxml/result_codes.h>

#include "formats/rule.h"

namespace sab::formats {

// "DocClSID" is how the files spell it.
inline constexpr auto kTemplateAttributes = FirstCounts({
    Image("Icon", "Icon of a document"),
    Path("ResPath", "Folder of the resources"),
    Guid("DocClSID", "Class of a document; spelt so"),
    Text("WindowTitle", "Title of a document's window"),
    Text("DocName", "What a document is called"),
    Text("FileNewName", "File name that a new document begins with"),
    Text("FilterName", "Name of the file type in the dialog that saves"),
    Text("FilterExt", "Extension of a document's file"),
    Text("RegFileTypeId", "Identifier of the file type in the registry"),
    Text("RegFileTypeName", "Name of the file type in the registry"),
    Path("DllPath", "Library that carries the template out"),
});

inline constexpr auto kDefaultEnvironment = FirstCounts({
    Text("Identify", "Default environment of a document").Filled().RefersTo(Subject::kEnvironment),
});
inline constexpr auto kDefaultModule = FirstCounts({
    Text("Identify", "Default module of a document; it may be empty, but not missing")
        .Present()
        .RefersTo(Subject::kModule),
});

inline constexpr Rule kOpenFileType[] = {
    Text("FilterName", "Name of the file type").CompletesItem(),
    Text("FilterExt", "Pattern of its file names").CompletesItem(),
};
inline constexpr Rule kOpenFileTypes[] = {
    Entry("FileType", kOpenFileType, "Entry of the dialog that opens files"),
};

inline constexpr Rule kModulePaths[] = {
    Path("Module", "Path of a module descriptor, as the text of the element itself")
        .Each()
        .CompletesItem()
        .EachNodeCounts()
        .LeadsTo(Kind::kModule, "GetModulePaths"),
};

inline constexpr Rule kServicesBefore[] = {
    Guid("Service", "Class of a service that runs first").OrAnyText().Each().CompletesItem(),
};
inline constexpr Rule kServicesAfter[] = {
    Guid("Service", "Class of a service that runs last").OrAnyText().Each().CompletesItem(),
};

inline constexpr Rule kEditingObject[] = {
    Guid("DbObjIID", "Interface of the drawing's object").CompletesItem(),
    Guid("EditObjCLSID", "Class that edits it").CompletesItem(),
};
inline constexpr Rule kEditingObjects[] = {
    Entry("Item", kEditingObject, "Which class edits a kind of object"),
};

inline constexpr auto kTemplate = FirstCounts({
    Text("Identify", "Identifier of the template").Filled().Defines(Subject::kTemplate),
    Group("Attribute", kTemplateAttributes, "What documents look like"),
    Guid("DatabaseCLSID", "Class of the drawing database"),
    Guid("SessionCLSID", "Class of an editing session"),
    Group("DefEnvironment", kDefaultEnvironment, "Where a document begins"),
    Group("DefModule", kDefaultModule, "What a document begins with"),
    Group("OpenFileTypes", kOpenFileTypes, "Types of files that can be opened"),
    Group("Modules", kModulePaths, "Modules").Required(),
    Group("PreProcServices", kServicesBefore, "Services that run first"),
    Group("PostProcServices", kServicesAfter, "Services that run last"),
    Group("EditObjMap", kEditingObjects, "What edits which object"),
});

inline constexpr Document kTemplateDocument = {
    .kind = Kind::kTemplate,
    .root = "Template",
    .about = "template",
    .class_name = "VeTmplParser",
    .method = "GenerateTmpl",
    .result = sabxml::kInvalidTemplate,
    .content = kTemplate,
    .help = "A kind of document: its file type, its modules, its services",
};

}  // namespace sab::formats
