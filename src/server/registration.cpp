#include "server/registration.h"

#include <SabXmlParser.h>

#include "base/com_error.h"
#include "common/error_edge.h"
#include "platform/module_path.h"
#include "platform/script_resource.h"
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

// The system's registry, or the part of it where the scope's classes are.
class ScopedRegistry {
 public:
  explicit ScopedRegistry(RegistrationScope scope)
      : target_(scope == RegistrationScope::kUser ? static_cast<RegistryTarget*>(&user_)
                                                  : &system_) {}

  RegistryTarget& Target() { return *target_; }
  void Close() { system_.Close(); }

 private:
  SystemRegistry system_;
  UserClasses user_{system_};
  RegistryTarget* target_;
};

ErrorOrigin Origin() { return {"SabXmlParser", &IID_IUnknown}; }

}  // namespace

HRESULT RegisterServer(std::span<const ClassEntry> classes, RegistrationScope scope) noexcept {
  return Guard(Origin(), [&]() -> HRESULT {
    const SystemLocale locale;
    const Text module = ModulePath();
    ScopedRegistry registry(scope);
    RunRegistrarScript(ModuleScript(), ModuleReplacements(), registry.Target());
    for (const ClassEntry& entry : classes) {
      if (entry.registration == Registration::kNone) continue;
      RunRegistrarScript(ScriptOf(entry), ReplacementsFor(entry, ToUtf8(module)),
                         registry.Target());
    }
    registry.Close();
    return RegisterTypeLibraryOf(module, scope);
  });
}

HRESULT UnregisterServer(std::span<const ClassEntry> classes, RegistrationScope scope) noexcept {
  HRESULT first_failure = S_OK;
  const auto attempt = [&first_failure](const auto& step) {
    const HRESULT result = Guard(Origin(), step);
    if (SUCCEEDED(first_failure) && FAILED(result)) first_failure = result;
  };
  attempt([&] {
    const SystemLocale locale;
    const Text module = ModulePath();
    ScopedRegistry registry(scope);
    for (const ClassEntry& entry : classes) {
      if (entry.registration == Registration::kNone) continue;
      attempt([&] {
        UndoRegistrarScript(ScriptOf(entry), ReplacementsFor(entry, ToUtf8(module)),
                            registry.Target());
      });
    }
    attempt([&] { return UnregisterTypeLibraryOf(module, scope); });
    attempt([&] { UndoRegistrarScript(ModuleScript(), ModuleReplacements(), registry.Target()); });
    registry.Close();
  });
  return first_failure;
}

}  // namespace sab
