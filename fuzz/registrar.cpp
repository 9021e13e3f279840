// The registrar language: a script runs and can be undone, which leaves what others wrote and what
// NoRemove keeps, or it is refused with its place.

#include <cstdlib>
#include <map>
#include <set>
#include <string>

#include "base/com_error.h"
#include "fuzz/choices.h"
#include "server/registrar.h"

namespace {

using sab::RegistryPath;
using sab::fuzz::Require;

class Registry final : public sab::RegistryTarget {
 public:
  void CreateKey(const RegistryPath& path) override { keys[path.key]; }
  void SetValue(const RegistryPath& path, const std::string& name, DWORD type,
                const std::vector<BYTE>& data) override {
    if (path.key.empty()) return;  // of a root key, which always exists
    Require(type != REG_SZ || (data.size() >= 2 && data.size() % 2 == 0));
    Require(type != REG_DWORD || data.size() == 4);
    keys[path.key].insert(name);
  }
  void DeleteValue(const RegistryPath& path, const std::string& name, DWORD,
                   const std::vector<BYTE>&) override {
    if (const auto key = keys.find(path.key); key != keys.end()) key->second.erase(name);
  }
  void DeleteTree(const RegistryPath& path) override {
    std::erase_if(keys, [&](const auto& key) {
      return key.first == path.key || key.first.starts_with(path.key + "\\");
    });
  }
  void DeleteKeyIfEmpty(const RegistryPath& path) override {
    const auto next = keys.upper_bound(path.key + "\\");
    const bool has_subkeys = next != keys.end() && next->first.starts_with(path.key + "\\");
    const auto key = keys.find(path.key);
    if (key != keys.end() && key->second.empty() && !has_subkeys) keys.erase(key);
  }
  sab::Text DefaultText(const RegistryPath&) override { return {}; }

  using Keys = std::map<std::string, std::set<std::string>>;
  Keys keys = {{"SabXml", {}}, {"SabXml\\Others", {"theirs"}}};  // as it is before
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const sab::RegistrarScript script{"script.rgs", text};
  const sab::Replacements replacements = {{"MODULE", "/opt/it's.so"}};
  Registry registry;
  const Registry::Keys before = registry.keys;
  try {
    RunRegistrarScript(script, replacements, registry);
  } catch (const sab::ComError& error) {
    Require(std::string(error.what()).starts_with("script.rgs:"));
    return 0;
  }
  // What runs can be undone.
  UndoRegistrarScript(script, replacements, registry);
  // What others wrote stays, and nothing else, unless NoRemove, ForceRemove or Delete says
  // otherwise.
  Require(registry.keys == before || text.find_first_of("oOtT") != std::string::npos);
  return 0;
}
