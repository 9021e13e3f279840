#pragma once

#include <map>
#include <string>
#include <vector>

#include "automation.h"
#include "tree_sink.h"

namespace sabxml::cli {

/// Reads all that objects tell, by reflection over their type information: each property and each
/// Get method without arguments, string arrays, collections, and the objects found there in turn.
/// Nesting is limited by memory alone.
class ObjectReader {
 public:
  /// @param sink gets a value {"error": …} for what the object refuses to give
  explicit ObjectReader(TreeSink& sink) : sink_(sink) {}

  /// @param name what the sink is told as the object's name
  /// @param only names of members of this object, in any letter case; empty for all.
  ///             Raises Failure for a name that it does not have.
  void Read(IDispatch& object, std::string_view name, const std::vector<std::string>& only = {});

  /// What the objects refused to give: "UI: the reason (code)".
  const std::vector<std::string>& Refusals() const { return refusals_; }

 private:
  struct Member {
    std::string name;  // without Get
    DISPID id;
    WORD flags;
  };
  struct Shape {
    std::string type;
    bool is_collection = false;
    std::size_t name_width = 0;
    std::vector<Member> members;
  };
  struct Frame {
    Reference<IDispatch> object;
    const Shape* shape;
    std::vector<Member> selected;  // instead of the shape's members, for the outermost object
    bool has_selection = false;
    std::size_t next = 0;
    Value position;  // of a collection
  };

  const Shape& ShapeOf(IDispatch& object);
  static std::vector<Member> Select(const Shape& shape, const std::vector<std::string>& names);
  void Enter(IDispatch& object, std::string_view name);
  void Step();
  void StepMember(Frame& frame);
  void StepElement(Frame& frame);
  void Take(const Value& value, std::string_view name);
  void Refuse(std::string_view name, const Failure& failure);

  TreeSink& sink_;
  std::map<std::string, Shape> shapes_;  // by interface identifier
  std::vector<Frame> frames_;
  std::vector<std::string> refusals_;
};

/// The texts of a member that gives a string or an array of strings. Raises Failure.
std::vector<std::string> ReadTexts(IDispatch& object, std::string_view member);

}  // namespace sabxml::cli
