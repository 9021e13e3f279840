#include "platform/type_library_registration.h"

#include <cstdio>
#include <string>
#include <vector>

#include "base/bstr.h"
#include "base/com_ptr.h"
#include "base/registry_key.h"
#include "platform/module_path.h"

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

// The classes of the scope in place of HKEY_CLASSES_ROOT for as long as this lives. The functions
// for one user that the system has since Windows Vista would do, were they what they say
// everywhere: Wine writes to the machine.
class ClassesRoot {
 public:
  explicit ClassesRoot(RegistrationScope scope) {
    if (scope == RegistrationScope::kMachine) return;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", 0, nullptr, 0, KEY_ALL_ACCESS,
                        nullptr, &user_, nullptr) == ERROR_SUCCESS) {
      RegOverridePredefKey(HKEY_CLASSES_ROOT, user_);
    }
  }
  ClassesRoot(const ClassesRoot&) = delete;
  ClassesRoot& operator=(const ClassesRoot&) = delete;
  ~ClassesRoot() {
    if (!user_) return;
    RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
    RegCloseKey(user_);
  }

 private:
  HKEY user_ = nullptr;
};

// The key below which the versions of a type library are registered, by their names: "1.0".
std::wstring KeyOf(REFGUID guid) {
  wchar_t text[40];
  StringFromGUID2(guid, text, 40);
  return std::wstring(L"TypeLib\\") + text;
}

std::wstring VersionOf(const TLIBATTR& library) {
  wchar_t name[16];
  std::swprintf(name, 16, L"%x.%x", library.wMajorVerNum, library.wMinorVerNum);
  return name;
}

std::vector<std::wstring> RegisteredVersions(REFGUID guid) {
  std::vector<std::wstring> versions;
  const OpenKey key(HKEY_CLASSES_ROOT, KeyOf(guid), KEY_READ);
  if (!key) return versions;
  wchar_t name[64];
  DWORD length = 64;
  while (RegEnumKeyExW(key.Get(), static_cast<DWORD>(versions.size()), name, &length, nullptr,
                       nullptr, nullptr, nullptr) == ERROR_SUCCESS) {
    versions.emplace_back(name, length);
    length = 64;
  }
  return versions;
}

}  // namespace

HRESULT RegisterTypeLibraryOf(const Text& module, RegistrationScope scope) noexcept try {
  TypeLibrary library;
  const HRESULT result = library.Load(module);
  if (FAILED(result)) return result;
  const TLIBATTR& own = library.Attributes();
  const ClassesRoot root(scope);
  for (const std::wstring& version : RegisteredVersions(own.guid)) {
    if (version == VersionOf(own)) continue;
    // UnRegisterTypeLib wants the library's file, which is gone. What cannot be removed does no
    // harm to the version that is registered now.
    RegDeleteTreeW(HKEY_CLASSES_ROOT, (KeyOf(own.guid) + L'\\' + version).c_str());
  }
  return RegisterTypeLib(library.Get(), Text(module).data(), nullptr);
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

HRESULT UnregisterTypeLibraryOf(const Text& module, RegistrationScope scope) noexcept try {
  TypeLibrary library;
  const HRESULT result = library.Load(module);
  if (FAILED(result)) return result;
  const TLIBATTR& own = library.Attributes();
  const ClassesRoot root(scope);
  // Systems differ in the code for a type library that is not registered, so that is asked first.
  for (const std::wstring& version : RegisteredVersions(own.guid)) {
    if (version != VersionOf(own)) continue;
    BSTR path = nullptr;
    const HRESULT found =
        QueryPathOfRegTypeLib(own.guid, own.wMajorVerNum, own.wMinorVerNum, own.lcid, &path);
    // The system counts a final zero as part of the path.
    const bool is_of_another =
        SUCCEEDED(found) && path && !IsSamePath(Text(static_cast<const OLECHAR*>(path)), module);
    SysFreeString(path);
    if (is_of_another) return S_OK;
    return UnRegisterTypeLib(own.guid, own.wMajorVerNum, own.wMinorVerNum, own.lcid, own.syskind);
  }
  return S_OK;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

}  // namespace sab
