#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/host/server.h"
#include "cli/show/descriptor.h"
#include "cli/show/progress_line.h"
#include "cli/tree_sink.h"
#include "project/path_finder.h"

namespace sabxml::cli {

/// The way of a host through the chain of descriptors: from the application's file to all that its
/// files name. A file that is missing or refused is noted, and the walk continues.
class Walk {
 public:
  /// One line of the outline: a file where it is named.
  struct Line {
    std::size_t depth;
    std::string file;
    std::string kind;
    std::string content;
    bool has_failed;
  };

  /// @param json gets everything that is read; may be null
  Walk(Server& server, ProgressLine& progress, TreeSink* json)
      : server_(server), progress_(progress), json_(json) {}

  /// @param file an application descriptor
  void Run(const std::string& file);

  const std::vector<Line>& Lines() const { return lines_; }
  std::size_t FileCount() const { return seen_.size(); }
  std::size_t FailedFileCount() const;
  const std::vector<std::string>& Warnings() const { return warnings_; }
  /// One for each time that a file is named which is missing or refused.
  const std::vector<Failure>& Failures() const { return failures_; }

 private:
  struct Mention {
    std::string file;
    std::string named;     // as the descriptor has it; empty for the first file
    std::string named_by;  // file of that descriptor
  };

  using Names = std::vector<std::pair<std::string, const DescriptorKind*>>;

  /// @param name of the file's object in JSON
  void Visit(std::string_view name, const Mention& mention, const DescriptorKind& kind);
  void Read(const Mention& mention, const DescriptorKind& kind);
  void Follow(const std::string& file, const Names& names);
  void Note(const Mention& mention, const Failure& failure);
  void AddJson(std::string_view name, const Json& value);

  Server& server_;
  ProgressLine& progress_;
  TreeSink* json_;
  sab::project::PathFinder finder_;
  std::size_t depth_ = 0;
  std::map<std::string, std::optional<Failure>> seen_;  // by kind and file
  std::vector<Line> lines_;
  std::vector<std::string> warnings_;
  std::vector<Failure> failures_;
};

}  // namespace sabxml::cli
