#include "project/file.h"

#include <algorithm>
#include <system_error>

#include "project/path_finder.h"
#include "text/ascii.h"
#include "text/distance.h"
#include "text/utf.h"
#include "xml/error.h"
#include "xml/plain_text.h"

namespace sab::project {
namespace {

using formats::Kind;
using formats::Role;
using xml::NodeIndex;

// Whether bytes can be no XML: they begin with something other than white space and '<'.
bool BeginsAsPlainText(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) bytes.remove_prefix(2);
  for (const char c : bytes) {
    if (c == '\0' || xml::Has(c, xml::kSpace)) continue;
    return c != '<';
  }
  return false;
}

bool IsNamed(std::string_view path, std::string_view ending) {
  return path.size() > ending.size() &&
         EqualsIgnoringAsciiCase(path.substr(path.size() - ending.size()), ending);
}

// Where the first bytes are that are no UTF-8; the size where all are.
std::size_t EndOfUtf8(std::string_view bytes) {
  std::size_t at = 0;
  while (at < bytes.size()) {
    const std::size_t size = text::Utf8CharacterSize(bytes.substr(at));
    if (size == 0) break;
    at += size;
  }
  return at;
}

bool IsBefore(xml::Place a, xml::Place b) {
  return a.line != b.line ? a.line < b.line : a.column < b.column;
}

// What is wrong with bytes that are no document.
ReadFailure FailureOf(std::string_view bytes, const xml::Error& error) {
  ReadFailure failure{
      ReadFailure::Reason::kNotWellFormed, {error.Line(), error.Column()}, error.what()};
  try {
    const xml::Encoding encoding(bytes);
    if (!encoding.IsUtf8()) {
      static_cast<void>(encoding.Decode(bytes));
      return failure;
    }
    const std::string text(bytes.substr(encoding.BomLength()));
    const std::size_t end = EndOfUtf8(text);
    if (end == text.size()) return failure;
    const xml::Place place = xml::PlaceOf(text.c_str(), end);
    if (IsBefore(failure.place, place)) return failure;
    return {ReadFailure::Reason::kEncoding, place,
            "the bytes are not UTF-8: save the file as UTF-8, or declare its encoding"};
  } catch (const xml::Error& encoding_error) {
    return {ReadFailure::Reason::kEncoding,
            {encoding_error.Line(), encoding_error.Column()},
            encoding_error.what()};
  }
}

}  // namespace

File::File(std::string path, Kind kind, const Source& source, Reading reading)
    : path_(std::move(path)), kind_(kind) {
  std::string reason;
  std::optional<std::string> bytes = source.Read(path_, reason);
  if (!bytes) {
    failure_ = {ReadFailure::Reason::kUnreadable, {0, 0}, std::move(reason)};
    return;
  }
  const bool is_plain =
      kind == Kind::kTextTemplate || (kind == Kind::kNone && !IsNamed(path_, ".xml") &&
                                      (IsNamed(path_, ".txt") || BeginsAsPlainText(*bytes)));
  try {
    if (!is_plain) {
      ReadXml(std::move(*bytes), source, reading);
      return;
    }
    kind_ = kind_of_root_ = Kind::kTextTemplate;
    plain_text_ = xml::DecodePlainText(*bytes);
  } catch (const xml::Error& error) {
    failure_ = {ReadFailure::Reason::kEncoding, {1, 1}, error.what()};
  } catch (const std::system_error& error) {
    failure_ = {ReadFailure::Reason::kUnreadable, {0, 0}, error.what()};
  }
}

void File::ReadXml(std::string bytes, const Source& source, Reading reading) {
  try {
    xml_ = std::make_unique<const xml::Document>(std::move(bytes));
  } catch (const xml::Error& error) {
    // The reader has taken the bytes, which a large file should not have twice.
    std::string reason;
    const std::string broken = source.Read(path_, reason).value_or(std::string());
    failure_ = FailureOf(broken, error);
    if (reading == Reading::kStrict) return;
    ReadBroken(broken);
  }
  RecogniseKind();
  if (HasSchema()) Classify();
}

