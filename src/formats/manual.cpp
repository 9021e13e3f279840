#include "formats/manual.h"

#include <algorithm>
#include <vector>

namespace sab::formats {
namespace {

constexpr char kHead[] = "| element | meaning | type | when missing |\n|---|---|---|---|\n";

std::string Code(std::string_view text) { return "`" + std::string(text) + "`"; }

std::string Digits(std::uint32_t result) {
  std::string digits;
  for (int shift = 28; shift >= 0; shift -= 4) digits += "0123456789ABCDEF"[result >> shift & 15];
  return "0x" + digits;
}

// A comma between those that differ.
void AppendOnce(std::string& list, const std::string& item) {
  if (list.find(item) != std::string::npos) return;
  list += (list.empty() ? "" : ", ") + item;
}

class Printer {
 public:
  explicit Printer(const Document& document) : document_(document) {}

  std::string Print() {
    out_ = kHead;
    const std::string root(document_.root);
    PrintRows(document_.content, root.empty() ? root : root + "/", nullptr, {});
    for (std::size_t i = 0; i < parts_.size(); ++i) {  // a part may add further ones
      const Part part = parts_[i];
      out_ += "\n" + part.names + " in " + part.owners + ":\n\n" + kHead;
      PrintRows(part.content, {}, nullptr, part.names);
    }
    return std::move(out_);
  }

 private:
  // An element whose content has a table of its own.
  struct Part {
    std::span<const Rule> content;
    std::string names;
    std::string owners;
  };

  // @param container the innermost one, or null
  // @param owner what holds the rules, if their contents have tables of their own; else empty
  void PrintRows(std::span<const Rule> rules, const std::string& path, const Rule* container,
                 const std::string& owner) {
    for (const Rule& rule : rules) {
      const std::string place = path + std::string(rule.name);
      const bool is_part = rule.count == Count::kMerged || !owner.empty();
      if (rule.content && (!is_part || (rule.count == Count::kMerged && rule.content_size == 1))) {
        PrintRows(rule.Content(), place + "/", rule.count == Count::kFirst ? &rule : container,
                  is_part ? Code(place) : "");
        continue;
      }
      if (rule.content) AddPart(rule, owner.empty() ? Code(document_.root) : owner);
      std::string type(WordsFor(rule.type));
      if (rule.IsList()) type += type.empty() ? "any number" : ", any number";
      out_ += "| " + Code(place) + " | " + std::string(rule.help) + " | " + type + " | " +
              (rule.count == Count::kMerged ? "" : WhenMissing(rule, container)) + " |\n";
    }
  }

  void AddPart(const Rule& rule, const std::string& owner) {
    const auto known = std::ranges::find(parts_, rule.content,
                                         [](const Part& part) { return part.content.data(); });
    Part& part = known != parts_.end() ? *known : parts_.emplace_back(Part{rule.Content(), {}, {}});
    AppendOnce(part.names, Code(rule.name));
    AppendOnce(part.owners, owner);
  }

  std::string ResultOf(const Rule& rule) const {
    return Digits(rule.result ? rule.result : document_.result);
  }

  // @param container of a list, or null
  std::string WhenMissing(const Rule& rule, const Rule* container) const {
    if (rule.IsRequired()) return ResultOf(rule);
    if (!rule.when_missing.empty()) {
      return Code(rule.when_missing) + (rule.also_when_empty ? ", also when empty" : "");
    }
    if (rule.IsList() && container && container->need == Need::kNotEmpty) {
      return ResultOf(*container);
    }
    if (rule.IsList() && container && container->need == Need::kEntryIfPresent) {
      return "none, but " + ResultOf(*container) + " if " + Code(container->name) + " is there";
    }
    if (rule.IsList()) return "none";
    if (rule.IsForItem()) return "the entry is skipped";
    const std::string_view value = DefaultOf(rule);
    return value.empty() ? "–" : std::string(value);
  }

  const Document& document_;
  std::string out_;
  std::vector<Part> parts_;
};

}  // namespace

std::string_view WordsFor(Type type) {
  switch (type) {
    case Type::kNone:
      return "";
    case Type::kText:
      return "text";
    case Type::kGuid:
      return "class identifier";
    case Type::kPath:
      return "path";
    case Type::kUrl:
      return "web address";
    case Type::kImage:
      return "picture";
    case Type::kKey:
      return "key";
    case Type::kOne:
      return "1 for true";
    case Type::kNotZero:
      return "0 for false";
    case Type::kOneOrTrue:
      return "1 or `true` for true";
    case Type::kTrue:
      return "`true` for true";
    case Type::kFlag:
      return "flag";
    case Type::kMinusOne:
      return "strict flag";
    case Type::kNonZero:
      return "number other than 0 for true";
    case Type::kInt16:
      return "short";
    case Type::kUInt16:
      return "unsigned short";
    case Type::kWideInt16:
      return "wide short";
    case Type::kInt32:
      return "int";
    case Type::kInt32OrMax:
      return "int or INT_MAX";
    case Type::kUInt32:
      return "unsigned";
    case Type::kColour:
      return "colour";
    case Type::kFloat:
      return "float";
    case Type::kDouble:
      return "double";
    case Type::kTextList:
      return "list of text";
    case Type::kInt32List:
      return "list of int";
    case Type::kUInt32List:
      return "list of unsigned";
  }
  return "";
}

std::string TablesOf(const Document& document) { return Printer(document).Print(); }

}  // namespace sab::formats
