#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "lsp/features.h"
#include "lsp/meaning.h"
#include "lsp/syntax.h"

namespace sab::lsp {
namespace {

using xml::NodeIndex;

// A colour is 0x00BBGGRR, written as a signed number. What the highest byte is for is the host's.
constexpr std::uint32_t kHighest = 0xFF000000;

bool IsWholeNumber(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  return !text.empty() && text.size() <= 10 && text.find_first_not_of("0123456789") == text.npos;
}

std::uint32_t ValueOf(std::string_view text) {
  return static_cast<std::uint32_t>(std::strtoll(std::string(text).c_str(), nullptr, 10));
}

std::uint32_t ByteOf(const Json& part) {
  const double value = part.is_number() ? part.get<double>() : 0;
  return static_cast<std::uint32_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255));
}

}  // namespace

Json Colours(Context& context, const Json& params) {
  const View view = context.workspace.ViewOf(params);
  Json colours = Json::array();
  if (!view.file->HasElements()) return colours;
  const Meaning meaning(view);
  const xml::Document& xml = view.file->Xml();
  for (NodeIndex node = xml.Root(); node < xml.NodeCount(); ++node) {
    const formats::Rule* const rule = xml.IsElement(node) ? meaning.RuleOf(node) : nullptr;
    if (!rule || rule->type != formats::Type::kColour) continue;
    const std::string_view text = view.file->TextOf(node);
    if (!IsWholeNumber(text)) continue;
    const std::uint32_t value = ValueOf(text);
    const auto part = [value](int shift) { return ((value >> shift) & 0xFF) / 255.0; };
    colours.push_back(
        {{"range", ToJson(context.workspace.RangeIn(view, view.file->ValueSpan(node)))},
         {"color", {{"red", part(0)}, {"green", part(8)}, {"blue", part(16)}, {"alpha", 1.0}}}});
  }
  return colours;
}

Json ColourPresentations(Context& context, const Json& params) {
  const View view = context.workspace.ViewOf(params);
  const LineIndex& lines = view.document->Lines();
  const Range range = RangeFrom(Member(params, {"range"}));
  const std::size_t from = lines.OffsetOf(range.start, context.workspace.Encoding());
  const std::size_t to = std::max(from, lines.OffsetOf(range.end, context.workspace.Encoding()));
  const std::string_view text = lines.Text().substr(from, to - from);
  const std::uint32_t before = IsWholeNumber(text) ? ValueOf(text) : 0;
  const Json& colour = Member(params, {"color"});
  const std::uint32_t value = (before & kHighest) | ByteOf(Member(colour, {"red"})) |
                              ByteOf(Member(colour, {"green"})) << 8 |
                              ByteOf(Member(colour, {"blue"})) << 16;
  const std::string label = std::to_string(static_cast<std::int32_t>(value));
  return Json::array(
      {{{"label", label}, {"textEdit", {{"range", ToJson(range)}, {"newText", label}}}}});
}

}  // namespace sab::lsp
