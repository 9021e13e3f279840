// The registry as a file.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sabxml/com.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <span>

#include "server/created_object.h"
#include "server/registry_text.h"
#include "support/scratch_registry.h"

namespace sab::testing {
namespace {

class HiveTest : public ::testing::Test {
 protected:
  // A text with its zero, unless a size in bytes is given.
  static LSTATUS Write(const Text& key, const OLECHAR* name, const Text& text, DWORD size = 0) {
    HKEY opened = nullptr;
    LSTATUS status = RegCreateKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, nullptr, 0, KEY_WRITE,
                                     nullptr, &opened, nullptr);
    if (status != ERROR_SUCCESS) return status;
    if (size == 0) size = static_cast<DWORD>((text.size() + 1) * sizeof(OLECHAR));
    status =
        RegSetValueExW(opened, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), size);
    const LSTATUS closed = RegCloseKey(opened);
    return status != ERROR_SUCCESS ? status : closed;
  }
  static LSTATUS Write(const std::string& key, const OLECHAR* name, const Text& text) {
    return Write(FromUtf8(key), name, text);
  }

  ScratchRegistry registry_;
  TemporaryFolder& folder_ = registry_.folder;
};

TEST_F(HiveTest, WhatIsWrittenIsReadWhateverTheCase) {
  EXPECT_EQ(ERROR_SUCCESS, Write("Some\\Key", nullptr, OLESTR("default")));
  EXPECT_EQ(ERROR_SUCCESS, Write("some\\KEY", OLESTR("Path"), OLESTR("C:\\a \"b\" 制图")));
  EXPECT_EQ("default", RegistryText("SOME\\key"));
  EXPECT_EQ("C:\\a \"b\" 制图", RegistryText("Some\\Key", "pATH"));
  const std::string file = folder_.Read("registry.reg");
  EXPECT_NE(std::string::npos, file.find("[HKEY_CLASSES_ROOT\\Some\\Key]\n@=\"default\"\n"
                                         "\"Path\"=\"C:\\\\a \\\"b\\\" 制图\"\n"))
      << file;
  HKEY key = nullptr;
  ASSERT_EQ(ERROR_SUCCESS, RegOpenKeyExW(HKEY_CLASSES_ROOT, OLESTR("Some"), 0, KEY_READ, &key));
  EXPECT_EQ(ERROR_ACCESS_DENIED, RegDeleteKeyW(HKEY_CLASSES_ROOT, OLESTR("Some")));
  EXPECT_EQ(ERROR_SUCCESS, RegDeleteTreeW(HKEY_CLASSES_ROOT, OLESTR("Some")));
  DWORD size = 0;
  EXPECT_EQ(ERROR_FILE_NOT_FOUND, RegQueryValueExW(key, nullptr, nullptr, nullptr, nullptr, &size));
  EXPECT_EQ(ERROR_SUCCESS, RegCloseKey(key));
  EXPECT_EQ("(none)", RegistryText("Some"));
}

