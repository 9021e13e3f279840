#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "project/lines.h"
#include "project/schema.h"
#include "project/source.h"
#include "xml/document.h"
#include "xml/repaired_text.h"

namespace sab::project {

/// What an element is to the server, and why.
enum class Placement : std::uint8_t {
  kKnown,      ///< it has a rule in its place
  kMisspelt,   ///< the server does not know it; it has the rule that it seems to mean
  kMisplaced,  ///< the server does not look for it here; it has the rule of another place
  kForeign,  ///< it has a rule, but it is in a namespace, in which the server does not look for it
  kUnknown,  ///< it has no rule in this kind of document
  kExtension,  ///< the same, in a namespace: not meant for the server
  kInValue,    ///< it is in an element that has a text
  kInside,     ///< it is in an element of which nothing is known
};

/// An identifier or a path in a document, where it is defined or where it is used.
struct Identifier {
  std::string_view text;  ///< UTF-8, without white space at its ends; lives as long as the file
  xml::NodeIndex node = xml::kNoNode;
  RuleId rule = kNoRule;  ///< its role and subject
};

/// Why a file is not in a project with its content.
struct ReadFailure {
  enum class Reason { kUnreadable, kEncoding, kNotWellFormed };
  Reason reason = Reason::kUnreadable;
  xml::Place place{0, 0};  ///< 0 where there is none
  std::string message;
};

/// How a file is read that is not well-formed: not at all, as a host does, or as well as it can be,
/// while a person is writing it.
enum class Reading : std::uint8_t { kStrict, kTolerant };

/// One file of a project with the meaning of its elements. A file that cannot be read or is not
/// well-formed has a failure and no elements; nothing is raised for what a file holds.
class File {
 public:
  /// @param path as it is to be named, with slashes
  /// @param kind what it is read as; kNone recognises it by its document element or its bytes.
  ///             Settings have no form: their elements have no rules
  /// @param reading a broken file that is read tolerantly has a failure and elements
  File(std::string path, formats::Kind kind, const Source& source,
       Reading reading = Reading::kStrict);

  const std::string& Path() const { return path_; }
  /// What it is read as; kNone where that cannot be told.
  formats::Kind GetKind() const { return kind_; }
  /// The kind whose document element it has; kNone for an unknown element.
  formats::Kind KindOfRoot() const { return kind_of_root_; }
  /// Whether it is no doubt a document of another kind than the one that it is read as.
  bool IsOfOtherKind() const { return is_of_other_kind_; }
  const std::optional<ReadFailure>& Failure() const { return failure_; }

  /// Whether there are elements.
  bool HasElements() const { return xml_ != nullptr; }
  const xml::Document& Xml() const { return *xml_; }
  /// Whether elements have rules.
  bool HasSchema() const { return schema_ != nullptr && xml_ != nullptr && !is_of_other_kind_; }
  const Schema& GetSchema() const { return *schema_; }

  Placement PlacementOf(xml::NodeIndex element) const { return meanings_[element].placement; }
  /// The rule of an element; kNoRule for the document element and for what is not known.
  RuleId RuleIdOf(xml::NodeIndex element) const { return meanings_[element].rule; }
  const formats::Rule* RuleOf(xml::NodeIndex element) const {
    const RuleId rule = RuleIdOf(element);
    return rule == kNoRule ? nullptr : &schema_->At(rule);
  }
  ContentId ContentOf(xml::NodeIndex element) const { return meanings_[element].content; }
  /// The child of a name that counts, the first or the last by its rule; kNoNode for none.
  xml::NodeIndex ChildNamed(xml::NodeIndex element, std::string_view name) const;
  /// Whether an element is not known that holds others.
  bool HasUnknownParts() const { return has_unknown_parts_; }
  /// What an element that is not known may be meant to be.
  struct Suggestion {
    std::string_view name;
    bool is_certain = false;  ///< it is known in this place, and no other name is as near
  };
  Suggestion SuggestionFor(xml::NodeIndex element) const;

  /// All identifiers and paths, in the order of the document.
  std::span<const Identifier> Identifiers() const { return identifiers_; }

  /// The text of an element as the server reads it, in UTF-8; valid as long as the file.
  std::string_view TextOf(xml::NodeIndex element) const;
  /// The text of the child of a name that counts; empty where there is none.
  std::string_view TextOf(xml::NodeIndex element, std::string_view child) const;

  /// Whether the text of an element is not empty.
  bool HasText(xml::NodeIndex element) const;

  /// The text of a plain text file in UTF-8.
  const std::string& PlainText() const { return plain_text_; }

  /// The text in UTF-8: of the document, or the plain text.
  std::string_view Text() const { return xml_ ? xml_->TextBytes() : std::string_view(plain_text_); }
  /// The text that the file has, from which that of a tolerant reading may differ.
  std::string_view OriginalText() const { return repaired_ ? std::string_view(original_) : Text(); }
  /// A place of the text in that of the file, and back.
  std::size_t ToOriginal(std::size_t offset) const {
    return repaired_ ? repaired_->ToOriginal(offset) : offset;
  }
  std::size_t FromOriginal(std::size_t offset) const {
    return repaired_ ? repaired_->FromOriginal(offset) : offset;
  }

  // Places in the text of the document, or in the plain text: bytes of its UTF-8.
  /// An element's start tag up to the end of its name.
  Span TagSpan(xml::NodeIndex element) const;
  /// An element's text without white space at the ends; its tag where there is none.
  Span ValueSpan(xml::NodeIndex element) const;
  xml::Place PlaceOf(std::size_t offset) const;

 private:
  struct Meaning {
    RuleId rule = kNoRule;
    ContentId content = kNothing;
    Placement placement = Placement::kInside;
  };

  void ReadXml(std::string bytes, const Source& source, Reading reading);
  void ReadBroken(const std::string& bytes);
  void RecogniseKind();
  bool FitsKindOfRoot() const;
  void Classify();
  void ClassifyStrange(xml::NodeIndex node, const Meaning& parent, RuleId found);
  void Recover(xml::NodeIndex node, ContentId content);
  std::size_t CountOfFitting(xml::NodeIndex node, ContentId content) const;
  bool HasElementsInside(xml::NodeIndex node) const;

  std::string path_;
  formats::Kind kind_;
  formats::Kind kind_of_root_ = formats::Kind::kNone;
  bool is_of_other_kind_ = false;
  bool has_unknown_parts_ = false;
  std::optional<ReadFailure> failure_;
  std::unique_ptr<const xml::RepairedText> repaired_;
  std::string original_;  // where it is repaired
  std::unique_ptr<const xml::Document> xml_;
  const Schema* schema_ = nullptr;
  std::vector<Meaning> meanings_;
  std::map<xml::NodeIndex, Suggestion> suggestions_;
  std::vector<Identifier> identifiers_;
  mutable std::unordered_map<xml::NodeIndex, std::string>
      decoded_;  // texts that are not in the document
  std::string plain_text_;
  mutable Lines lines_;
};

}  // namespace sab::project
