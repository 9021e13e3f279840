#include "server/registration.h"

#include <SabXmlParser.h>

#include "base/com_error.h"
#include "common/error_edge.h"
#include "platform/module_path.h"
#include "platform/script_resource.h"
#include "platform/type_library_registration.h"
#include "server/registrar.h"

namespace sab {
namespace {

// The system's locale for as long as scripts run.
class SystemLocale {
 public:
  SystemLocale() : before_(GetThreadLocale()) { SetThreadLocale(LANG_SYSTEM_DEFAULT); }
  SystemLocale(const SystemLocale&) = delete;
  SystemLocale& operator=(const SystemLocale&) = delete;
  ~SystemLocale() { SetThreadLocale(before_); }

 private:
  LCID before_;
};

std::string TextOf(REFGUID guid) {
  OLECHAR text[40];
  StringFromGUID2(guid, text, 40);
  return ToUtf8(text);
}

RegistrarScript ModuleScript() { return {"module.rgs", LoadScript(ScriptResource::kModule)}; }

RegistrarScript ScriptOf(const ClassEntry& entry) {
  if (entry.registration == Registration::kWithProgIds) {
    return {"class_with_progid.rgs", LoadScript(ScriptResource::kClassWithProgId)};
  }
  return {"class_without_progid.rgs", LoadScript(ScriptResource::kClassWithoutProgId)};
}

Replacements ReplacementsFor(const ClassEntry& entry, const std::string& module) {
  return {{"APPID", TextOf(kServerAppId)},
          {"MODULE", module},
          {"CLSID", TextOf(*entry.clsid)},
          {"TYPELIB", TextOf(LIBID_SabXmlParserLib)},
          {"DESCRIPTION", entry.Description()},
          {"PROGID", entry.ProgId()},
          {"VIPROGID", entry.VersionIndependentProgId()}};
}

Replacements ModuleReplacements() { return {{"APPID", TextOf(kServerAppId)}}; }

ErrorOrigin Origin() { return {"SabXmlParser", &IID_IUnknown}; }

}  // namespace

HRESULT RegisterServer(std::span<const ClassEntry> classes) noexcept {
  return Guard(Origin(), [&]() -> HRESULT {
    const SystemLocale locale;
    const Text module = ModulePath();
    SystemRegistry registry;
    RunRegistrarScript(ModuleScript(), ModuleReplacements(), registry);
    for (const ClassEntry& entry : classes) {
      if (entry.registration == Registration::kNone) continue;
      RunRegistrarScript(ScriptOf(entry), ReplacementsFor(entry, ToUtf8(module)), registry);
    }
    registry.Close();
    return RegisterTypeLibraryOf(module);
  });
}

HRESULT UnregisterServer(std::span<const ClassEntry> classes) noexcept {
  HRESULT first_failure = S_OK;
  const auto attempt = [&first_failure](const auto& step) {
    const HRESULT result = Guard(Origin(), step);
    if (SUCCEEDED(first_failure) && FAILED(result)) first_failure = result;
  };
  attempt([&] {
    const SystemLocale locale;
    const Text module = ModulePath();
    SystemRegistry registry;
    for (const ClassEntry& entry : classes) {
      if (entry.registration == Registration::kNone) continue;
      attempt([&] {
        UndoRegistrarScript(ScriptOf(entry), ReplacementsFor(entry, ToUtf8(module)), registry);
      });
    }
    attempt([&] { return UnregisterTypeLibraryOf(module); });
    attempt([&] { UndoRegistrarScript(ModuleScript(), ModuleReplacements(), registry); });
    registry.Close();
  });
  return first_failure;
}

}  // namespace sab
