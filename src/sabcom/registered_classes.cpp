#include <sabxml/com.h>
#include <sabxml/com/registry_change.h>

#include <cstring>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "sabcom/errors.h"
#include "sabcom/modules.h"
#include "sabcom/utf.h"

namespace {

// Raised when the registry has no answer, for the reason in the code.
struct NoAnswer {
  HRESULT code;
};

void CheckAnswer(LSTATUS status) {
  if (status == ERROR_SUCCESS) return;
  throw NoAnswer{status == ERROR_OUTOFMEMORY ? E_OUTOFMEMORY : REGDB_E_READREGDB};
}

// An open key of the classes; null for an unknown one.
class OpenKey {
 public:
  OpenKey(HKEY root, const std::u16string& path) {
    const LSTATUS status = RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key_);
    if (status != ERROR_FILE_NOT_FOUND) CheckAnswer(status);
  }
  OpenKey(const OpenKey&) = delete;
  OpenKey& operator=(const OpenKey&) = delete;
  ~OpenKey() {
    if (key_) RegCloseKey(key_);
  }
  HKEY Get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

// The default value of a key; empty without one that is a text.
std::u16string TextOf(HKEY key) {
  std::vector<BYTE> data;
  DWORD size = 0;
  DWORD type = REG_NONE;
  LSTATUS status = RegQueryValueExW(key, nullptr, nullptr, &type, nullptr, &size);
  // Another process may write a longer one meanwhile.
  while (status == ERROR_MORE_DATA || (status == ERROR_SUCCESS && data.size() < size)) {
    data.resize(size);
    status = RegQueryValueExW(key, nullptr, nullptr, &type, data.data(), &size);
  }
  if (status != ERROR_FILE_NOT_FOUND) CheckAnswer(status);
  if (status != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ)) return {};
  std::u16string text(size / sizeof(char16_t), u'\0');  // half a unit at the end is no text
  if (!text.empty()) std::memcpy(text.data(), data.data(), text.size() * sizeof(char16_t));
  return text.substr(0, text.find(u'\0'));
}

// The default value of a key of the classes: of the user's own, before that of the machine.
std::u16string ClassText(const std::u16string& path) {
  const OpenKey own(HKEY_CURRENT_USER, u"Software\\Classes\\" + path);
  if (own.Get()) return TextOf(own.Get());
  const OpenKey of_all(HKEY_CLASSES_ROOT, path);
  return of_all.Get() ? TextOf(of_all.Get()) : std::u16string();
}

// The code of what stops a lookup.
HRESULT CurrentCode() noexcept {
  try {
    throw;
  } catch (const NoAnswer& reason) {
    return reason.code;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

std::u16string ClassKey(REFCLSID clsid) {
  OLECHAR text[40];
  StringFromGUID2(clsid, text, 40);
  return std::u16string(u"CLSID\\") + text;
}

std::u16string LibraryKey(REFCLSID clsid) { return ClassKey(clsid) + u"\\InprocServer32"; }

struct ClassHash {
  std::size_t operator()(REFCLSID clsid) const { return clsid.Data1; }
};

// Which library the registry has for each class that was asked for, as of one of its states.
struct KnownLibraries {
  std::mutex lock;
  ULONGLONG generation = 0;
  std::unordered_map<CLSID, std::u16string, ClassHash> paths;  // empty for an unknown class
};

// The library of a class; empty for an unknown one.
std::u16string LibraryOf(REFCLSID clsid) {
  static auto* const known = new KnownLibraries;  // never destroyed: libraries unload late
  // Before the lookup: what another process writes meanwhile must be looked up again.
  const ULONGLONG generation = SabComRegistryGeneration();
  {
    const std::lock_guard guard(known->lock);
    if (generation != std::exchange(known->generation, generation)) known->paths.clear();
    const auto found = known->paths.find(clsid);
    if (generation != 0 && found != known->paths.end()) return found->second;
  }
  const std::u16string path = ClassText(LibraryKey(clsid));
  const std::lock_guard guard(known->lock);
  if (generation != 0 && generation == known->generation)
    known->paths.insert_or_assign(clsid, path);
  return path;
}

}  // namespace

HRESULT CLSIDFromProgID(LPCOLESTR prog_id, LPCLSID clsid) try {
  if (!prog_id || !clsid) return E_INVALIDARG;
  *clsid = CLSID_NULL;
  std::u16string name = prog_id;
  std::u16string text = ClassText(name + u"\\CLSID");
  if (text.empty()) {
    name = ClassText(name + u"\\CurVer");
    if (!name.empty()) text = ClassText(name + u"\\CLSID");
  }
  if (text.empty() || text.front() != u'{') return CO_E_CLASSSTRING;
  return CLSIDFromString(text.c_str(), clsid);
} catch (...) {
  return CurrentCode();
}

HRESULT ProgIDFromCLSID(REFCLSID clsid, LPOLESTR* prog_id) try {
  if (!prog_id) return E_INVALIDARG;
  *prog_id = nullptr;
  const std::u16string text = ClassText(ClassKey(clsid) + u"\\ProgID");
  if (text.empty()) return REGDB_E_CLASSNOTREG;
  const std::size_t size = (text.size() + 1) * sizeof(char16_t);
  *prog_id = static_cast<LPOLESTR>(CoTaskMemAlloc(size));
  if (!*prog_id) return E_OUTOFMEMORY;
  std::memcpy(*prog_id, text.c_str(), size);
  return S_OK;
} catch (...) {
  return CurrentCode();
}

HRESULT CoGetClassObject(REFCLSID clsid, DWORD context, LPVOID, REFIID riid, LPVOID* object) try {
  if (!object) return E_INVALIDARG;
  *object = nullptr;
  if (!sabcom::IsThreadInitialized()) return CO_E_NOTINITIALIZED;
  if ((context & CLSCTX_INPROC_SERVER) == 0) return REGDB_E_CLASSNOTREG;
  const std::u16string path = LibraryOf(clsid);
  if (path.empty()) return REGDB_E_CLASSNOTREG;
  if (path.front() != u'/') {
    sabcom::Explain("The registry has for " + sabcom::ToUtf8(LibraryKey(clsid)) + " the library " +
                    sabcom::ToUtf8(path) +
                    ". It is not loaded, since without a full path another one of that name could "
                    "be found. Register the server again.");
    return CO_E_DLLNOTFOUND;
  }
  return sabcom::GetClassObject(path, clsid, riid, object);
} catch (...) {
  return CurrentCode();
}

HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID riid,
                         LPVOID* object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  IClassFactory* factory = nullptr;
  HRESULT result = CoGetClassObject(clsid, context, nullptr, IID_IClassFactory,
                                    reinterpret_cast<void**>(&factory));
  if (FAILED(result)) return result;
  result = factory->CreateInstance(outer, riid, object);
  factory->Release();
  return result;
}

void CoFreeUnusedLibraries() { sabcom::FreeUnusedModules(); }
