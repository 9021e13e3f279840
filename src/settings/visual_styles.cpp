#include "settings/visual_styles.h"

#include <algorithm>

#include "binding/bind.h"
#include "formats/settings_system.h"

namespace sab {
namespace {

constexpr std::string_view kStyle = kElement<formats::kVisualStyles, "VisualStyle">;
constexpr std::string_view kId = kElement<formats::kVisualStyle, "StyleID">;
constexpr std::string_view kName = kElement<formats::kVisualStyle, "StyleName">;

}  // namespace

void VisualStyles::Add(TextView id, TextView name) {
  const auto known = std::find_if(pairs_.begin(), pairs_.end(),
                                  [id](const Pair& pair) { return pair.id.View() == id; });
  if (known != pairs_.end()) {
    known->name.Assign(name);
  } else {
    pairs_.push_back({Bstr(id), Bstr(name)});
  }
}

void VisualStyles::Read(const ConfigElement& element, Text& scratch) {
  VisualStyles loaded;
  Text id;
  Text name;
  for (const ConfigElement style : element.Children()) {
    if (!style.Is(kStyle)) continue;
    id.clear();
    name.clear();
    for (const ConfigElement child : style.Children()) {
      if (child.Is(kId)) id = child.ReadText(scratch);
      if (child.Is(kName)) name = child.ReadText(scratch);
    }
    loaded.Add(id, name);
  }
  pairs_ = std::move(loaded.pairs_);
}

void VisualStyles::Write(AppendedElement element) const {
  for (const Pair& pair : pairs_) {
    if (pair.id.IsEmpty() || pair.name.IsEmpty()) continue;
    AppendedElement style = element.Append(kStyle);
    style.Append(kId, pair.id.View());
    style.Append(kName, pair.name.View());
  }
}

}  // namespace sab
