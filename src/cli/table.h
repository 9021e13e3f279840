#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/tree_sink.h"

namespace sabxml::cli {

/// Lines of cells that are printed as columns.
class Columns {
 public:
  void Add(std::vector<std::string> cells) { lines_.push_back(std::move(cells)); }
  bool IsEmpty() const { return lines_.empty(); }
  void Print(std::ostream& out, std::string_view indentation = {}) const;

 private:
  std::vector<std::vector<std::string>> lines_;
};

/// Prints JSON, texts that are not UTF-8 with replacements.
void PrintJson(const Json& json);

}  // namespace sabxml::cli
