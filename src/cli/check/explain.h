#pragma once

#include <string>
#include <vector>

namespace sabxml::cli {

// What the formats say of a name: an element, a key of settings, a section of a text template.

/// What has names that can be explained: kinds of documents, settings, and text templates.
std::vector<std::string> ExplainedKinds();
/// The names of all kinds, in alphabetical order.
std::vector<std::string> ExplainedNames();

/// Prints what is known of a name.
/// @param kind the one that is meant; empty for all
/// Raises Misunderstood for what is not known.
void ExplainElement(const std::string& element, const std::string& kind, bool as_json);

}  // namespace sabxml::cli
