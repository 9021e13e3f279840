#include "platform/com/hive.h"

#include <cstdio>
#include <cstring>

#include "platform/com/utf.h"

namespace sabcom {
namespace {

constexpr std::string_view kHeading = "Windows Registry Editor Version 5.00";

class Parser {
 public:
  Parser(const std::string& file, std::string_view text) : file_(file), text_(text) {}

  std::unique_ptr<Key> Parse() {
    if (text_.starts_with("\xEF\xBB\xBF")) text_.remove_prefix(3);
    if (NextLine() != kHeading) Fail("the first line must be: " + std::string(kHeading));
    auto root = std::make_unique<Key>();
    Key* key = nullptr;
    while (!text_.empty()) {
      std::string line = NextLine();
      if (line.empty() || line.front() == ';') continue;
      if (line.front() == '[') {
        if (line.back() != ']') Fail("a key's line must end with ]");
        bool created = false;
        key = &root->FindOrCreate(FromUtf8(std::string_view(line).substr(1, line.size() - 2)),
                                  created);
      } else if (key) {
        ReadValue(line, *key);
      } else {
        Fail("a value stands before the first key");
      }
    }
    return root;
  }

 private:
  [[noreturn]] void Fail(const std::string& reason) const {
    throw HiveError{file_ + ":" + std::to_string(line_) + ": " + reason +
                    ". Mend the file or move it away."};
  }

  // A line without its end; a backslash at the end joins the next one.
  std::string NextLine() {
    std::string line;
    do {
      if (!line.empty()) line.pop_back();
      ++line_;
      const std::size_t end = text_.find('\n');
      std::string_view part = text_.substr(0, end);
      text_.remove_prefix(end == std::string_view::npos ? text_.size() : end + 1);
      if (part.ends_with('\r')) part.remove_suffix(1);
      while (!line.empty() && !part.empty() && part.front() == ' ') part.remove_prefix(1);
      line += part;
    } while (line.ends_with('\\') && !text_.empty());
    return line;
  }

  void ReadValue(std::string_view line, Key& key) {
    Value value;
    if (line.front() == '@') {
      line.remove_prefix(1);
    } else {
      value.name = FromUtf8(TakeQuoted(line));
    }
    if (line.empty() || line.front() != '=') Fail("= is expected behind a value's name");
    line.remove_prefix(1);
    if (line.starts_with('"')) {
      value.type = REG_SZ;
      SetText(value, FromUtf8(TakeQuoted(line)));
      if (!line.empty()) Fail("nothing may stand behind a text");
    } else if (line.starts_with("dword:")) {
      unsigned number = 0;
      int used = 0;
      const std::string digits(line.substr(6));
      if (std::sscanf(digits.c_str(), "%8x%n", &number, &used) != 1 ||
          static_cast<std::size_t>(used) != digits.size()) {
        Fail("dword: takes eight hexadecimal digits");
      }
      value.type = REG_DWORD;
      value.data.resize(4);
      std::memcpy(value.data.data(), &number, 4);
    } else if (line.starts_with("hex")) {
      ReadBytes(line.substr(3), value);
    } else {
      Fail("a text in quotes, dword: or hex: is expected");
    }
    std::u16string folded = Folded(value.name);
    key.values[std::move(folded)] = std::move(value);
  }

  std::string TakeQuoted(std::string_view& line) {
    std::string text;
    if (line.empty() || line.front() != '"') Fail("a name in quotes is expected");
    std::size_t i = 1;
    for (; i < line.size() && line[i] != '"'; ++i) {
      if (line[i] == '\\' && i + 1 < line.size()) ++i;
      text.push_back(line[i]);
    }
    if (i >= line.size()) Fail("the closing quote is missing");
    line.remove_prefix(i + 1);
    return text;
  }

  void ReadBytes(std::string_view rest, Value& value) {
    value.type = REG_BINARY;
    if (rest.starts_with('(')) {
      unsigned type = 0;
      int used = 0;
      const std::string text(rest);
      if (std::sscanf(text.c_str(), "(%x)%n", &type, &used) != 1) Fail("hex(…) takes a type");
      value.type = type;
      rest.remove_prefix(static_cast<std::size_t>(used));
    }
    if (!rest.starts_with(':')) Fail("a colon is expected behind hex");
    rest.remove_prefix(1);
    while (!rest.empty()) {
      unsigned byte = 0;
      const std::string digits(rest.substr(0, 2));
      if (digits.size() != 2 || std::sscanf(digits.c_str(), "%2x", &byte) != 1) {
        Fail("bytes are two hexadecimal digits with commas between");
      }
      value.data.push_back(static_cast<BYTE>(byte));
      rest.remove_prefix(2);
      if (rest.starts_with(',')) rest.remove_prefix(1);
    }
  }