TEST_F(HiveTest, ADamagedFileIsNamedAndKept) {
  const std::string head = "Windows Registry Editor Version 5.00\n";
  std::string deep = "[K";
  for (int level = 0; level < 200'000; ++level) deep += "\\K";
  const struct {
    std::string text;
    const char* message;
  } rows[] = {
      {"REGEDIT4\n", ":1: "},
      {head + "\n\"a\"=\"b\"\n", ":3: a value comes"},
      {head + "[K\n", ":2: a key's line"},
      {head + "[K]\n\"a\"=\"b\n", ":3: the closing quote"},
      {head + "[K]\n\"a\"=dword:xyz\n", ":3: dword"},
      {head + "[K]\n\"a\"=dword:1z\n", ":3: dword"},
      {head + "[K]\n\"a\"=hex:1\n", ":3: bytes"},
      {head + "[K]\n\"a\"=hex:+1\n", ":3: bytes"},
      {head + "[\\]\n@=\"a\"\n", ":2: the name"},
      {head + "[K]\n@=\"\xff\"\n", ":3: the line is"},
      {head + deep + "]\n", ":2: the key is more than 512"},
  };
  for (const auto& row : rows) {
    folder_.Write("registry.reg", row.text);
    EXPECT_EQ(ERROR_BADDB, Write("K", nullptr, OLESTR("x"))) << row.text;
    EXPECT_NE(std::string::npos,
              TakeErrorDescription().find("registry.reg" + std::string(row.message)));
    EXPECT_EQ(row.text, folder_.Read("registry.reg"));
    CLSID clsid;
    EXPECT_TRUE(FAILED(CLSIDFromProgID(OLESTR("Any.Name"), &clsid)));
  }
}

// What could hold a reader up, or lets another user choose the libraries of this process.
TEST_F(HiveTest, AFileThatIsNotToBeTrustedIsRefusedWithTheReason) {
  EXPECT_EQ(ERROR_SUCCESS, Write("K", nullptr, OLESTR("x")));
  std::filesystem::create_directory(folder_.Path("folder"));
  ASSERT_EQ(0, mkfifo(folder_.Path("pipe").c_str(), 0600));
  for (const char* const name : {"shared", "foreign"}) {
    std::filesystem::copy(folder_.Path("registry.reg"), folder_.Path(name));
  }
  ASSERT_EQ(0, chmod(folder_.Path("shared").c_str(), 0666));
  constexpr uid_t kAnother = 12345;
  const bool may_give_away = chown(folder_.Path("foreign").c_str(), kAnother, kAnother) == 0;
  const struct {
    const char* name;
    const char* message;
  } rows[] = {{"folder", "it is a directory"},
              {"pipe", "it is not a regular file"},
              {"shared", "every user may write it"},
              {"foreign", "it belongs to another user (number 12345)"}};
  for (const auto& row : std::span(rows, may_give_away ? 4 : 3)) {
    registry_.Use(row.name);
    EXPECT_EQ(ERROR_BADDB, Write("K", nullptr, OLESTR("y"))) << row.name;
    const std::string description = TakeErrorDescription();
    EXPECT_NE(std::string::npos, description.find(row.message)) << description;
    EXPECT_NE(std::string::npos, description.find(folder_.Path(row.name).string()));
    CLSID clsid;
    EXPECT_EQ(REGDB_E_READREGDB, CLSIDFromProgID(OLESTR("Any.Name"), &clsid)) << row.name;
  }
  SetErrorInfo(0, nullptr);
}

// The file that appears anew is read as by the next process.
TEST_F(HiveTest, EveryNameReadsBackOrIsRefused) {
  std::string deepest = "D";
  for (int level = 2; level <= 512; ++level) deepest += "\\D";
  const struct {
    Text key;
    Text name;
    LSTATUS status;
  } rows[] = {{OLESTR("a]"), OLESTR("]"), ERROR_SUCCESS},
              {OLESTR("[-b"), OLESTR("@=\"\\"), ERROR_SUCCESS},
              {OLESTR(" c "), OLESTR(" "), ERROR_SUCCESS},
              {OLESTR("制图\xD83D\xDE00"), OLESTR("制\xD83D\xDE00"), ERROR_SUCCESS},
              {Text(255, 'k'), Text(16383, 'n'), ERROR_SUCCESS},
              {FromUtf8(deepest), OLESTR("n"), ERROR_SUCCESS},
              {Text(256, 'k'), {}, ERROR_INVALID_PARAMETER},
              {OLESTR("K"), Text(16384, 'n'), ERROR_INVALID_PARAMETER},
              {FromUtf8(deepest + "\\D"), {}, ERROR_INVALID_PARAMETER},
              {OLESTR("x]\n[HKEY_CLASSES_ROOT\\Injected"), {}, ERROR_INVALID_PARAMETER},
              {OLESTR("K"), OLESTR("x\ny"), ERROR_INVALID_PARAMETER},
              {OLESTR("K\r"), {}, ERROR_INVALID_PARAMETER},
              {{0xD800}, {}, ERROR_INVALID_PARAMETER},
              {OLESTR("K"), {0xDC00, 0xD800}, ERROR_INVALID_PARAMETER}};
  const Text text = {'t', '\n', 0xD800, '"', 0};
  const auto* const bytes = reinterpret_cast<const BYTE*>(text.c_str());
  for (const auto& row : rows) {
    EXPECT_EQ(row.status, Write(row.key, row.name.c_str(), text, 9)) << ToUtf8(row.key);
    if (row.status != ERROR_SUCCESS) continue;
    const std::string file = folder_.Read("registry.reg");
    std::filesystem::remove(folder_.Path("registry.reg"));
    EXPECT_EQ("(none)", RegistryText(ToUtf8(row.key), ToUtf8(row.name)));
    folder_.Write("registry.reg", file);
    HKEY key = nullptr;
    BYTE found[16] = {};
    DWORD size = sizeof found;
    ASSERT_EQ(ERROR_SUCCESS, RegOpenKeyExW(HKEY_CLASSES_ROOT, row.key.c_str(), 0, KEY_READ, &key));
    EXPECT_EQ(ERROR_SUCCESS,
              RegQueryValueExW(key, row.name.c_str(), nullptr, nullptr, found, &size));
    RegCloseKey(key);
    EXPECT_EQ(9U, size);
    EXPECT_TRUE(std::equal(found, found + 9, bytes));
  }
  EXPECT_EQ("(none)", RegistryText("Injected"));
}

TEST_F(HiveTest, AWriteKeepsModeAndLinkAndFollowsNoOther) {
  std::filesystem::create_directory(folder_.Path("real"));
  std::filesystem::create_symlink("real/hive", folder_.Path("registry.reg"));
  EXPECT_EQ(ERROR_SUCCESS, Write("K", nullptr, OLESTR("x")));
  ASSERT_EQ(0, chmod(folder_.Path("real/hive").c_str(), 0640));
  folder_.Write("victim", "untouched");
  std::filesystem::create_symlink("../victim", folder_.Path("real/hive.new"));
  HKEY kept_open = nullptr;
  ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_CLASSES_ROOT, OLESTR("Open"), 0, nullptr, 0,
                                           KEY_WRITE, nullptr, &kept_open, nullptr));
  // A key that is open for writing keeps no other process waiting.
  if (fork() == 0) _exit(Write("K", nullptr, OLESTR("y")) == ERROR_SUCCESS ? 0 : 1);
  int status = -1;
  wait(&status);
  EXPECT_EQ(0, status);
  RegCloseKey(kept_open);
  EXPECT_EQ("y", RegistryText("K"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder_.Path("registry.reg")));
  struct stat hive {};
  ASSERT_EQ(0, stat(folder_.Path("real/hive").c_str(), &hive));
  EXPECT_EQ(0640U, hive.st_mode & 07777);
  EXPECT_EQ("untouched", folder_.Read("victim"));
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("real/hive.new")));
}

