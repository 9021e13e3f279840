#include "server/registration.h"

#include <SabXmlParser.h>

#include "base/com_error.h"
#include "base/com_ptr.h"
#include "object/error_edge.h"
#include "platform/module_path.h"
#include "platform/registry_change.h"
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

 private:
  SystemRegistry system_;
  UserClasses user_{system_};
  RegistryTarget* target_;
};

// Whether a class is registered for another library than this module, such as another copy of it.
bool IsOfAnother(const ClassEntry& entry, const Text& module, RegistryTarget& registry) {
  const Text library = registry.DefaultText(
      {HKEY_CLASSES_ROOT, "CLSID\\" + TextOf(*entry.clsid) + "\\InprocServer32"});
  return !library.empty() && !IsSamePath(library, module);
}

ErrorOrigin Origin() { return {"SabXmlParser", &IID_IUnknown}; }

}  // namespace

HRESULT RegisterServer(std::span<const ClassEntry> classes, RegistrationScope scope) noexcept {
  return Guard(Origin(), [&]() -> HRESULT {
    const SystemLocale locale;
    const Text module = ModulePath();
    RegistryChange change;
    ScopedRegistry registry(scope);
    RunRegistrarScript(ModuleScript(), ModuleReplacements(), registry.Target());
    for (const ClassEntry& entry : classes) {
      if (entry.registration == Registration::kNone) continue;
      RunRegistrarScript(ScriptOf(entry), ReplacementsFor(entry, ToUtf8(module)),
                         registry.Target());
    }
    change.Keep();
    return RegisterTypeLibraryOf(module, scope);
  });
}

HRESULT UnregisterServer(std::span<const ClassEntry> classes, RegistrationScope scope) noexcept {
  HRESULT first_failure = S_OK;
  ComPtr<IErrorInfo> reason;  // each step clears the error object
  const auto attempt = [&](const auto& step) {
    const HRESULT result = Guard(Origin(), step);
    if (FAILED(first_failure) || SUCCEEDED(result)) return;
    first_failure = result;
    GetErrorInfo(0, reason.Put());
  };
  attempt([&] {
    const SystemLocale locale;
    const Text module = ModulePath();
    RegistryChange change;
    ScopedRegistry registry(scope);
    bool is_shared = false;
    for (const ClassEntry& entry : classes) {
      if (entry.registration == Registration::kNone) continue;
      attempt([&] {
        if (IsOfAnother(entry, module, registry.Target())) {
          is_shared = true;
          return;
        }
        UndoRegistrarScript(ScriptOf(entry), ReplacementsFor(entry, ToUtf8(module)),
                            registry.Target());
      });
    }
    attempt([&] { return UnregisterTypeLibraryOf(module, scope); });
    attempt([&] {
      // The other copy's classes belong to the same application.
      if (is_shared) return;
      UndoRegistrarScript(ModuleScript(), ModuleReplacements(), registry.Target());
    });
    if (SUCCEEDED(first_failure)) change.Keep();
  });
  if (FAILED(first_failure)) SetErrorInfo(0, reason.Get());
  return first_failure;
}

}  // namespace sab
