#pragma once

#include <string>

#include "project/schema.h"

namespace sab::project {

// What a rule says, in words for the author of a file.

/// Whether the element must be there: "may be left out".
std::string NeedOf(const formats::Rule& rule);
/// Which of several elements counts; empty where each does.
std::string WhichCounts(const formats::Rule& rule);
/// The elements that may have a content, outermost first.
std::string PlacesOf(const Schema& schema, ContentId content);

/// "a panel", "an environment", "a user interface", "an <Environment>".
std::string WithArticle(std::string_view what);

}  // namespace sab::project
