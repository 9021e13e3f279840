#include "cli/table.h"

#include <algorithm>
#include <iostream>

#include "cli/display_text.h"

namespace sabxml::cli {

void Columns::Print(std::ostream& out, std::string_view indentation) const {
  std::vector<std::size_t> widths;
  for (const auto& line : lines_) {
    widths.resize(std::max(widths.size(), line.size()));
    // A column in which something is long would push the rest out of sight.
    for (std::size_t i = 0; i < line.size(); ++i)
      widths[i] = std::max(widths[i], std::min<std::size_t>(WidthOf(line[i]), 40));
  }
  for (const auto& line : lines_) {
    std::string text;
    for (std::size_t i = 0; i < line.size(); ++i) text += Padded(line[i], widths[i]) + "  ";
    text.erase(text.find_last_not_of(' ') + 1);
    out << indentation << text << '\n';
  }
}

void PrintJson(const Json& json) {
  std::cout << json.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace sabxml::cli
