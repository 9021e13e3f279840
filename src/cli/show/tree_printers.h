#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "cli/host/automation.h"
#include "cli/tree_sink.h"

namespace sabxml::cli {

/// Adds an object "error" with code, meaning and reason; the former two are null where neither the
/// server nor the system was asked.
void AddFailure(TreeSink& sink, const Failure& failure);

/// Prints an aligned tree, one value a line.
class TextTreePrinter final : public TreeSink {
 public:
  /// @param colours whether names are set off by colour
  TextTreePrinter(std::ostream& out, bool colours) : out_(out), colours_(colours) {}

  void BeginObject(std::string_view name, std::string_view type, std::size_t name_width) override;
  void BeginList(std::string_view name) override;
  void End() override;
  void AddValue(std::string_view name, const Json& value) override;

 private:
  struct Level {
    std::size_t name_width;
    std::size_t elements = 0;
    bool is_list = false;
  };

  std::string NextName(std::string_view name);
  void Begin(std::string_view name, const Level& level);
  void FinishHeading();
  void PrintLine(const std::string& name, const std::string& value);

  std::ostream& out_;
  bool colours_;
  std::vector<Level> levels_;
  std::string heading_;  // of a structure whose content is not known yet
  bool has_heading_ = false;
};

/// Prints JSON, members in the order in which they come.
class JsonPrinter final : public TreeSink {
 public:
  explicit JsonPrinter(std::ostream& out) : out_(out) {}

  void BeginObject(std::string_view name, std::string_view type, std::size_t name_width) override;
  void BeginList(std::string_view name) override;
  void End() override;
  void AddValue(std::string_view name, const Json& value) override;

 private:
  void Separate(std::string_view name);
  void BreakLine();

  std::ostream& out_;
  std::string closing_;  // brackets to come, the innermost last
  bool is_empty_ = true;
};

}  // namespace sabxml::cli
