// Saving while the system fails: whatever goes wrong, the file holds the old state or the new one.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>

#include "server/created_object.h"
#include "settings/settings_groups.h"
#include "settings/settings_test.h"
#include "support/allocation_faults.h"
#include "support/file_faults.h"

namespace sab::testing {
namespace {

constexpr char kBrowseHistory[] = "BrowseHistory.xml";
constexpr char kBefore[] = "<S>\n  <G>\n    <PtMode>4</PtMode>\n  </G>\n</S>\n";

void Count(long number, const char* what) {
  std::cout << "counted: " << number << ' ' << what << '\n';
}

class SaveFaultsTest : public ::testing::Test {
 protected:
  using Parser = ComPtr<IVeCfgParser>;

  // Folders with a history, which is a file of its own.
  Parser CreatedWithHistory() const {
    const LateObject object("VeFilePathCfgParser");
    EXPECT_EQ(S_OK, object.Call("put_DCBrowseHistory", {"new"}));
    return object.As<IVeCfgParser>();
  }
  HRESULT Load(const Parser& parser) const { return parser->Load(name_.Get(), node_.Get()); }
  HRESULT Save(const Parser& parser) const { return parser->Save(name_.Get(), node_.Get()); }
  void WriteOld() const {
    folder_.Write("t.xml", kBefore);
    folder_.Write(kBrowseHistory, "<old/>");
  }
  bool IsSaved() const {
    const bool is_saved = folder_.Read("t.xml") != kBefore;
    if (is_saved) {
      EXPECT_NE(std::string::npos, ElementsOf(folder_.Name("t.xml"), "/S/G").find("FileSavePath="));
    }
    return is_saved;
  }
  bool IsHistorySaved() const {
    const bool is_saved = folder_.Read(kBrowseHistory) != "<old/>";
    if (is_saved) {
      EXPECT_EQ("DCHistory{History=new}",
                ElementsOf(folder_.Name(kBrowseHistory), "/BrowseFileHistorys"));
    }
    return is_saved;
  }

  TemporaryFolder folder_;
  Bstr name_{folder_.Name("t.xml")};
  Bstr node_{OLESTR("/S/G")};
};

TEST_F(SaveFaultsTest, EveryFileCallMayFail) {
  const Parser parser = CreatedWithHistory();
  long failures = 0;
  WriteOld();
  HRESULT result = S_OK;
  const long faults = WithEachFileCallFailing(
      [&] { result = Save(parser); },
      [&] {
        EXPECT_EQ(2U, folder_.Entries().size());
        const bool is_saved = IsSaved();
        EXPECT_EQ(SUCCEEDED(result), IsHistorySaved());
        EXPECT_TRUE(is_saved || FAILED(result));
        if (FAILED(result)) {
          ++failures;
          const std::string told = TakeErrorDescription();
          EXPECT_NE(std::string::npos, told.find(is_saved ? kBrowseHistory : "t.xml")) << told;
        }
        WriteOld();
      });
  EXPECT_GT(failures, 60);
  Count(faults, "faults of file calls while saving");
}

TEST_F(SaveFaultsTest, AWriterKilledAtAnyFileCallLeavesWholeFilesAndTheNextSaveTidiesUp) {
  const Parser parser = CreatedWithHistory();
  std::size_t left_over = 0;
  WriteOld();
  const auto check = [&] {
    const bool is_saved = IsSaved();
    EXPECT_TRUE(!IsHistorySaved() || is_saved);
    left_over += folder_.Entries().size() - 2;
    EXPECT_EQ(S_OK, Save(parser));
    EXPECT_EQ(2U, folder_.Entries().size());
    WriteOld();
  };
  const long kills = KilledAtEachFileCall([&] { Save(parser); }, check);
  EXPECT_GT(kills, 20);
  EXPECT_GT(left_over, 5U);
  Count(kills, "writers killed at a file call");
}

// Each process adds elements of its own; a save that succeeds is never lost.
TEST_F(SaveFaultsTest, ManyWritersAtOnceLoseNothing) {
  constexpr int kWriters = 8;
  const int saves = std::getenv("SAB_TORTURE") ? 1000 : 5;
  folder_.Write("t.xml", "<S><G/></S>");
  for (int writer = 0; writer < kWriters; ++writer) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child != 0) continue;
    const auto parser = LateObject("VeProductCfgParser").As<IVeProductCfgParser>();
    const Bstr key(FromUtf8("W" + std::to_string(writer)));
    int failed = FAILED(parser->put_Value(key.Get(), key.Get()));
    for (int i = 0; i < saves; ++i) failed += FAILED(parser->Save(name_.Get(), node_.Get()));
    _exit(failed);
  }
  for (int writer = 0; writer < kWriters; ++writer) {
    int status = -1;
    ASSERT_GT(wait(&status), 0);
    EXPECT_EQ(0, status);
  }
  ConfigDocument document;
  ASSERT_TRUE(document.Load(name_.View()));
  for (int writer = 0; writer < kWriters; ++writer) {
    EXPECT_EQ(static_cast<std::size_t>(saves),
              document.SelectElements(FromUtf8("/S/G/W" + std::to_string(writer))).size());
  }
  EXPECT_EQ(1U, folder_.Entries().size());
  Count(long{kWriters} * saves, "saves of processes that write one file");
}

// A save leaves the file as it was; a load leaves nothing half read.
TEST_F(SaveFaultsTest, EveryAllocationMayFail) {
  long faults = 0;
  HRESULT result = S_OK;
  const auto check = [&](bool has_failed) {
    EXPECT_EQ(has_failed ? E_OUTOFMEMORY : S_OK, result);
    if (has_failed) {
      EXPECT_EQ(kBefore, folder_.Read("t.xml"));
    }
    EXPECT_EQ(1U, folder_.Entries().size());
    folder_.Write("t.xml", kBefore);
  };
  std::vector<std::string_view> classes(NamedValueClasses().begin(), NamedValueClasses().end());
  for (const SettingsGroup& group : SettingsGroups()) classes.push_back(group.class_name);
  folder_.Write("t.xml", kBefore);
  for (const std::string_view class_name : classes) {
    SCOPED_TRACE(class_name);
    if (class_name == "VeCustomPTParser") continue;  // the same class under another interface
    const Parser parser = LateObject(std::string(class_name)).As<IVeCfgParser>();
    faults += WithEachAllocationFailing([&] { result = Load(parser); }, check);
    if (class_name == "VeFilePathCfgParser" || class_name == "VeAutoUpdateAdminCfgParser") continue;
    faults += WithEachAllocationFailing([&] { result = Save(parser); }, check);
  }
  EXPECT_GT(faults, 500);
  Count(faults, "allocations refused while loading and saving");
}

TEST_F(SaveFaultsTest, SetsOfAPackingAreReplacedAtOnceOrStay) {
  const LateObject object("VeFileBaleCfgParser");
  const Parser parser = object.As<IVeCfgParser>();
  const auto load_old = [&] {
    folder_.Write("t.xml", "<S><G><Old><A/></Old></G></S>");
    EXPECT_EQ(S_OK, Load(parser));
    folder_.Write("t.xml", "<S><G><New><A/></New><New><A/></New></G></S>");
  };
  load_old();
  HRESULT result = S_OK;
  const auto check = [&](bool has_failed) {
    EXPECT_EQ(has_failed ? E_OUTOFMEMORY : S_OK, result);
    EXPECT_EQ(has_failed ? "1" : "2", object.Follow("GetFileBales").Get("Count"));
    load_old();
  };
  WithEachAllocationFailing([&] { result = Load(parser); }, check);
}

}  // namespace
}  // namespace sab::testing
