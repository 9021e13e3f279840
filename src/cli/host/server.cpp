#include "cli/host/server.h"

#include <SabXmlParser.h>

#include "base/registry_key.h"
#include "base/result_words.h"
#include "cli/host/type_description.h"
#include "cli/platform.h"
#include "cli/suggestion.h"
#include "cli/trace.h"

namespace sabxml::cli {
namespace {

using GetClassObjectFunction = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);
using RegisterFunction = HRESULT(STDMETHODCALLTYPE*)();
using InstallFunction = HRESULT(STDMETHODCALLTYPE*)(BOOL install, LPCWSTR command_line);

}  // namespace

std::string DefaultTextOf(HKEY parent, const std::string& path) {
  const sab::OpenKey key(parent, FromUtf8(path), KEY_READ);
  OLECHAR text[1024] = {};
  DWORD size = sizeof text - sizeof(OLECHAR);
  DWORD type = REG_NONE;
  if (!key ||
      RegQueryValueExW(key.Get(), nullptr, nullptr, &type, reinterpret_cast<LPBYTE>(text), &size) !=
          ERROR_SUCCESS ||
      type != REG_SZ) {
    return {};
  }
  return ToUtf8(sab::TextView(text));
}

RegisteredLibrary RegisteredLibraryOf(const std::string& clsid, bool only_for_user) {
  std::vector<ClassesKey> keys = {{HKEY_CURRENT_USER, "Software\\Classes\\"}};
  if (!only_for_user) keys = ClassesKeys();
  for (const ClassesKey& key : keys) {
    const std::string path = key.path + "CLSID\\" + clsid;
    const sab::OpenKey entry(key.root, FromUtf8(path), KEY_READ);
    if (entry && sab::OpenKey(entry.Get(), FromUtf8("InprocServer32"), KEY_READ)) {
      const bool is_of_user = key.root == HKEY_CURRENT_USER;
      return {(is_of_user ? "HKEY_CURRENT_USER\\" : "HKEY_CLASSES_ROOT\\") + path,
              DefaultTextOf(entry.Get(), "InprocServer32"), LastChangeOf(entry.Get())};
    }
    const LSTATUS status = entry.Status();
    if (status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND)
      continue;
    Fail(HRESULT_FROM_WIN32(static_cast<DWORD>(status)), "reading " + RegistryName());
  }
  return {};
}

std::string RegistryName() {
  const std::string file = RegistryFile();
  return file.empty() ? "that of the system" : "the file " + file;
}

std::string WithBraces(const std::string& name) {
  constexpr std::string_view kForm = "00000000-0000-0000-0000-000000000000";
  if (name.size() != kForm.size()) return name;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    if ((kForm[i] == '-') != (name[i] == '-')) return name;
  }
  return "{" + name + "}";
}

Server::Server(const std::string& library) : named_library_(library) {
  if (!named_library_.empty()) {
    Trace("the server is " + named_library_ + ": --server names it");
    return;
  }
  named_library_ = EnvironmentVariable("SABXML_SERVER");
  if (!named_library_.empty())
    Trace("the server is " + named_library_ + ": SABXML_SERVER names it");
}

std::string Server::LibraryPath() const {
  return named_library_.empty() ? OwnServer() : named_library_;
}

void* Server::Library() {
  if (!library_) library_ = LoadServerLibrary(LibraryPath());
  return library_;
}

ComPtr<IDispatch> Server::CreateFromLibrary(REFCLSID clsid) {
  const auto get_class_object =
      reinterpret_cast<GetClassObjectFunction>(FunctionOf(Library(), "DllGetClassObject"));
  if (!get_class_object) throw Failure(LibraryPath() + " is no component server");
  ComPtr<IClassFactory> factory;
  HRESULT result = get_class_object(clsid, IID_IClassFactory, factory.PutVoid());
  ComPtr<IDispatch> object;
  if (SUCCEEDED(result)) {
    result = factory->CreateInstance(nullptr, IID_IDispatch, object.PutVoid());
  }
  if (FAILED(result)) Fail(result, "creating the object");
  return object;
}

