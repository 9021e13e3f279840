#include "lsp/json.h"

#include <algorithm>

namespace sab::lsp {

const Json& Member(const Json& value, std::initializer_list<const char*> names) {
  static const Json kNull;
  const Json* at = &value;
  for (const char* const name : names) {
    if (!at->is_object()) return kNull;
    const auto found = at->find(name);
    if (found == at->end()) return kNull;
    at = &*found;
  }
  return *at;
}

bool IsTrue(const Json& value, std::initializer_list<const char*> names) {
  const Json& found = Member(value, names);
  return found.is_boolean() && found.get<bool>();
}

bool HasText(const Json& list, const char* text) {
  return list.is_array() &&
         std::ranges::any_of(list, [text](const Json& entry) { return entry == text; });
}

std::string NeededText(const Json& value, std::initializer_list<const char*> names) {
  const Json& found = Member(value, names);
  if (!found.is_string()) {
    std::string path;
    for (const char* const name : names) path += (path.empty() ? "" : ".") + std::string(name);
    throw RequestError(kInvalidParams, path + " must be a text");
  }
  return found.get<std::string>();
}

unsigned Number(const Json& value) {
  if (value.is_number_unsigned()) {
    return static_cast<unsigned>(std::min<std::uint64_t>(value.get<std::uint64_t>(), UINT32_MAX));
  }
  if (!value.is_number_float()) return 0;
  const double number = value.get<double>();
  return number > 0 && number < 4e9 ? static_cast<unsigned>(number) : 0;
}

std::string BytesOf(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace sab::lsp
