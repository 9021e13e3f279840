#include "server/registrar.h"

#include <charconv>
#include <cstring>

#include "base/text.h"
#include "server/registrar_lexer.h"

namespace sab {
namespace {

using Token = RegistrarToken;
using Kind = RegistrarToken::Kind;

struct Value {
  DWORD type;
  std::vector<BYTE> data;
};

// More than a registry has.
constexpr int kMaxLevels = 512;

enum class KeyMode { kPlain, kNoRemove, kForceRemove, kDelete };

std::vector<BYTE> BytesOf(const Text& text) {
  std::vector<BYTE> bytes(text.size() * sizeof(OLECHAR));
  std::memcpy(bytes.data(), text.data(), bytes.size());
  return bytes;
}

class Interpreter {
 public:
  Interpreter(const RegistrarScript& script, const Replacements& replacements,
              RegistryTarget& registry, bool registers)
      : lexer_(script, replacements), registry_(registry), registers_(registers) {
    Advance();
  }

  void Run() {
    while (token_.kind != Kind::kEnd) {
      const HKEY root = ReadRoot();
      Expect(Kind::kOpen, "{ is expected after the root key");
      ReadContent({root, {}});
    }
  }

 private:
  void Advance() { token_ = lexer_.Next(); }
  void Expect(Kind kind, const char* reason) {
    if (token_.kind != kind) lexer_.Fail(token_, reason);
    Advance();
  }
  std::string TakeName(const char* what) {
    if (!token_.IsName() || token_.text.empty()) {
      lexer_.Fail(token_, std::string(what) + " is expected");
    }
    std::string name = token_.text;
    Advance();
    return name;
  }

