#include "server/registrar.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "config/temporary_folder.h"

namespace sab {
namespace {

// Writes down what the registrar asks for.
class Registry final : public RegistryTarget {
 public:
  void CreateKey(const RegistryPath& path) override { Note("create " + path.key); }
  void SetValue(const RegistryPath& path, const std::string& name, DWORD type,
                const std::vector<BYTE>& data) override {
    Note("set " + path.key + "@" + name + " " + std::to_string(type) + ":" + TextOf(type, data));
  }
  void DeleteValue(const RegistryPath& path, const std::string& name, DWORD,
                   const std::vector<BYTE>&) override {
    Note("unset " + path.key + "@" + name);
  }
  Text DefaultText(const RegistryPath&) override { return {}; }
  void DeleteTree(const RegistryPath& path) override { Note("remove " + path.key); }
  void DeleteKeyIfEmpty(const RegistryPath& path) override { Note("remove if empty " + path.key); }

  std::string log;

 private:
  static std::string TextOf(DWORD type, const std::vector<BYTE>& data) {
    std::string text;
    if (type == REG_SZ || type == REG_MULTI_SZ) {
      Text wide(data.size() / sizeof(OLECHAR), 0);
      std::copy(data.begin(), data.end(), reinterpret_cast<BYTE*>(wide.data()));
      for (const OLECHAR c : wide) text += c == 0 ? std::string("|") : ToUtf8(TextView(&c, 1));
    } else {
      for (const BYTE byte : data) text += std::to_string(byte) + " ";
    }
    return text;
  }
  void Note(const std::string& what) { log += what + "\n"; }
};

const Replacements kReplacements = {{"NAME", "Lathe"}, {"PERCENT", "100%"}};

std::string LogOf(decltype(RunRegistrarScript) run, std::string_view script) {
  Registry registry;
  run({"t.rgs", script}, kReplacements, registry);
  return registry.log;
}

TEST(Registrar, WritesAndTakesBackWhatTheScriptSays) {
  const struct {
    const char* name;
    const char* script;
    const char* written;
    const char* undone;
  } rows[] = {
      {"a key", "HKCR { A }", "create A\n", "remove if empty A\n"},
      {"a default value", "hkey_classes_root{A=s'x'}", "create A\nset A@ 1:x|\n",
       "unset A@\nremove if empty A\n"},
      {"nested keys", "HKLM { A { 'B c' = s 'it''s' } }",
       "create A\ncreate A\\B c\nset A\\B c@ 1:it's|\n",
       "unset A\\B c@\nremove if empty A\\B c\nremove if empty A\n"},
      {"every type",
       "HKCU { A { val s = s '' val d = d '258' val h = d '&h10' val b = b '0aFF' val m = m "
       "'a\\0b' } }",
       "create A\nset A@s 1:|\nset A@d 4:2 1 0 0 \nset A@h 4:16 0 0 0 \nset A@b 3:10 255 \nset A@m "
       "7:a|b||\n",
       "unset A@s\nunset A@d\nunset A@h\nunset A@b\nunset A@m\nremove if empty A\n"},
      {"NoRemove", "HKCR { NoRemove A { B } }", "create A\ncreate A\\B\n",
       "remove if empty A\\B\n"},
      {"ForceRemove", "HKCR { ForceRemove A = s 'x' { B } }",
       "remove A\ncreate A\nset A@ 1:x|\ncreate A\\B\n",
       "unset A@\nremove if empty A\\B\nremove A\n"},
      {"Delete", "HKCR { Delete A = s 'x' }", "remove A\n", "remove A\n"},
      {"replacements", "HKCR { '%NAME%' = s '%NAME% %% %PERCENT%' }",
       "create Lathe\nset Lathe@ 1:Lathe % 100%|\n", "unset Lathe@\nremove if empty Lathe\n"},
      {"two roots", "HKCR { A } HKLM { B }", "create A\ncreate B\n",
       "remove if empty A\nremove if empty B\n"},
      {"Chinese", "HKCR { A = s '制图' }", "create A\nset A@ 1:制图|\n",
       "unset A@\nremove if empty A\n"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.written, LogOf(RunRegistrarScript, row.script)) << row.name;
    EXPECT_EQ(row.undone, LogOf(UndoRegistrarScript, row.script)) << row.name;
  }
}

TEST(Registrar, RefusesWithThePlaceAndTheReason) {
  const struct {
    const char* script;
    const char* message;
  } rows[] = {
      {"HKXX { A }", "t.rgs:1:1: a root key is expected"},
      {"HKCR A", "t.rgs:1:6: { is expected"},
      {"HKCR { A", "t.rgs:1:9: } is missing"},
      {"HKCR\n{\n  A = s 'open\n}", "t.rgs:3:9: the quote is not closed"},
      {"HKCR { A = x '1' }", "t.rgs:1:12: the type of a value is expected"},
      {"HKCR { A = s }", "t.rgs:1:14: a value is expected"},
      {"HKCR { A = d 'ten' }", "t.rgs:1:14: a number"},
      {"HKCR { A = d '4294967296' }", "t.rgs:1:14: a number"},
      {"HKCR { A = b '0' }", "t.rgs:1:14: bytes"},
      {"HKCR { A = b 'zz' }", "t.rgs:1:14: bytes"},
      {"HKCR { val = s 'x' }", "t.rgs:1:12: the name of a value is expected"},
      {"HKCR { A { val x s 'y' } }", "t.rgs:1:18: = is expected"},
      {"HKCR { '%NOPE%' }", "t.rgs:1:8: the replacement %NOPE% is not known"},
      {"HKCR { 'half%' }", "t.rgs:1:8: a % without its partner"},
      {"HKCR { 'A\\B' }", "t.rgs:1:8: the name of a key has no backslash"},
      {"HKCR { Delete A { B } }", "t.rgs:1:17: a key that is deleted has no content"},
      {"HKCR { '中' = q }", "t.rgs:1:14: the type of a value is expected"},
  };
  for (const auto& row : rows) {
    std::string message;
    EXPECT_EQ(E_FAIL, ResultOf([&] { LogOf(RunRegistrarScript, row.script); }, &message))
        << row.script;
    EXPECT_EQ(0U, message.find(row.message)) << message;
  }
}

}  // namespace
}  // namespace sab
