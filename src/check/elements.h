#pragma once

#include <string>
#include <vector>

#include "check/reporter.h"
#include "check/rule_facts.h"

namespace sab::check {

/// A text of a file that names a resource: a path or a picture.
struct Resource {
  xml::NodeIndex node = xml::kNoNode;
  project::RuleId rule = project::kNoRule;
};

/// One pass over the elements of a file: their places, numbers and texts.
class Elements {
 public:
  /// @param file has a schema
  Elements(Reporter& reporter, project::FileIndex file);

  /// @param resources receives the elements that name a folder, a file or a picture which is no
  ///                  document of the project
  void Check(std::vector<Resource>& resources);

 private:
  // What was found in an element that is open.
  struct Frame {
    xml::NodeIndex node = xml::kNoNode;
    xml::NodeIndex end = xml::kNoNode;  // the first node after it
    project::ContentId content = project::kNothing;
    project::RuleId rule = project::kNoRule;
    RuleSet seen = 0;
    RuleSet filled = 0;
    unsigned entries = 0;            // that are kept
    bool has_dropped_entry = false;  // which was reported
    unsigned unknown = 0;
    unsigned needing_name = 0;                    // entries that take their name from around them
    bool has_new_entries = false;                 // since it was named last
    xml::NodeIndex unnamed_entry = xml::kNoNode;  // the first one before any name
    xml::NodeIndex empty_command = xml::kNoNode;
    bool is_revision_dropped = false;
    bool is_lost = false;  // in a section of which another one is read
  };
  // What an element lacks that it must have; told at the end, since it may be in another place.
  struct Missing {
    xml::NodeIndex parent;
    project::RuleId rule;
    project::RuleId inner;  // what must be there in it
  };

  // Whether another element of the same rule follows, which is read together with this one.
  bool HasMore(xml::NodeIndex node) const;
  void CheckElement(xml::NodeIndex node, std::vector<Resource>& resources);
  void CheckStrange(xml::NodeIndex node, project::Placement placement, Frame& parent);
  void CheckRepetition(xml::NodeIndex node, project::RuleId rule, Frame& parent);
  void CheckValue(xml::NodeIndex node, project::RuleId rule, Frame& parent,
                  std::vector<Resource>& resources);
  void CheckText(xml::NodeIndex node, const formats::Rule& rule, const RuleFacts& facts,
                 std::string_view text);
  void CheckEmpty(xml::NodeIndex node, const formats::Rule& rule, const RuleFacts& facts,
                  Frame& parent);
  void CheckPath(xml::NodeIndex node, std::string_view text);
  void CheckOther(xml::NodeIndex node);
  void CheckStray(xml::NodeIndex parent, project::Span span);
  void CheckEachNode(xml::NodeIndex node);
  void CheckReplacementCharacters();

  void Open(xml::NodeIndex node, project::ContentId content, project::RuleId rule);
  void Close();
  void CheckNeeds(const Frame& frame);
  void CheckEntry(const Frame& frame, Frame* parent);
  void CheckNames(const Frame& frame);
  void ReportMissing();

  project::RuleId FirstIn(project::ContentId content, RuleSet rules) const;
  xml::NodeIndex FirstOf(xml::NodeIndex parent, project::RuleId rule);
  Related AlsoAt(xml::NodeIndex node, std::string message) const;
  std::string NameOf(xml::NodeIndex node) const;
  void Add(Mistake mistake, project::Span span, Words words) {
    reporter_.Add(mistake, index_, span, std::move(words));
  }

  Reporter& reporter_;
  const project::FileIndex index_;
  const project::File& file_;
  const xml::Document& xml_;
  const project::Schema& schema_;
  const SchemaFacts& facts_;
  const bool is_catalogue_;
  std::vector<Frame> frames_;
  bool is_next_lost_ = false;
  std::vector<Missing> missing_;
  std::vector<xml::NodeIndex> misplaced_;
  // Of rules that an element has more than once.
  std::map<std::pair<xml::NodeIndex, project::RuleId>, xml::NodeIndex> first_;
  // What parts of one whole have seen, by the element around them and their rule.
  std::map<std::pair<xml::NodeIndex, project::RuleId>, RuleSet> joined_;
};

}  // namespace sab::check
