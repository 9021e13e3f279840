#pragma once

#include <string>
#include <string_view>

namespace sabxml::cli {

/// A text of a file as one line that a terminal shows and does not obey: control characters are
/// written as \n, \t or \x1b, bytes that are not UTF-8 as \xff.
std::string OnOneLine(std::string_view utf8);

/// The same for a message, whose further lines are indented: what a message quotes cannot pass for
/// another message.
std::string AsMessage(std::string_view utf8);

/// Columns that a text takes: ideographs take two.
std::size_t WidthOf(std::string_view utf8);

/// The text and the blanks that fill it up to a width.
std::string Padded(std::string_view utf8, std::size_t width);

}  // namespace sabxml::cli
