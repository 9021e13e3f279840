#pragma once

#include "check/reporter.h"

namespace sab::check {

// Mistakes in the markup of single elements that the server reads, whatever they mean.

inline constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

/// Attributes, none of which is ever read. Those with a prefix are not for the server.
void CheckAttributes(Reporter& reporter, project::FileIndex file, xml::NodeIndex element);

/// A node that has a text of its own: U+FFFD, at its first place.
void CheckReplacementCharacter(Reporter& reporter, project::FileIndex file, xml::NodeIndex node);

/// Whether a text has lost a character or has an element in it, which is reported as such: what
/// else is wrong with it follows from that.
/// @param text of the element
bool IsDamaged(const project::File& file, xml::NodeIndex element, std::string_view text);

/// An element in a namespace whose name the server looks for.
void ReportForeign(Reporter& reporter, project::FileIndex file, xml::NodeIndex element);

}  // namespace sab::check
