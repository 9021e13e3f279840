#include <sabxml/com.h>

#include <cstring>
#include <string>
#include <unordered_map>
#include <utility>

#include "sabcom/errors.h"
#include "sabcom/modules.h"
#include "sabcom/registry_reading.h"
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

// The default value of a key; empty without one that is a text.
std::u16string TextOf(const sabcom::Key& key) {
  const auto found = key.values.find(std::u16string());
  if (found == key.values.end()) return {};
  const sabcom::Value& value = found->second;
  if (value.type != REG_SZ && value.type != REG_EXPAND_SZ) return {};
  std::u16string text(value.data.size() / sizeof(char16_t), u'\0');  // half a unit is no text
  if (!text.empty()) std::memcpy(text.data(), value.data.data(), text.size() * sizeof(char16_t));
  return text.substr(0, text.find(u'\0'));
}

// The default value of a key of the classes: of the user's own, before that of the machine.
std::u16string ClassText(sabcom::Key& tree, const std::u16string& path) {
  const sabcom::Key* key = tree.Find(u"HKEY_CURRENT_USER\\Software\\Classes\\" + path);
  if (!key) key = tree.Find(u"HKEY_CLASSES_ROOT\\" + path);
  return key ? TextOf(*key) : std::u16string();
}
std::u16string ClassText(const std::u16string& path) {
  std::u16string text;
  CheckAnswer(
      sabcom::ReadRegistry([&](sabcom::Key& tree, ULONGLONG) { text = ClassText(tree, path); }));
  return text;
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

// The library of a class; empty for an unknown one. What was asked for is remembered as of one
// state of the registry.
std::u16string LibraryOf(REFCLSID clsid) {
  using Paths = std::unordered_map<CLSID, std::u16string, ClassHash>;
  static auto* const known = new Paths;  // never destroyed: libraries unload late
  static ULONGLONG known_generation = 0;
  std::u16string path;
  CheckAnswer(sabcom::ReadRegistry([&](sabcom::Key& tree, ULONGLONG generation) {
    if (generation != std::exchange(known_generation, generation)) known->clear();
    auto found = known->find(clsid);
    if (found == known->end())
      found = known->emplace(clsid, ClassText(tree, LibraryKey(clsid))).first;
    path = found->second;
  }));
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
