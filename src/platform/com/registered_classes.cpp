#include <sabxml/com.h>

#include <cstring>
#include <new>
#include <string>

#include "platform/com/modules.h"

namespace {

// A key of the classes: the user's own, before that of the machine.
class OpenKey {
 public:
  explicit OpenKey(const std::u16string& path) {
    const std::u16string own = u"Software\\Classes\\" + path;
    status_ = RegOpenKeyExW(HKEY_CURRENT_USER, own.c_str(), 0, KEY_READ, &key_);
    if (status_ != ERROR_SUCCESS) {
      status_ = RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ, &key_);
    }
  }
  OpenKey(const OpenKey&) = delete;
  OpenKey& operator=(const OpenKey&) = delete;
  ~OpenKey() {
    if (status_ == ERROR_SUCCESS) RegCloseKey(key_);
  }

  LSTATUS Status() const { return status_; }
  /// The key's default value; empty without one.
  std::u16string Text() const {
    DWORD size = 0;
    DWORD type = REG_NONE;
    if (status_ != ERROR_SUCCESS ||
        RegQueryValueExW(key_, nullptr, nullptr, &type, nullptr, &size) != ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ)) {
      return {};
    }
    std::u16string text(size / sizeof(char16_t), u'\0');
    RegQueryValueExW(key_, nullptr, nullptr, nullptr, reinterpret_cast<LPBYTE>(text.data()), &size);
    while (!text.empty() && text.back() == u'\0') text.pop_back();
    return text;
  }

 private:
  HKEY key_ = nullptr;
  LSTATUS status_;
};

std::u16string ClassKey(REFCLSID clsid) {
  OLECHAR text[40];
  StringFromGUID2(clsid, text, 40);
  return std::u16string(u"CLSID\\") + text;
}

}  // namespace

HRESULT CLSIDFromProgID(LPCOLESTR prog_id, LPCLSID clsid) try {
  if (!prog_id || !clsid) return E_INVALIDARG;
  *clsid = CLSID_NULL;
  std::u16string name = prog_id;
  std::u16string text = OpenKey(name + u"\\CLSID").Text();
  if (text.empty()) {
    name = OpenKey(name + u"\\CurVer").Text();
    if (!name.empty()) text = OpenKey(name + u"\\CLSID").Text();
  }
  if (text.empty() || text.front() != u'{') return CO_E_CLASSSTRING;
  return CLSIDFromString(text.c_str(), clsid);
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

HRESULT ProgIDFromCLSID(REFCLSID clsid, LPOLESTR* prog_id) try {
  if (!prog_id) return E_INVALIDARG;
  *prog_id = nullptr;
  const std::u16string text = OpenKey(ClassKey(clsid) + u"\\ProgID").Text();
  if (text.empty()) return REGDB_E_CLASSNOTREG;
  const std::size_t size = (text.size() + 1) * sizeof(char16_t);
  *prog_id = static_cast<LPOLESTR>(CoTaskMemAlloc(size));
  if (!*prog_id) return E_OUTOFMEMORY;
  std::memcpy(*prog_id, text.c_str(), size);
  return S_OK;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

HRESULT CoGetClassObject(REFCLSID clsid, DWORD context, LPVOID, REFIID riid, LPVOID* object) try {
  if (!object) return E_INVALIDARG;
  *object = nullptr;
  if (!sabcom::IsThreadInitialized()) return CO_E_NOTINITIALIZED;
  if ((context & CLSCTX_INPROC_SERVER) == 0) return REGDB_E_CLASSNOTREG;
  const OpenKey server(ClassKey(clsid) + u"\\InprocServer32");
  if (server.Status() == ERROR_BADDB) return REGDB_E_READREGDB;
  const std::u16string path = server.Text();
  if (path.empty()) return REGDB_E_CLASSNOTREG;
  return sabcom::GetClassObject(path, clsid, riid, object);
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
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
