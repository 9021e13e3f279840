#include <algorithm>
#include <cstdio>
#include <set>

#include "formats/manual.h"
#include "lsp/completion_place.h"
#include "lsp/syntax.h"

namespace sab::lsp {
namespace {

using formats::Count;
using formats::Rule;
using formats::Type;
using xml::kNoNode;
using xml::NodeIndex;

// Writes the element that a completion puts in, from after its <.
class Skeleton {
 public:
  Skeleton(bool has_snippets, std::string line_start, std::string_view step)
      : has_snippets_(has_snippets), line_start_(std::move(line_start)), step_(step) {}

  std::string Of(std::string_view name, std::span<const Rule> content, bool is_value) {
    std::string text = std::string(name);
    if (content.empty() && !is_value) return text + "/>";
    text += ">";
    if (is_value) return text + Stop() + "</" + std::string(name) + ">" + End();
    const std::string inner = line_start_ + step_;
    bool has_child = false;
    for (const Rule& rule : content) {
      const bool is_needed = rule.IsRequired() || rule.IsForItem() || rule.is_expected ||
                             rule.role == formats::Role::kDefines;
      if (!is_needed || rule.name == formats::kAnyName) continue;
      has_child = true;
      text += inner + "<" + std::string(rule.name);
      if (rule.type == Type::kNone && rule.content_size == 0) {
        text += "/>";
      } else {
        text += ">" + Stop() + "</" + std::string(rule.name) + ">";
      }
    }
    if (!has_child) text += inner + Stop();
    return text + line_start_ + "</" + std::string(name) + ">" + End();
  }

 private:
  std::string Stop() { return has_snippets_ ? "$" + std::to_string(++stops_) : ""; }
  std::string End() const { return has_snippets_ ? "$0" : ""; }

  const bool has_snippets_;
  const std::string line_start_;
  const std::string step_;
  int stops_ = 0;
};

bool MayRepeat(const Rule& rule) {
  return rule.count == Count::kEach || rule.count == Count::kMerged || rule.holds_for_following;
}

// Needed and missing ones first, then in the order of the format; what is there already is last.
std::string SortTextOf(const Rule& rule, std::size_t index, bool is_there) {
  const bool is_needed = rule.IsRequired() || rule.IsForItem() || rule.is_expected;
  const char group = is_there && !MayRepeat(rule) ? '9' : is_needed && !is_there ? '0' : '1';
  char text[16];
  std::snprintf(text, sizeof text, "%c%03u", group, static_cast<unsigned>(index));
  return text;
}

Json ElementItem(const ClientAbilities& client, std::string_view name, const Range& range,
                 std::string text) {
  Json item = {{"label", name},
               {"kind", 10},
               {"filterText", name},
               {"textEdit", {{"range", ToJson(range)}, {"newText", std::move(text)}}}};
  if (client.has_snippets) item["insertTextFormat"] = 2;
  if (client.keeps_indentation) item["insertTextMode"] = 1;
  return item;
}

}  // namespace

void AddElements(const ClientAbilities& client, const View& view, const CompletionPlace& place,
                 const Range& range, Json& items) {
  const project::File& file = *view.file;
  const std::string_view text = file.OriginalText();
  const bool has_start = place.what == CompletionPlace::What::kElement;
  const std::string prefix = has_start ? "" : "<";
  const std::string line_start =
      std::string(LineEndOf(text)) +
      std::string(IndentationAt(text, has_start ? place.tag : place.typed.from));
  // A > that is there already ends the tag.
  Range whole = range;
  if (place.has_end) ++whole.end.character;
  const auto add = [&](std::string_view name, std::span<const Rule> content, bool is_value) {
    Skeleton skeleton(client.has_snippets, line_start, IndentationStepOf(file));
    return ElementItem(client, name, whole, prefix + skeleton.Of(name, content, is_value));
  };
  if (place.around == kNoNode) {
    for (const formats::Document* const form : formats::Documents()) {
      const bool is_wanted = file.GetKind() == formats::Kind::kNone ||
                             file.GetKind() == form->kind || file.OriginalText().empty();
      if (form->root.empty() || !is_wanted) continue;
      Json item = add(form->root, form->content, false);
      item["detail"] = form->about;
      item["documentation"] = form->help;
      items.push_back(std::move(item));
    }
    return;
  }
  const Meaning meaning(view);
  std::set<std::string_view> there;
  for (NodeIndex child = file.Xml().FirstChildElement(place.around); child != kNoNode;
       child = file.Xml().NextElement(child)) {
    // What is being written is not there yet.
    if (has_start && file.ToOriginal(file.Xml().At(child).start) == place.tag) continue;
    there.insert(file.Xml().LocalNameOf(child));
  }
  const std::span<const Rule> content = meaning.ContentOf(place.around);
  for (std::size_t i = 0; i < content.size(); ++i) {
    const Rule& rule = content[i];
    if (rule.name == formats::kAnyName) continue;
    Json item = add(rule.name, rule.Content(), rule.type != Type::kNone);
    const std::string_view type = formats::WordsFor(rule.type);
    if (!type.empty()) item["detail"] = type;
    item["documentation"] = {{"kind", "markdown"}, {"value", DescriptionOf(rule)}};
    item["sortText"] = SortTextOf(rule, i, there.contains(rule.name));
    items.push_back(std::move(item));
  }
  if (has_start) {
    const std::string name(file.Xml().NameOf(place.around));
    items.push_back({{"label", "/" + name},
                     {"kind", 10},
                     {"sortText", "8"},
                     {"filterText", "/" + name},
                     {"textEdit", {{"range", ToJson(whole)}, {"newText", "/" + name + ">"}}}});
  }
}

}  // namespace sab::lsp
