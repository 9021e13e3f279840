#include <sabxml/com.h>

#include <set>

#include "automation.h"
#include "platform.h"

namespace sabxml::cli {
namespace {

using Text = std::basic_string<OLECHAR>;

// A key that is closed at the end.
class Key {
 public:
  Key() = default;
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  ~Key() {
    if (key_) RegCloseKey(key_);
  }

  bool Open(HKEY parent, const Text& name, REGSAM access = KEY_READ) {
    return RegOpenKeyExW(parent, name.c_str(), 0, access, &key_) == ERROR_SUCCESS;
  }
  void Create(HKEY parent, const Text& name) {
    const LONG result = RegCreateKeyExW(parent, name.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                                        nullptr, &key_, nullptr);
    if (result != ERROR_SUCCESS) {
      throw Failure("the key " + ToUtf8(name) + " cannot be made", HRESULT_FROM_WIN32(result));
    }
  }
  HKEY Get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

std::vector<Text> SubkeysOf(HKEY key) {
  std::vector<Text> names;
  wchar_t name[256];
  for (DWORD i = 0;; ++i) {
    DWORD length = 256;
    if (RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
      return names;
    }
    names.emplace_back(name, length);
  }
}

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text)
    quoted += (c == '"' || c == '\\') ? std::string("\\") + c : std::string(1, c);
  return quoted + '"';
}

std::string ValueText(DWORD type, const std::vector<BYTE>& data) {
  if (type == REG_SZ || type == REG_EXPAND_SZ) {
    Text text(reinterpret_cast<const wchar_t*>(data.data()), data.size() / sizeof(wchar_t));
    while (!text.empty() && text.back() == L'\0') text.pop_back();
    return Quoted(ToUtf8(text));
  }
  std::string text = "hex(" + std::to_string(type) + "):";
  for (const BYTE byte : data)
    text += std::string(1, "0123456789abcdef"[byte >> 4]) + "0123456789abcdef"[byte & 15];
  return text;
}

// As the text form of the registry has them, a line for each key and each value.
void AddLines(HKEY key, const std::string& path, std::vector<std::string>& lines) {
  lines.push_back("[" + path + "]");
  wchar_t name[512];
  for (DWORD i = 0;; ++i) {
    DWORD length = 512;
    DWORD type = 0;
    std::vector<BYTE> data(65536);
    auto size = static_cast<DWORD>(data.size());
    if (RegEnumValueW(key, i, name, &length, nullptr, &type, data.data(), &size) != ERROR_SUCCESS) {
      break;
    }
    data.resize(size);
    lines.push_back("[" + path + "] " + (length == 0 ? "@" : Quoted(ToUtf8(Text(name, length)))) +
                    "=" + ValueText(type, data));
  }
  for (const Text& subkey : SubkeysOf(key)) {
    Key child;
    if (child.Open(key, subkey)) AddLines(child.Get(), path + "\\" + ToUtf8(subkey), lines);
  }
}

std::vector<std::string> LinesOf(HKEY root) {
  std::vector<std::string> lines;
  for (const Text& name : SubkeysOf(root)) {
    Key key;
    if (key.Open(root, name)) AddLines(key.Get(), "HKEY_CLASSES_ROOT\\" + ToUtf8(name), lines);
  }
  return lines;
}

// A key of the user's own that stands for HKEY_CLASSES_ROOT while something runs.
class Scratch {
 public:
  Scratch() : name_(L"Software\\sabxml-" + std::to_wstring(GetCurrentProcessId())) {
    root_.Create(HKEY_CURRENT_USER, name_);
  }
  ~Scratch() { RegDeleteTreeW(HKEY_CURRENT_USER, name_.c_str()); }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  HKEY Get() const { return root_.Get(); }

  static void RunIn(HKEY classes_root, const std::function<void()>& change) {
    const LONG result = RegOverridePredefKey(HKEY_CLASSES_ROOT, classes_root);
    if (result != ERROR_SUCCESS) {
      throw Failure("the registry cannot be set aside for a dry run", HRESULT_FROM_WIN32(result));
    }
    const struct Restore {
      ~Restore() { RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr); }
    } restore;
    change();
  }

 private:
  Text name_;
  Key root_;
};

// These hold the keys of many components; every other key belongs to one.
bool IsShared(const Text& name) {
  static const std::set<Text> shared = {L"AppID", L"CLSID", L"Interface", L"TypeLib"};
  return shared.count(name) != 0;
}

void CopyIfPresent(const Text& name, HKEY target) {
  Key source;
  if (!source.Open(HKEY_CLASSES_ROOT, name)) return;
  Key copy;
  copy.Create(target, name);
  RegCopyTreeW(source.Get(), nullptr, copy.Get());
}

// Copies from the registry what stands where the entered keys are.
void CopyPresentState(HKEY entered, HKEY target) {
  for (const Text& name : SubkeysOf(entered)) {
    if (!IsShared(name)) {
      CopyIfPresent(name, target);
      continue;
    }
    Key shared;
    if (!shared.Open(entered, name)) continue;
    Key container;
    container.Create(target, name);
    for (const Text& own : SubkeysOf(shared.Get())) CopyIfPresent(name + L"\\" + own, target);
  }
}

}  // namespace

RegistryChange TryOnScratchRegistry(const std::function<void()>& change,
                                    const std::function<void()>& enter) {
  const Scratch scratch;
  Key entered;
  entered.Create(scratch.Get(), L"entered");
  Scratch::RunIn(entered.Get(), enter);
  Key trial;
  trial.Create(scratch.Get(), L"trial");
  CopyPresentState(entered.Get(), trial.Get());
  RegistryChange result;
  result.before = LinesOf(trial.Get());
  Scratch::RunIn(trial.Get(), change);
  result.after = LinesOf(trial.Get());
  return result;
}

}  // namespace sabxml::cli
