#include "sabcom/hive_text.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

#include "sabcom/utf.h"

namespace sabcom {
namespace {

bool IsUtf8(std::string_view text) {
  const auto is_ascii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
  return std::ranges::all_of(text, is_ascii) || ToUtf8(FromUtf8(text)) == text;
}

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
        key = &ReadKey(*root, line);
      } else if (key) {
        ReadValue(line, *key);
      } else {
        Fail("a value comes before the first key");
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
      if (!IsUtf8(part)) Fail("the line is not UTF-8");
      if (part.ends_with('\r')) part.remove_suffix(1);
      while (!line.empty() && !part.empty() && part.front() == ' ') part.remove_prefix(1);
      line += part;
    } while (line.ends_with('\\') && !text_.empty());
    return line;
  }

  Key& ReadKey(Key& root, std::string_view line) {
    if (line.size() < 2 || line.back() != ']') Fail("a key's line must end with ]");
    std::u16string path = FromUtf8(line.substr(1, line.size() - 2));
    const std::size_t names = CountNames(path);
    if (names == 0) Fail("the name of the key is missing");
    if (names > kMaxLevels + 1) {
      Fail("the key is more than " + std::to_string(kMaxLevels) + " levels deep");
    }
    // Keys mostly follow their neighbours, so the search begins with what both paths share.
    const auto shared =
        static_cast<std::size_t>(std::ranges::mismatch(path, last_path_).in1 - path.begin());
    const auto is_shared = [&](std::size_t end) {
      return end <= shared && (end == path.size() || path[end] == u'\\');
    };
    while (!last_keys_.empty() && !is_shared(last_keys_.back().end)) last_keys_.pop_back();
    Key* key = last_keys_.empty() ? &root : last_keys_.back().key;
    std::u16string_view rest = path;
    if (!last_keys_.empty()) rest.remove_prefix(last_keys_.back().end);
    for (std::u16string_view name = NextName(rest); !name.empty(); name = NextName(rest)) {
      bool created = false;
      key = &key->FindOrCreate(name, created);
      last_keys_.push_back(
          {static_cast<std::size_t>(name.data() + name.size() - path.data()), key});
    }
    last_path_ = std::move(path);
    return *key;
  }

  // Digits and nothing else: how many of the line are a number.
  static std::size_t TakeHexadecimal(std::string_view line, unsigned& number) {
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), number, 16);
    return error == std::errc() ? static_cast<std::size_t>(end - line.data()) : 0;
  }

  void ReadValue(std::string_view line, Key& key) {
    Value value;
    if (line.front() == '@') {
      line.remove_prefix(1);
    } else {
      value.name = FromUtf8(TakeQuoted(line));
    }
    if (line.empty() || line.front() != '=') Fail("= is expected after a value's name");
    line.remove_prefix(1);
    if (line.starts_with('"')) {
      value.type = REG_SZ;
      SetText(value, FromUtf8(TakeQuoted(line)));
      if (!line.empty()) Fail("nothing may follow a text");
    } else if (line.starts_with("dword:")) {
      line.remove_prefix(6);
      unsigned number = 0;
      if (line.size() > 8 || line.empty() || TakeHexadecimal(line, number) != line.size()) {
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
    key.SetValue(std::move(value));
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
      const std::size_t used = TakeHexadecimal(rest.substr(1), type);
      if (used == 0 || !rest.substr(1 + used).starts_with(')')) Fail("hex(…) takes a type");
      value.type = type;
      rest.remove_prefix(used + 2);
    }
    if (!rest.starts_with(':')) Fail("a colon is expected after hex");
    rest.remove_prefix(1);
    while (!rest.empty()) {
      unsigned byte = 0;
      if (TakeHexadecimal(rest.substr(0, 2), byte) != 2) {
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

  // A key of the last path, and where its name ends there.
  struct PathKey {
    std::size_t end;
    Key* key;
  };

  const std::string& file_;
  std::string_view text_;
  int line_ = 0;
  std::u16string last_path_;
  std::vector<PathKey> last_keys_;
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
  return IsWritableName(text);
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
  // A key without values is implied by those below it; without any it needs a line of its own.
  if (!path.empty() && (!key.values.empty() || key.subkeys.empty())) {
    out += "\n[" + ToUtf8(path) + "]\n";
    for (const auto& [folded, value] : key.values) AppendValue(out, value);
  }
  for (const auto& [folded, subkey] : key.subkeys) {
    AppendKey(out, *subkey, path.empty() ? subkey->name : path + u'\\' + subkey->name);
  }
}

}  // namespace

std::unique_ptr<Key> ParseHive(const std::string& file, std::string_view text) {
  return Parser(file, text).Parse();
}

std::string FormatHive(const Key& root) {
  std::string out = std::string(kHeading) + "\n";
  AppendKey(out, root, {});
  return out;
}

}  // namespace sabcom