  static void SetText(Value& value, const std::u16string& text) {
    value.data.resize((text.size() + 1) * sizeof(char16_t));
    std::memcpy(value.data.data(), text.c_str(), value.data.size());
  }

  const std::string& file_;
  std::string_view text_;
  int line_ = 0;
};

std::string Quoted(std::u16string_view text) {
  std::string quoted = "\"";
  for (const char c : ToUtf8(text)) {
    if (c == '"' || c == '\\') quoted.push_back('\\');
    quoted.push_back(c);
  }
  return quoted + "\"";
}

// A text that a line can hold; any other goes as bytes.
bool IsPlainText(const Value& value, std::u16string& text) {
  if (value.type != REG_SZ || value.data.size() < 2 || value.data.size() % 2 != 0) return false;
  text.resize(value.data.size() / 2);
  std::memcpy(text.data(), value.data.data(), value.data.size());
  if (text.back() != 0) return false;
  text.pop_back();
  return text.find_first_of(u"\r\n\0", 0, 3) == std::u16string::npos;
}

void AppendValue(std::string& out, const Value& value) {
  out += value.name.empty() ? "@" : Quoted(value.name);
  out += '=';
  std::u16string text;
  char digits[16];
  if (IsPlainText(value, text)) {
    out += Quoted(text);
  } else if (value.type == REG_DWORD && value.data.size() == 4) {
    unsigned number = 0;
    std::memcpy(&number, value.data.data(), 4);
    std::snprintf(digits, sizeof digits, "dword:%08x", number);
    out += digits;
  } else {
    std::snprintf(digits, sizeof digits, "hex(%x):", static_cast<unsigned>(value.type));
    out += value.type == REG_BINARY ? "hex:" : digits;
    for (std::size_t i = 0; i < value.data.size(); ++i) {
      std::snprintf(digits, sizeof digits, i ? ",%02x" : "%02x",
                    static_cast<unsigned>(value.data[i]));
      out += digits;
    }
  }
  out += '\n';
}

void AppendKey(std::string& out, const Key& key, const std::u16string& path) {
  // A key without values is told by those below it, unless there are none.
  if (!path.empty() && (!key.values.empty() || key.subkeys.empty())) {
    out += "\n[" + ToUtf8(path) + "]\n";
    for (const auto& [folded, value] : key.values) AppendValue(out, value);
  }
  for (const auto& [folded, subkey] : key.subkeys) {
    AppendKey(out, *subkey, path.empty() ? subkey->name : path + u'\\' + subkey->name);
  }
}

}  // namespace

std::u16string_view NextName(std::u16string_view& path) {
  while (!path.empty() && path.front() == u'\\') path.remove_prefix(1);
  const std::size_t end = path.find(u'\\');
  const std::u16string_view name = path.substr(0, end);
  path.remove_prefix(end == std::u16string_view::npos ? path.size() : end + 1);
  return name;
}

Key* Key::Find(std::u16string_view path) {
  Key* key = this;
  while (key) {
    const std::u16string_view next = NextName(path);
    if (next.empty()) return key;
    const auto found = key->subkeys.find(Folded(next));
    key = found == key->subkeys.end() ? nullptr : found->second.get();
  }
  return nullptr;
}

Key& Key::FindOrCreate(std::u16string_view path, bool& created) {
  Key* key = this;
  created = false;
  for (std::u16string_view next = NextName(path); !next.empty(); next = NextName(path)) {
    std::unique_ptr<Key>& subkey = key->subkeys[Folded(next)];
    created = !subkey;
    if (!subkey) {
      subkey = std::make_unique<Key>();
      subkey->name = next;
    }
    key = subkey.get();
  }
  return *key;
}

bool Key::Remove(std::u16string_view path) {
  Key* parent = this;
  std::u16string_view last = NextName(path);
  for (std::u16string_view next = NextName(path); !next.empty(); next = NextName(path)) {
    parent = parent->Find(last);
    if (!parent) return false;
    last = next;
  }
  return parent->subkeys.erase(Folded(last)) > 0;
}

std::unique_ptr<Key> ParseHive(const std::string& file, std::string_view text) {
  return Parser(file, text).Parse();
}

std::string FormatHive(const Key& root) {
  std::string out = std::string(kHeading) + "\n";
  AppendKey(out, root, {});
  return out;
}

}  // namespace sabcom
