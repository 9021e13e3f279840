#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

namespace sabxml::cli {

using Json = nlohmann::ordered_json;

/// Takes a tree piece by piece, in the order in which it is read, so that a file of any size and
/// depth passes through. The outermost object and the elements of a list have no names.
class TreeSink {
 public:
  virtual ~TreeSink() = default;

  /// @param type name of the object's interface; empty for an object that is none of the server's
  /// @param name_width columns of the longest name of a value in it
  virtual void BeginObject(std::string_view name, std::string_view type,
                           std::size_t name_width) = 0;
  virtual void BeginList(std::string_view name) = 0;
  virtual void End() = 0;  ///< of the object or list begun last
  /// @param value a text, a number, a truth value or null
  virtual void AddValue(std::string_view name, const Json& value) = 0;
};

}  // namespace sabxml::cli
