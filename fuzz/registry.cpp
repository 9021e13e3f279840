// The text of a registry file: whatever is read is written so that it reads the same again.

#include <cstdlib>
#include <string>

#include "fuzz/choices.h"
#include "sabcom/hive_text.h"

namespace {

using sab::fuzz::Require;
using sabcom::Key;

bool IsEqual(const Key& a, const Key& b) {
  if (a.name != b.name || a.values != b.values || a.subkeys.size() != b.subkeys.size()) {
    return false;
  }
  for (auto one = a.subkeys.begin(), other = b.subkeys.begin(); one != a.subkeys.end();
       ++one, ++other) {
    if (one->first != other->first || !IsEqual(*one->second, *other->second)) return false;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // Most of the input is keys and values rather than guesses at the heading.
  const std::string text = "Windows Registry Editor Version 5.00\n" +
                           std::string(reinterpret_cast<const char*>(data), size);
  try {
    const auto read = sabcom::ParseHive("registry", text);
    const std::string written = sabcom::FormatHive(*read);
    try {
      const auto again = sabcom::ParseHive("written", written);
      Require(IsEqual(*read, *again));
      Require(sabcom::FormatHive(*again) == written);
    } catch (const sabcom::HiveError&) {
      Require(false);
    }
  } catch (const sabcom::HiveError&) {
  }
  return 0;
}
