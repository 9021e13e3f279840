#include "settings/retained_styles.h"

#include "binding/bind.h"
#include "formats/settings_system.h"

#include <algorithm>

namespace sab {
namespace {

// By type.
constexpr const auto& kElements = formats::kRetainedStyles;
static_assert(kElements.size() == RetainedStyles::kTypes);

constexpr std::string_view kNameElement = kElement<formats::kRetainedStyleNames, "Value">;

}  // namespace

void RetainedStyles::List::Assign(std::vector<Bstr> new_names) {
  std::vector<BSTR> new_places;
  new_places.reserve(new_names.size());
  for (const Bstr& name : new_names) new_places.push_back(name.Get());
  names = std::move(new_names);
  places = std::move(new_places);
  info = {static_cast<ULONG>(places.size()), places.data()};
}

bool RetainedStyles::IsOneOfThese(const VeRetainStyleInfo* info) const {
  return std::any_of(lists_.begin(), lists_.end(),
                     [info](const List& list) { return &list.info == info; });
}

void RetainedStyles::Replace(INT type, const VeRetainStyleInfo& info) {
  std::vector<Bstr> names;
  for (ULONG i = 0; i < info.count; ++i) names.emplace_back(Bstr::ViewOf(info.names[i]));
  lists_[static_cast<std::size_t>(type - 1)].Assign(std::move(names));
}

void RetainedStyles::Read(const ConfigElement& element, Text& scratch) {
  std::array<bool, kTypes> is_read{};
  for (const ConfigElement child : element.Children()) {
    for (std::size_t i = 0; i < kElements.size(); ++i) {
      if (is_read[i] || !child.Is(kElements[i].name)) continue;
      std::vector<Bstr> names;
      for (const ConfigElement value : child.Children()) {
        if (value.Is(kNameElement)) names.emplace_back(value.ReadText(scratch));
      }
      lists_[i].Assign(std::move(names));
      is_read[i] = true;
    }
  }
}

void RetainedStyles::Write(AppendedElement element) const {
  for (std::size_t i = 0; i < kElements.size(); ++i) {
    AppendedElement list = element.Append(kElements[i].name);
    for (const Bstr& name : lists_[i].names) list.Append(kNameElement, name.View());
  }
}

}  // namespace sab
