#pragma once

#include "formats/rule.h"

namespace sab::formats {

/// Names of sections that hosts look for by default; a section may have any name.
inline constexpr Rule kTextTemplate[] = {
    Text("TitleBlock", "Lines of the title block").Each(),
    Text("RevisionBlock", "Lines of the block of revisions").Each(),
    Text("BomHead", "Once above the bill of materials").Each(),
    Text("BomBody", "Once for each part").Each(),
    Text("BomFoot", "Once below the bill of materials").Each(),
};

inline constexpr Document kTextTemplateDocument = {
    .kind = Kind::kTextTemplate,
    .root = "",
    .about = "text template",
    .class_name = "VeTxtTemplateFileParser",
    .method = "Load",
    .content = kTextTemplate,
    .help = "What a title block or a bill of materials is filled in from",
};

}  // namespace sab::formats