TEST_F(HiveTest, ProcessesThatWriteAtOnceLoseNothing) {
  constexpr int kProcesses = 4;
  constexpr int kKeys = 25;
  const auto name = [](int process, int key) {
    return 'P' + std::to_string(process) + "\\K" + std::to_string(key);
  };
  for (int process = 0; process < kProcesses; ++process) {
    if (fork() != 0) continue;
    bool wrote_all = true;
    for (int key = 0; key < kKeys; ++key)
      wrote_all &= Write(name(process, key), nullptr, OLESTR("x")) == ERROR_SUCCESS;
    _exit(wrote_all ? 0 : 1);
  }
  for (int process = 0; process < kProcesses; ++process) {
    int status = -1;
    wait(&status);
    EXPECT_EQ(0, status);
  }
  for (int i = 0; i < kProcesses * kKeys; ++i)
    EXPECT_EQ("x", RegistryText(name(i / kKeys, i % kKeys)));
}

TEST_F(HiveTest, CreationFailsByTheReason) {
  const char* const class_key = "CLSID\\{6E0D3B52-4C1F-4B7A-9C0E-52D4A8F1730B}\\InprocServer32";
  const CLSID clsid = {
      0x6E0D3B52, 0x4C1F, 0x4B7A, {0x9C, 0x0E, 0x52, 0xD4, 0xA8, 0xF1, 0x73, 0x0B}};
  void* object = &object;
  const auto create = [&] {
    return CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, &object);
  };
  EXPECT_EQ(REGDB_E_CLASSNOTREG, create());
  EXPECT_EQ(nullptr, object);
  EXPECT_EQ(ERROR_SUCCESS, Write(class_key, nullptr, OLESTR("/no/such/library.so")));
  EXPECT_EQ(CO_E_DLLNOTFOUND, create());
  EXPECT_NE(std::string::npos, TakeErrorDescription().find("/no/such/library.so"));
  Dl_info no_server{};
  ASSERT_NE(0, dladdr(reinterpret_cast<const void*>(&CoCreateInstance), &no_server));
  EXPECT_EQ(ERROR_SUCCESS, Write(class_key, nullptr, FromUtf8(no_server.dli_fname)));
  EXPECT_EQ(CO_E_ERRORINDLL, create());
  EXPECT_EQ(ERROR_SUCCESS, Write(class_key, nullptr, OLESTR("libc.so.6")));
  EXPECT_EQ(CO_E_DLLNOTFOUND, create());
  EXPECT_NE(std::string::npos, TakeErrorDescription().find("the library libc.so.6"));
  // Half a unit is no text.
  EXPECT_EQ(ERROR_SUCCESS, Write(FromUtf8(class_key), nullptr, {}, 1));
  EXPECT_EQ(REGDB_E_CLASSNOTREG, create());
  SetErrorInfo(0, nullptr);
}

}  // namespace
}  // namespace sab::testing
