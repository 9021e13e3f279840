#include "platform/resource_strings.h"

namespace sab {

ResourceStrings::ResourceStrings(TextView) {}

Text ResourceStrings::At(unsigned) const { return {}; }

Text OwnString(unsigned id) {
  static constexpr struct {
    unsigned id;
    TextView text;
  } kTable[] = {
#define SAB_STRING(id, text) {id, OLESTR(text)},
#include "platform/string_table.def"
#undef SAB_STRING
  };
  for (const auto& entry : kTable) {
    if (entry.id == id) return Text(entry.text);
  }
  return {};
}

}  // namespace sab
