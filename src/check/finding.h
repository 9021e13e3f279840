#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "check/mistakes.h"
#include "project/project.h"

namespace sab::check {

/// A place in a file, as a person counts; 0 where there is none.
struct Location {
  std::string file;
  xml::Place start{0, 0};
  xml::Place end{0, 0};  ///< after the last character
};

struct Related {
  Location where;
  std::string message;
};

/// A change of a file that is certain to be what was meant.
struct Fix {
  xml::NodeIndex element = xml::kNoNode;
  std::string name;  ///< of the element instead of its own; empty to change its text
  std::string text;  ///< of the element instead of its own
  std::vector<xml::NodeIndex> others = {};  ///< further elements whose text is to be the same
};

/// One mistake.
struct Finding {
  Mistake mistake;
  Severity severity;
  Location where;
  std::string message;     ///< without the suggestion; no full stop
  std::string suggestion;  ///< what to write instead, "<RibbonBar>"; empty where none is near
  std::vector<Related> related;
  std::optional<Fix> fix;
  std::vector<std::string> paths;  ///< of files that the message names
  project::FileIndex file = 0;     ///< in the project
  std::size_t offset = 0;          ///< of the place in the file
};

/// What is wrong with a project.
struct Findings {
  std::vector<Finding> list;       ///< by file in reading order, then by place
  std::vector<std::string> notes;  ///< what was not checked, and why
};

}  // namespace sab::check
