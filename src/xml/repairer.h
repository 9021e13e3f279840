#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace sab::xml {

/// Finds what must change in a text to make it well-formed.
class Repairer {
 public:
  struct Insertion {
    std::size_t at;  ///< in the original
    std::string text;
  };

  explicit Repairer(std::string_view text) : Repairer(text, true) {
    if (loses_prefixes_) *this = Repairer(text, false);
  }

  /// The text as long as it was, with blanks for what goes.
  const std::string& Text() const { return text_; }
  /// What is to be put in, in order.
  const std::vector<Insertion>& Insertions() const { return insertions_; }

 private:
  static constexpr std::size_t kNone = std::string::npos;

  // Without prefixes, they become parts of the names.
  Repairer(std::string_view text, bool has_prefixes) : text_(text), has_prefixes_(has_prefixes) {
    Repair();
  }

  // An element that is open.
  struct Open {
    std::size_t name = 0;
    std::size_t name_size = 0;
    std::size_t content = 0;
    std::size_t indentation = kNone;  // kNone where it does not begin its line
    std::size_t outdented = kNone;    // its first child that is not indented further
    std::size_t text_end = kNone;     // of the text on the line of its tag
    bool is_unfinished = false;       // its tag has no >
    std::size_t prefixes = 0;         // that were declared before it
  };

  struct Attribute {
    std::size_t from;
    std::size_t name_size;
    std::size_t end;
  };

  void Repair();
  void RepairCharacters();
  std::size_t RepairText(std::size_t from);
  std::size_t RepairComment(std::size_t from);
  std::size_t RepairCData(std::size_t from);
  std::size_t RepairInstruction(std::size_t from);
  std::size_t RepairStartTag(std::size_t from);
  std::size_t RepairEndTag(std::size_t from);
  std::size_t RepairAttribute(std::size_t from, std::vector<Attribute>& attributes);
  void RemoveUndeclared(const std::vector<Attribute>& attributes);
  bool MayStay(const Attribute& attribute, const std::vector<Attribute>& others) const;
  std::string_view NameOf(const Attribute& attribute) const {
    return {text_.data() + attribute.from, attribute.name_size};
  }
  std::size_t CutAttribute(std::size_t from);
  bool DeclarePrefix(std::string_view name, std::string_view value);
  void RepairPrefix(std::size_t name, std::size_t size);
  void RepairReferences(std::size_t from, std::size_t to);
  std::size_t SizeOfReference(std::size_t at) const;
  void FinishUnfinishedTag(Open& open);
  void CloseUnfinishedEndTag(std::size_t from, std::string_view name);
  std::size_t OwnerOf(std::size_t name, std::size_t size) const;
  bool SeemsToClose(std::size_t end_tag, const Open& open) const;

  void CloseImplicitly(std::size_t here);
  void Pop();
  void Insert(std::size_t at, std::string text);
  void Blank(std::size_t from, std::size_t to);
  std::size_t EndOfName(std::size_t from) const;
  std::size_t SkipSpace(std::size_t at) const;
  std::size_t IndentationOf(std::size_t at) const;
  bool IsOnOneLine(std::size_t from, std::size_t to) const;
  bool Has(std::size_t at, std::string_view what) const {
    return text_.compare(at, what.size(), what) == 0;
  }
  std::string NameOf(const Open& open) const { return text_.substr(open.name, open.name_size); }

  std::string text_;
  std::vector<Insertion> insertions_;
  std::vector<Open> open_;
  std::vector<std::string> prefixes_;  // that are declared
  bool has_prefixes_;
  // An element turned out to end before others that were taken to be in it, and to know its
  // prefixes.
  bool loses_prefixes_ = false;
  bool has_root_ = false;
  std::size_t last_instruction_end_ = kNone;
};

}  // namespace sab::xml