// Said once: the other classes come from the same place.
void Server::TraceChoice(REFCLSID clsid, HRESULT registered) {
  if (is_choice_traced_) return;
  is_choice_traced_ = true;
  Trace("the registry is " + RegistryName());
  if (FAILED(registered)) {
    Trace("the server is " + OwnServer() + ", the library beside this program: the registry has " +
          (registered == REGDB_E_CLASSNOTREG ? "none" : "one that cannot be used"));
    return;
  }
  OLECHAR text[40];
  StringFromGUID2(clsid, text, 40);
  const RegisteredLibrary library = RegisteredLibraryOf(ToUtf8(sab::TextView(text)));
  Trace("the server is " + library.path + ": it is registered for the classes, in " + library.key);
}

ComPtr<IDispatch> Server::CreateClass(REFCLSID clsid) {
  HRESULT registered = REGDB_E_CLASSNOTREG;
  if (named_library_.empty()) {
    ComPtr<IDispatch> object;
    registered =
        CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.PutVoid());
    TraceChoice(clsid, registered);
    if (SUCCEEDED(registered)) return object;
  }
  try {
    return CreateFromLibrary(clsid);
  } catch (const Failure& failure) {
    if (registered == REGDB_E_CLASSNOTREG) throw;
    throw Failure(std::string("the registered server cannot be used (") +
                      sab::ResultDigits(registered) + " " + sab::ResultWords(registered) +
                      "), and without it " + failure.what(),
                  failure.Code());
  }
}

ComPtr<ITypeLib> Server::TypeLibrary() {
  // Any object leads there; this class is always present.
  const ComPtr<IDispatch> object = CreateClass(CLSID_VeAppParser);
  ComPtr<ITypeInfo> info;
  ComPtr<ITypeLib> library;
  HRESULT result = object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Put());
  if (SUCCEEDED(result)) result = info->GetContainingTypeLib(library.Put(), nullptr);
  if (FAILED(result)) Fail(result, "reading the type information");
  return library;
}

CLSID Server::ClassNamed(const std::string& class_name) {
  const std::string prefix = "SabXmlParser.";
  const bool is_prog_id = class_name.starts_with(prefix);
  std::string name = is_prog_id ? class_name.substr(prefix.size()) : class_name;
  if (name.ends_with(".1")) name.resize(name.size() - 2);
  name = WithBraces(name);
  CLSID clsid;
  if (name.starts_with('{') && SUCCEEDED(CLSIDFromString(FromUtf8(name).c_str(), &clsid))) {
    return clsid;
  }
  if (is_prog_id && SUCCEEDED(CLSIDFromProgID(FromUtf8(class_name).c_str(), &clsid))) return clsid;

  const ComPtr<ITypeLib> library = TypeLibrary();
  std::basic_string<OLECHAR> wide = FromUtf8(name);
  ITypeInfo* found[1] = {};
  MEMBERID members[1] = {};
  USHORT count = 1;
  if (SUCCEEDED(library->FindName(wide.data(), 0, found, members, &count)) && count > 0) {
    ComPtr<ITypeInfo> info;
    info.Attach(found[0]);
    TYPEATTR* attributes = nullptr;
    if (SUCCEEDED(info->GetTypeAttr(&attributes))) {
      clsid = attributes->guid;
      const bool is_class = attributes->typekind == TKIND_COCLASS;
      info->ReleaseTypeAttr(attributes);
      if (is_class) return clsid;
    }
  }
  std::vector<std::string> names;
  for (const ClassDescription& known : DescribeClasses(*library.Get())) names.push_back(known.name);
  throw Failure("the server has no class named " + class_name +
                DidYouMean(name, names, "\"sabxml classes\" lists those that it has"));
}

ComPtr<IDispatch> Server::Create(const std::string& class_name) {
  return CreateClass(ClassNamed(class_name));
}

template <typename Function, typename... Arguments>
void Server::Call(const char* name, Arguments... arguments) {
  const auto entry_point = reinterpret_cast<Function>(FunctionOf(Library(), name));
  if (!entry_point) throw Failure(LibraryPath() + " is no component server");
  const HRESULT result = entry_point(arguments...);
  if (FAILED(result)) Fail(result, name);
}

void Server::Register(bool for_user) {
  if (for_user) return Call<InstallFunction>("DllInstall", TRUE, OLESTR("user"));
  Call<RegisterFunction>("DllRegisterServer");
}

void Server::Unregister(bool for_user) {
  if (for_user) return Call<InstallFunction>("DllInstall", FALSE, OLESTR("user"));
  Call<RegisterFunction>("DllUnregisterServer");
}

}  // namespace sabxml::cli
