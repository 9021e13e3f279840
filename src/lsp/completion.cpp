#include <algorithm>

#include "lsp/completion_place.h"
#include "lsp/features.h"
#include "lsp/syntax.h"
#include "xml/characters.h"

namespace sab::lsp {
namespace {

using What = CompletionPlace::What;

void AddEndTag(const View& view, const CompletionPlace& place, const Range& range, Json& items) {
  if (place.around == xml::kNoNode) return;
  const std::string name(view.file->Xml().NameOf(place.around));
  items.push_back(
      {{"label", "</" + name + ">"},
       {"kind", 10},
       {"filterText", name},
       {"textEdit", {{"range", ToJson(range)}, {"newText", name + (place.has_end ? "" : ">")}}}});
}

}  // namespace

Json Complete(Context& context, const Json& params) {
  const View view = context.workspace.ViewOf(params);
  const std::size_t mark = view.document->MarkSize();
  const LineIndex& lines = view.document->Lines();
  const PositionEncoding encoding = context.workspace.Encoding();
  const std::size_t offset = lines.OffsetOf(PositionFrom(Member(params, {"position"})), encoding);
  const std::size_t cursor = offset - std::min(offset, mark);
  Json items = Json::array();
  if (!view.file->HasElements()) return {{"isIncomplete", false}, {"items", items}};
  CompletionPlace place = PlaceAt(view, cursor);
  const Meaning meaning(view);
  const formats::Rule* const rule = meaning.RuleOf(place.around);
  const bool is_value = rule && rule->type != formats::Type::kNone;
  if (place.what == What::kContent && !is_value) {
    // The word before the cursor, if it is one.
    const std::string_view text = view.file->OriginalText();
    place.typed = {cursor, cursor};
    while (place.typed.from > 0 && xml::Has(text[place.typed.from - 1], xml::kNameByte)) {
      --place.typed.from;
    }
  }
  const Range range = lines.RangeOf(place.typed.from + mark, place.typed.to + mark, encoding);
  const std::string typed(
      view.file->OriginalText().substr(place.typed.from, cursor - place.typed.from));
  if (place.what == What::kContent && is_value) {
    AddValues(view, *rule, typed, range, items);
  } else if (place.what == What::kElement || place.what == What::kContent) {
    AddElements(context.client, view, place, range, items);
    if (place.what == What::kElement && typed.empty() && is_value) items.clear();
  } else if (place.what == What::kEndTag) {
    AddEndTag(view, place, range, items);
  }
  return {{"isIncomplete", false}, {"items", std::move(items)}};
}

}  // namespace sab::lsp