void File::ReadBroken(const std::string& bytes) {
  std::string& text = original_ = bytes;
  try {
    const xml::Encoding encoding(bytes);
    text = encoding.IsUtf8() ? bytes.substr(encoding.BomLength()) : encoding.Decode(bytes);
  } catch (const xml::Error&) {  // the bytes are looked at as UTF-8
    if (text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
  }
  repaired_ = std::make_unique<const xml::RepairedText>(text);
  xml_ = std::make_unique<const xml::Document>(repaired_->Text());
}

// A document of a kind that is asked for keeps that kind, unless both its document element and what
// is in it are those of another.
void File::RecogniseKind() {
  if (kind_ == Kind::kSettings) return;
  const std::string_view root = xml_->LocalNameOf(xml_->Root());
  const formats::Document* const form = formats::DocumentOfRoot(root);
  if (form) kind_of_root_ = form->kind;
  if (kind_ == Kind::kNone) {
    std::vector<std::string_view> roots;
    for (const formats::Document* const known : formats::Documents()) {
      if (!known->root.empty()) roots.push_back(known->root);
    }
    const std::string_view nearest = form ? root : text::FindNearest(root, roots).word;
    if (nearest.empty()) return;
    kind_ = formats::DocumentOfRoot(nearest)->kind;
  } else if (form && kind_of_root_ != kind_) {
    is_of_other_kind_ = FitsKindOfRoot();
  }
  schema_ = &Schema::Of(kind_);
}

bool File::FitsKindOfRoot() const {
  const auto known_in = [this](Kind kind) {
    const Schema& schema = Schema::Of(kind);
    std::size_t known = 0;
    for (NodeIndex child = xml_->FirstChildElement(xml_->Root()); child != xml::kNoNode;
         child = xml_->NextElement(child)) {
      known += schema.Find(schema.RootContent(), xml_->LocalNameOf(child)) != kNoRule ? 1 : 0;
    }
    return known;
  };
  return known_in(kind_of_root_) >= known_in(kind_);
}

// Elements mostly follow each other in one order, so the rule after the last one of a content, or
// that one again, is tried first.
void File::Classify() {
  const NodeIndex count = xml_->NodeCount();
  meanings_.resize(count);
  identifiers_.reserve(count / 4);
  const NodeIndex root = xml_->Root();
  meanings_[root] = {kNoRule, schema_->RootContent(), Placement::kKnown};
  const bool is_root_foreign = xml_->IsInNamespace(root);
  if (is_root_foreign) meanings_[root].placement = Placement::kForeign;
  std::vector<RuleId> next(schema_->ContentCount(), kNoRule);
  std::vector<bool> is_identifier(schema_->RuleCount());
  for (RuleId rule = 1; rule < schema_->RuleCount(); ++rule) {
    is_identifier[rule] = schema_->At(rule).role != Role::kNone;
  }
  for (NodeIndex node = root + 1; node < count; ++node) {
    const xml::Node& at = xml_->At(node);
    if (at.type != xml::NodeType::kElement || at.parent == xml::kNoNode) continue;
    const Meaning parent = meanings_[at.parent];
    const std::string_view name = xml_->LocalNameOf(node);
    RuleId found = next[parent.content];
    if (found == kNoRule || schema_->At(found).name != name) {
      found = schema_->Find(parent.content, name);
    }
    if (found != kNoRule && (at.flags & xml::kInNamespace) == 0) {
      meanings_[node] = {found, schema_->ContentOf(found), Placement::kKnown};
      const RuleId after = static_cast<RuleId>(found + (schema_->At(found).IsList() ? 0 : 1));
      const RuleId end = static_cast<RuleId>(schema_->FirstRule(parent.content) +
                                             schema_->CountOf(parent.content));
      next[parent.content] = after < end ? after : kNoRule;
    } else {
      ClassifyStrange(node, parent, found);
    }
    if (const RuleId rule = meanings_[node].rule; is_identifier[rule]) {
      identifiers_.push_back({TextOf(node), node, rule});
    }
  }
}

void File::ClassifyStrange(NodeIndex node, const Meaning& parent, RuleId found) {
  Meaning& meaning = meanings_[node];
  const bool is_parent_value =
      parent.rule != kNoRule && schema_->At(parent.rule).type != formats::Type::kNone;
  if (found != kNoRule) {
    meaning = {found, schema_->ContentOf(found), Placement::kForeign};
  } else if (xml_->IsInNamespace(node) && parent.placement != Placement::kForeign) {
    meaning.placement = Placement::kExtension;
  } else if (is_parent_value) {
    meaning.placement = Placement::kInValue;
  } else if (parent.placement >= Placement::kUnknown) {
    meaning.placement = Placement::kInside;
  } else {
    Recover(node, parent.content);
  }
}

// How many of its elements a content knows.
std::size_t File::CountOfFitting(NodeIndex node, ContentId content) const {
  std::size_t count = 0;
  for (NodeIndex child = xml_->FirstChildElement(node); child != xml::kNoNode;
       child = xml_->NextElement(child)) {
    count += schema_->Find(content, xml_->LocalNameOf(child)) != kNoRule ? 1 : 0;
  }
  return count;
}

bool File::HasElementsInside(NodeIndex node) const {
  return xml_->FirstChildElement(node) != xml::kNoNode;
}

// What an element means that has no rule where it is.
void File::Recover(NodeIndex node, ContentId content) {
  Meaning& meaning = meanings_[node];
  const std::string_view name = xml_->LocalNameOf(node);
  std::vector<std::string_view> names = schema_->NamesIn(content);
  // The name of a property is what people take for the name of its element.
  RuleId of_property = kNoRule;
  for (unsigned i = 0; i < schema_->CountOf(content); ++i) {
    const auto rule = static_cast<RuleId>(schema_->FirstRule(content) + i);
    if (schema_->At(rule).member == name) of_property = rule;
  }
  const text::Nearest nearest = text::FindNearest(name, names);
  const bool differs_in_case_only = EqualsIgnoringAsciiCase(nearest.word, name);
  const RuleId elsewhere = schema_->FindAnywhere(name);
  const RuleId nearest_rule = nearest.word.empty() ? kNoRule : schema_->Find(content, nearest.word);
  const bool fits_nearest = nearest_rule != kNoRule && elsewhere != kNoRule &&
                            CountOfFitting(node, schema_->ContentOf(nearest_rule)) >
                                CountOfFitting(node, schema_->ContentOf(elsewhere));
  if (elsewhere != kNoRule && !differs_in_case_only && !fits_nearest) {
    meaning = {elsewhere, schema_->ContentOf(elsewhere), Placement::kMisplaced};
    if (of_property != kNoRule) suggestions_[node] = {schema_->At(of_property).name, false};
    return;
  }
  RuleId meant = of_property;
  if (meant == kNoRule && !nearest.word.empty()) meant = schema_->Find(content, nearest.word);
  if (meant != kNoRule && schema_->At(meant).type != formats::Type::kNone &&
      HasElementsInside(node)) {
    meant = kNoRule;
  }
  if (meant != kNoRule) {
    meaning = {meant, schema_->ContentOf(meant), Placement::kMisspelt};
    suggestions_[node] = {schema_->At(meant).name,
                          nearest.is_only && nearest.word == schema_->At(meant).name};
    return;
  }
  meaning.placement = Placement::kUnknown;
  has_unknown_parts_ |= HasElementsInside(node);
  const text::Nearest anywhere = text::FindNearest(name, schema_->AllNames());
  if (!anywhere.word.empty()) suggestions_[node] = {anywhere.word, false};
}

File::Suggestion File::SuggestionFor(NodeIndex element) const {
  const auto found = suggestions_.find(element);
  return found == suggestions_.end() ? Suggestion() : found->second;
}

std::string_view File::TextOf(NodeIndex element) const {
  if (xml_->HasOnlyText(element)) return xml_->OnlyTextOf(element);
  if (xml_->FirstChild(element) == xml::kNoNode) return {};
  const auto [place, is_new] = decoded_.try_emplace(element);
  if (is_new) xml_->AppendText(element, place->second);
  return place->second;
}

std::string_view File::TextOf(NodeIndex element, std::string_view child) const {
  const NodeIndex found = ChildNamed(element, child);
  return found == xml::kNoNode ? std::string_view() : TextOf(found);
}

NodeIndex File::ChildNamed(NodeIndex element, std::string_view name) const {
  const RuleId rule = schema_->Find(ContentOf(element), name);
  if (rule == kNoRule) return xml::kNoNode;
  const bool is_first_wanted = schema_->At(rule).count == formats::Count::kFirst;
  NodeIndex found = xml::kNoNode;
  for (NodeIndex child = xml_->FirstChildElement(element); child != xml::kNoNode;
       child = xml_->NextElement(child)) {
    if (RuleIdOf(child) != rule) continue;
    found = child;
    if (is_first_wanted) break;
  }
  return found;
}

bool File::HasText(NodeIndex element) const {
  if (xml_->HasOnlyText(element)) return true;
  // White space alone may be a text of its own, after all.
  const NodeIndex only = xml_->FirstChild(element);
  if (only == xml::kNoNode) return false;
  const xml::Node& node = xml_->At(only);
  if (node.type == xml::NodeType::kText && node.next == xml::kNoNode) {
    const std::string_view text = xml_->TextBytes().substr(node.start, node.end - node.start);
    if (std::ranges::any_of(text, [](char c) { return !xml::Has(c, xml::kSpace); })) return true;
  }
  return !TextOf(element).empty();
}

Span File::TagSpan(NodeIndex element) const {
  const xml::Node& node = xml_->At(element);
  return {node.start, node.start + std::size_t{node.name_length} + 1};
}

Span File::ValueSpan(NodeIndex element) const {
  const xml::Node& node = xml_->At(element);
  if ((node.flags & xml::kIsEmptyTag) != 0) return TagSpan(element);
  const std::string_view text = xml_->TextBytes();
  std::size_t from = xml_->ContentStart(element);
  std::size_t to = node.end;
  while (to > from && xml::Has(text[to - 1], xml::kSpace)) --to;
  while (from < to && xml::Has(text[from], xml::kSpace)) ++from;
  return from == to ? TagSpan(element) : Span{from, to};
}

xml::Place File::PlaceOf(std::size_t offset) const {
  if (lines_.IsEmpty()) lines_ = Lines(Text());
  return lines_.PlaceOf(offset);
}

}  // namespace sab::project
