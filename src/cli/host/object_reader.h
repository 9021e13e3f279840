#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/host/automation.h"
#include "cli/host/readable_members.h"
#include "cli/tree_sink.h"
#include "client/late_call.h"

namespace sabxml::cli {

/// Reads all values of objects, by reflection over their type information: properties and Get
/// methods without arguments, arrays, lists by count and index, named values, collections, and the
/// objects found there in turn. Nesting is limited by memory alone.
class ObjectReader {
 public:
  /// @param sink gets a value {"error": …} for what the object refuses to give
  explicit ObjectReader(TreeSink& sink) : sink_(sink) {}

  /// @param name the object's name for the sink
  /// Another name for a member of the object.
  using Naming = std::function<std::string(const std::string& member)>;

  /// @param only names of values of this object, in any letter case; empty for all.
  ///             Raises Failure for a name that it cannot have.
  /// @param naming for this object's values; the members' names will still do in `only`
  void Read(IDispatch& object, std::string_view name, const std::vector<std::string>& only = {},
            const Naming& naming = {});

  /// What the objects refused to give: "UI: the reason (code)".
  const std::vector<std::string>& Refusals() const { return refusals_; }

 private:
  struct Shape {
    std::string type;
    bool is_collection = false;
    std::size_t name_width = 0;
    std::vector<ReadableMember> members;
  };
  struct Frame {
    ComPtr<IDispatch> object;
    const Shape* shape;
    const std::vector<ReadableMember>* members;
    std::size_t next = 0;
    std::optional<sab::client::ListWalk> walk;  // of a collection
  };

  const Shape& ShapeOf(IDispatch& object);
  /// @param shown the members under the names that are shown
  static ReadableMember MemberNamed(const Shape& shape, const std::vector<ReadableMember>& shown,
                                    const std::string& name);
  /// @param selected null for all members
  void Enter(IDispatch& object, std::string_view name, const std::vector<ReadableMember>* selected);
  void Step();
  void StepMember(Frame& frame);
  void TakeMember(IDispatch& object, const ReadableMember& member);
  void TakeValue(const Value& value, const ReadableMember& member);
  void TakeCountedList(IDispatch& object, const ReadableMember& list);
  void TakeNamedValues(IDispatch& object, const ReadableMember& values);
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
