// The registry as a file.

#include <gtest/gtest.h>
#include <sabxml/com.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "config/temporary_folder.h"
#include "server/created_object.h"
#include "server/registry_text.h"

namespace sab::testing {
namespace {

class HiveTest : public ::testing::Test {
 protected:
  HiveTest() : before_(std::getenv("SABCOM_REGISTRY")) {
    setenv("SABCOM_REGISTRY", folder_.Path("registry.reg").c_str(), 1);
  }
  ~HiveTest() override { setenv("SABCOM_REGISTRY", before_.c_str(), 1); }

  static LSTATUS Write(const std::string& key, const OLECHAR* name, const Text& text) {
    HKEY opened = nullptr;
    LSTATUS status = RegCreateKeyExW(HKEY_CLASSES_ROOT, FromUtf8(key).c_str(), 0, nullptr, 0,
                                     KEY_WRITE, nullptr, &opened, nullptr);
    if (status != ERROR_SUCCESS) return status;
    status = RegSetValueExW(opened, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                            static_cast<DWORD>((text.size() + 1) * sizeof(OLECHAR)));
    const LSTATUS closed = RegCloseKey(opened);
    return status != ERROR_SUCCESS ? status : closed;
  }

  TemporaryFolder folder_;
  std::string before_;
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
  const struct {
    const char* text;
    const char* message;
  } rows[] = {
      {"REGEDIT4\n", "registry.reg:1: "},
      {"Windows Registry Editor Version 5.00\n\n\"a\"=\"b\"\n", "registry.reg:3: a value stands"},
      {"Windows Registry Editor Version 5.00\n[K\n", "registry.reg:2: a key's line"},
      {"Windows Registry Editor Version 5.00\n[K]\n\"a\"=\"b\n",
       "registry.reg:3: the closing quote"},
      {"Windows Registry Editor Version 5.00\n[K]\n\"a\"=dword:xyz\n", "registry.reg:3: dword"},
      {"Windows Registry Editor Version 5.00\n[K]\n\"a\"=dword:1z\n", "registry.reg:3: dword"},
      {"Windows Registry Editor Version 5.00\n[K]\n\"a\"=hex:1\n", "registry.reg:3: bytes"},
  };
  for (const auto& row : rows) {
    folder_.Write("registry.reg", row.text);
    EXPECT_EQ(ERROR_BADDB, Write("K", nullptr, OLESTR("x"))) << row.text;
    EXPECT_NE(std::string::npos, TakeErrorDescription().find(row.message)) << row.message;
    EXPECT_EQ(row.text, folder_.Read("registry.reg"));
    CLSID clsid;
    EXPECT_TRUE(FAILED(CLSIDFromProgID(OLESTR("Any.Name"), &clsid)));
  }
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
  EXPECT_EQ(ERROR_SUCCESS, Write(class_key, nullptr, OLESTR("libc.so.6")));
  EXPECT_EQ(CO_E_ERRORINDLL, create());
  SetErrorInfo(0, nullptr);
}

}  // namespace
}  // namespace sab::testing
