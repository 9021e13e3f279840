#include "platform/type_library_registration.h"

#include <cstdio>
#include <string>
#include <vector>

#include "base/bstr.h"
#include "base/com_ptr.h"

// The system has these since Windows Vista; not every SDK declares them.
extern "C" {
HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* help_folder);
HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID guid, WORD major, WORD minor, LCID locale,
                                        SYSKIND kind);
}

namespace sab {
namespace {

// The type library inside a module.
class TypeLibrary {
 public:
  HRESULT Load(const Text& module) {
    HRESULT result = LoadTypeLibEx(module.c_str(), REGKIND_NONE, library_.Put());
    if (FAILED(result)) return result;
    TLIBATTR* attributes = nullptr;
    result = library_->GetLibAttr(&attributes);
    if (FAILED(result)) return result;
    attributes_ = *attributes;
    library_->ReleaseTLibAttr(attributes);
    return S_OK;
  }

  ITypeLib* Get() const { return library_.Get(); }
  const TLIBATTR& Attributes() const { return attributes_; }

 private:
  ComPtr<ITypeLib> library_;
  TLIBATTR attributes_{};
};

struct Scope {
  HKEY root;
  const wchar_t* type_libraries;
  HRESULT(WINAPI* add)(ITypeLib*, OLECHAR*, OLECHAR*);
  HRESULT(WINAPI* remove)(REFGUID, WORD, WORD, LCID, SYSKIND);
};

Scope Of(RegistrationScope scope) {
  if (scope == RegistrationScope::kUser) {
    return {HKEY_CURRENT_USER, L"Software\\Classes\\TypeLib\\", RegisterTypeLibForUser,
            UnRegisterTypeLibForUser};
  }
  return {HKEY_CLASSES_ROOT, L"TypeLib\\", RegisterTypeLib, UnRegisterTypeLib};
}

// The versions that are registered: of "1.0" the two numbers, which are hexadecimal.
struct Version {
  WORD major;
  WORD minor;
};

std::vector<Version> RegisteredVersions(const Scope& scope, REFGUID guid) {
  wchar_t text[40];
  StringFromGUID2(guid, text, 40);
  std::vector<Version> versions;
  HKEY key = nullptr;
  const std::wstring path = std::wstring(scope.type_libraries) + text;
  if (RegOpenKeyExW(scope.root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return versions;
  for (DWORD index = 0;; ++index) {
    wchar_t name[64];
    DWORD length = 64;
    if (RegEnumKeyExW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS) {
      break;
    }
    unsigned major = 0;
    unsigned minor = 0;
    if (std::swscanf(name, L"%x.%x", &major, &minor) == 2) {
      versions.push_back({static_cast<WORD>(major), static_cast<WORD>(minor)});
    }
  }
  RegCloseKey(key);
  return versions;
}

}  // namespace

HRESULT RegisterTypeLibraryOf(const Text& module, RegistrationScope scope) noexcept try {
  TypeLibrary library;
  const HRESULT result = library.Load(module);
  if (FAILED(result)) return result;
  const TLIBATTR& own = library.Attributes();
  const Scope place = Of(scope);
  for (const Version& version : RegisteredVersions(place, own.guid)) {
    if (version.major == own.wMajorVerNum && version.minor == own.wMinorVerNum) continue;
    // What cannot be removed does no harm to the version that is registered now.
    place.remove(own.guid, version.major, version.minor, own.lcid, own.syskind);
  }
  return place.add(library.Get(), Text(module).data(), nullptr);
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

HRESULT UnregisterTypeLibraryOf(const Text& module, RegistrationScope scope) noexcept try {
  TypeLibrary library;
  const HRESULT result = library.Load(module);
  if (FAILED(result)) return result;
  const TLIBATTR& own = library.Attributes();
  const Scope place = Of(scope);
  // Systems differ in the code for a type library that is not registered, so that is asked first.
  for (const Version& version : RegisteredVersions(place, own.guid)) {
    if (version.major != own.wMajorVerNum || version.minor != own.wMinorVerNum) continue;
    return place.remove(own.guid, own.wMajorVerNum, own.wMinorVerNum, own.lcid, own.syskind);
  }
  return S_OK;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

}  // namespace sab