  HKEY ReadRoot() {
    static const struct {
      const char* abbreviation;
      const char* name;
      HKEY key;
    } kRoots[] = {{"HKCR", "HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
                  {"HKCU", "HKEY_CURRENT_USER", HKEY_CURRENT_USER},
                  {"HKLM", "HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
                  {"HKU", "HKEY_USERS", HKEY_USERS}};
    for (const auto& root : kRoots) {
      if (!token_.IsWord(root.abbreviation) && !token_.IsWord(root.name)) continue;
      Advance();
      return root.key;
    }
    lexer_.Fail(token_, "a root key is expected: HKCR, HKCU, HKLM or HKU");
  }

  // The keys and values of a key, up to and with its closing brace.
  void ReadContent(const RegistryPath& parent) {
    while (token_.kind != Kind::kClose) {
      if (token_.kind == Kind::kEnd) lexer_.Fail(token_, "} is missing at the end");
      if (token_.IsWord("val")) {
        ReadValueOf(parent);
      } else {
        ReadKey(parent);
      }
    }
    Advance();
  }

  void ReadValueOf(const RegistryPath& key) {
    Advance();
    const std::string name = TakeName("the name of a value");
    Expect(Kind::kEquals, "= is expected after the name of a value");
    const Value value = ReadValue();
    Apply(key, name, value);
  }

  void Apply(const RegistryPath& key, const std::string& name, const Value& value) {
    if (registers_) {
      registry_.SetValue(key, name, value.type, value.data);
    } else {
      registry_.DeleteValue(key, name, value.type, value.data);
    }
  }

  KeyMode ReadMode() {
    static constexpr struct {
      const char* word;
      KeyMode mode;
    } kModes[] = {{"NoRemove", KeyMode::kNoRemove},
                  {"ForceRemove", KeyMode::kForceRemove},
                  {"Delete", KeyMode::kDelete}};
    for (const auto& mode : kModes) {
      if (!token_.IsWord(mode.word)) continue;
      Advance();
      return mode.mode;
    }
    return KeyMode::kPlain;
  }

  void ReadKey(const RegistryPath& parent) {
    const KeyMode mode = ReadMode();
    const Token at = token_;
    const std::string name = TakeName("the name of a key");
    if (name.find('\\') != std::string::npos) lexer_.Fail(at, "the name of a key has no backslash");
    if (++depth_ > kMaxLevels) lexer_.Fail(at, "keys are nested too deeply");
    const RegistryPath key{parent.root, parent.key.empty() ? name : parent.key + '\\' + name};
    const bool removes_first =
        mode == KeyMode::kDelete || (registers_ && mode == KeyMode::kForceRemove);
    if (removes_first) registry_.DeleteTree(key);
    if (registers_ && mode != KeyMode::kDelete) registry_.CreateKey(key);
    if (token_.kind == Kind::kEquals) {
      Advance();
      const Value value = ReadValue();
      if (mode != KeyMode::kDelete) Apply(key, {}, value);
    }
    if (token_.kind == Kind::kOpen) {
      if (mode == KeyMode::kDelete) lexer_.Fail(token_, "a key that is deleted has no content");
      Advance();
      ReadContent(key);
    }
    --depth_;
    if (registers_) return;
    if (mode == KeyMode::kForceRemove) registry_.DeleteTree(key);
    if (mode == KeyMode::kPlain) registry_.DeleteKeyIfEmpty(key);
  }

  Value ReadValue() {
    const Token type = token_;
    const bool is_known =
        type.IsWord("s") || type.IsWord("d") || type.IsWord("b") || type.IsWord("m");
    if (!is_known) lexer_.Fail(type, "the type of a value is expected: s, d, b or m");
    Advance();
    const Token at = token_;
    if (!at.IsName()) lexer_.Fail(at, "a value is expected");
    Advance();
    if (type.IsWord("s")) return TextValue(at.text);
    if (type.IsWord("d")) return NumberValue(at);
    if (type.IsWord("b")) return BytesValue(at);
    return TextsValue(at.text);
  }

  static Value TextValue(const std::string& text) {
    Text wide = FromUtf8(text);
    wide.push_back(0);
    return {REG_SZ, BytesOf(wide)};
  }

  static Value TextsValue(std::string text) {
    for (std::size_t at = text.find("\\0"); at != std::string::npos; at = text.find("\\0", at)) {
      text.replace(at, 2, 1, '\0');
    }
    Text wide = FromUtf8(text);
    if (wide.empty() || wide.back() != 0) wide.push_back(0);
    wide.push_back(0);
    return {REG_MULTI_SZ, BytesOf(wide)};
  }

  Value NumberValue(const Token& at) const {
    std::string_view digits = at.text;
    const bool is_hexadecimal = digits.starts_with("&h") || digits.starts_with("&H") ||
                                digits.starts_with("0x") || digits.starts_with("0X");
    if (is_hexadecimal) digits.remove_prefix(2);
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number,
                                              is_hexadecimal ? 16 : 10);
    if (error != std::errc() || end != digits.data() + digits.size()) {
      lexer_.Fail(at, "a number from 0 to 4294967295 is expected");
    }
    Value value{REG_DWORD, std::vector<BYTE>(sizeof number)};
    std::memcpy(value.data.data(), &number, sizeof number);
    return value;
  }

  Value BytesValue(const Token& at) const {
    Value value{REG_BINARY, {}};
    if (at.text.size() % 2 != 0) lexer_.Fail(at, "bytes take two hexadecimal digits each");
    for (std::size_t i = 0; i < at.text.size(); i += 2) {
      const char* const digits = at.text.data() + i;
      unsigned byte = 0;
      const auto [end, error] = std::from_chars(digits, digits + 2, byte, 16);
      if (error != std::errc() || end != digits + 2) {
        lexer_.Fail(at, "bytes are written in hexadecimal digits");
      }
      value.data.push_back(static_cast<BYTE>(byte));
    }
    return value;
  }

  RegistrarLexer lexer_;
  RegistryTarget& registry_;
  const bool registers_;
  Token token_;
  int depth_ = 0;
};

}  // namespace

void RunRegistrarScript(const RegistrarScript& script, const Replacements& replacements,
                        RegistryTarget& registry) {
  Interpreter(script, replacements, registry, true).Run();
}

void UndoRegistrarScript(const RegistrarScript& script, const Replacements& replacements,
                         RegistryTarget& registry) {
  Interpreter(script, replacements, registry, false).Run();
}

}  // namespace sab
