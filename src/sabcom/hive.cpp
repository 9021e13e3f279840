#include "sabcom/hive.h"

#include <utility>

#include "sabcom/utf.h"

namespace sabcom {

std::u16string_view NextName(std::u16string_view& path) {
  while (!path.empty() && path.front() == u'\\') path.remove_prefix(1);
  const std::size_t end = path.find(u'\\');
  const std::u16string_view name = path.substr(0, end);
  path.remove_prefix(end == std::u16string_view::npos ? path.size() : end + 1);
  return name;
}

std::size_t CountNames(std::u16string_view path) {
  std::size_t count = 0;
  while (!NextName(path).empty()) ++count;
  return count;
}

bool IsWritableName(std::u16string_view name) {
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (name[i] < u' ') return false;
    if (name[i] < 0xD800 || name[i] > 0xDFFF) continue;
    const bool is_pair =
        name[i] < 0xDC00 && i + 1 < name.size() && name[i + 1] >= 0xDC00 && name[i + 1] <= 0xDFFF;
    if (!is_pair) return false;
    ++i;
  }
  return true;
}

Key* Key::Find(std::u16string_view path) {
  Key* key = this;
  while (key) {
    const std::u16string_view next = NextName(path);
    if (next.empty()) return key;
    const auto found = key->subkeys.find(Folded(next));
    key = found == key->subkeys.end() ? nullptr : found->second.get();
  }
  return nullptr;
}

Key& Key::FindOrCreate(std::u16string_view path, bool& created) {
  created = false;
  const std::u16string_view first = NextName(path);
  if (first.empty()) return *this;
  std::u16string folded = Folded(first);
  const auto found = subkeys.find(folded);
  if (found != subkeys.end()) return found->second->FindOrCreate(path, created);
  // The whole branch first, which then is put in its place at once.
  auto branch = std::make_unique<Key>();
  branch->name = first;
  Key& last = branch->FindOrCreate(path, created);
  subkeys.emplace(std::move(folded), std::move(branch));
  created = true;
  return last;
}

bool Key::SetValue(Value value) {
  const auto [place, is_new] = values.try_emplace(Folded(value.name));
  if (!is_new && place->second == value) return false;
  place->second = std::move(value);
  return true;
}

bool Key::Remove(std::u16string_view path) {
  Key* parent = this;
  std::u16string_view last = NextName(path);
  for (std::u16string_view next = NextName(path); !next.empty(); next = NextName(path)) {
    parent = parent->Find(last);
    if (!parent) return false;
    last = next;
  }
  return parent->subkeys.erase(Folded(last)) > 0;
}

}  // namespace sabcom
