#pragma once

#include <string>
#include <utility>
#include <vector>

#include "cli/tree_sink.h"

namespace sabxml::cli {

/// Counts the elements of lists by their types, and passes everything on.
class ElementCounter final : public TreeSink {
 public:
  /// @param next may be null
  explicit ElementCounter(TreeSink* next) : next_(next) {}

  void BeginObject(std::string_view name, std::string_view type, std::size_t name_width) override;
  void BeginList(std::string_view name) override;
  void End() override;
  void AddValue(std::string_view name, const Json& value) override;

  /// Class names and numbers, in the order in which the classes came first.
  const std::vector<std::pair<std::string, std::size_t>>& Counts() const { return counts_; }

  /// "2 ribbon tabs, 1 custom window"; empty without elements.
  std::string Words() const;

 private:
  TreeSink* next_;
  std::vector<std::pair<std::string, std::size_t>> counts_;
};

}  // namespace sabxml::cli
