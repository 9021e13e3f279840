// Saving while the system fails: whatever goes wrong, the file holds the old state or the new one.
// The parsers are those linked into the tests, so that their calls of the system can be reached.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <random>

#include "config/failing_calls.h"
#include "server/created_object.h"
#include "settings/display_cfg_parser.h"
#include "settings/file_path_cfg_parser.h"
#include "settings/settings_test.h"
#include "settings/sys_parameter_cfg_parser.h"
#include "support/allocation_faults.h"

namespace sab::testing {
namespace {

constexpr char kBefore[] = "<S>\n  <G>\n    <PtMode>4</PtMode>\n  </G>\n</S>\n";

template <class Class>
ComPtr<typename Class::Interface> Linked() {
  ComPtr<typename Class::Interface> object;
  EXPECT_EQ(S_OK,
            CreateObject<Class>(nullptr, IdOf<typename Class::Interface>(), object.PutVoid()));
  return object;
}

// The calls of the system that a save makes are counted, and one of them fails.
int calls_made = 0;
int failing_call = -1;
FileCalls real_calls;

bool Strikes(int error) {
  if (calls_made++ != failing_call) return false;
  errno = error;
  return true;
}

void MakeFaulty(FileCalls& calls) {
  real_calls = calls;
  calls.write = [](int file, const void* bytes, std::size_t size) -> ssize_t {
    // Half of the bytes are written before the disk is full.
    return Strikes(ENOSPC) ? -1 : real_calls.write(file, bytes, size > 1 ? size / 2 : size);
  };
  calls.fchmod = [](int file, mode_t mode) {
    return Strikes(EPERM) ? -1 : real_calls.fchmod(file, mode);
  };
  calls.fsync = [](int file) { return Strikes(EIO) ? -1 : real_calls.fsync(file); };
  calls.close = [](int file) {
    const int result = real_calls.close(file);
    return Strikes(EIO) ? -1 : result;
  };
  calls.rename = [](const char* from, const char* to) {
    return Strikes(EROFS) ? -1 : real_calls.rename(from, to);
  };
}

class SaveFaultsTest : public ::testing::Test {
 protected:
  template <class Parser>
  HRESULT Save(Parser& parser) {
    return parser->Save(name_.Get(), node_.Get());
  }

  TemporaryFolder folder_;
  Bstr name_{folder_.Name("t.xml")};
  Bstr node_{OLESTR("/S/G")};
};

TEST_F(SaveFaultsTest, EveryCallOfTheSystemMayFail) {
  const auto parser = Linked<CVeFilePathCfgParser>();
  EXPECT_EQ(S_OK, parser->put_DCBrowseHistory(Bstr(OLESTR("new")).Get()));
  int failures = 0;
  int late_failures = 0;
  for (failing_call = 0;; ++failing_call) {
    SCOPED_TRACE(failing_call);
    folder_.Write("t.xml", kBefore);
    folder_.Write("BrowseHistory.xml", "<old/>");
    calls_made = 0;
    HRESULT result = S_OK;
    {
      const FailingCalls faulty(&MakeFaulty);
      result = Save(parser);
    }
    EXPECT_EQ(2U, folder_.Entries().size());
    if (calls_made <= failing_call) {
      EXPECT_EQ(S_OK, result);
      break;
    }
    const bool is_saved = folder_.Read("t.xml") != kBefore;
    const bool is_history_saved = folder_.Read("BrowseHistory.xml") != "<old/>";
    if (is_saved) {
      EXPECT_NE(std::string::npos, ElementsOf(folder_.Name("t.xml"), "/S/G").find("FileSavePath="));
    }
    if (SUCCEEDED(result)) {
      // Only what comes after the renaming: that the new name lasts through a power failure.
      EXPECT_TRUE(is_saved && is_history_saved);
      ++late_failures;
    } else {
      EXPECT_FALSE(is_history_saved);
      const std::string description = TakeErrorDescription();
      EXPECT_NE(std::string::npos, description.find(is_saved ? "BrowseHistory.xml" : "t.xml"))
          << description;
      ++failures;
    }
  }
  EXPECT_GT(failures, 20);
  EXPECT_EQ(2, late_failures);
}

// A save leaves the file as it was; a load leaves what is not read yet, and nothing half read.
TEST_F(SaveFaultsTest, EveryAllocationMayFail) {
  const auto display = Linked<CVeDisplayCfgParser>();
  const auto system = Linked<CVeSysParameterCfgParser>();
  EXPECT_EQ(S_OK, system->InsertMatchRule(Bstr(OLESTR("k")).Get(), Bstr(OLESTR("v")).Get()));
  const auto count_failures = [&](const std::function<HRESULT()>& call) {
    for (long allocations = 0;; ++allocations) {
      const std::string before = folder_.Read("t.xml");
      HRESULT result = S_OK;
      {
        const AllocationFaults failing(allocations);
        result = call();
      }
      if (result == S_OK) return allocations;
      EXPECT_EQ(E_OUTOFMEMORY, result) << allocations;
      EXPECT_EQ(before, folder_.Read("t.xml")) << allocations;
      EXPECT_EQ(1U, folder_.Entries().size()) << allocations;
      INT keys = 0;
      EXPECT_EQ(S_OK, system->get_MatchKeyCount(&keys));
      EXPECT_EQ(1, keys) << allocations;
      if (HasFailure()) return allocations;
    }
  };
  folder_.Write("t.xml", kBefore);
  EXPECT_GT(count_failures([&] { return Save(display); }), 50);
  folder_.Write("t.xml", kBefore);
  EXPECT_GT(count_failures([&] { return Save(system); }), 50);
  EXPECT_GT(count_failures([&] { return system->Load(name_.Get(), node_.Get()); }), 10);
}

// Saves for ever; each save puts the same number into two keys that lie far apart.
[[noreturn]] void SaveUntilKilled(BSTR file, BSTR node) {
  const auto parser = Linked<CVeDisplayCfgParser>();
  for (ULONG number = 1;; ++number) {
    parser->put_ObscuredColor(number);
    parser->put_LayoutBkColor(number);
    if (FAILED(parser->Save(file, node))) _exit(1);
  }
}

TEST_F(SaveFaultsTest, AWriterKilledAtAnyMomentLeavesAWholeFile) {
  std::mt19937 random(7);
  std::size_t saves = 0;
  for (int round = 0; round < 200 || saves <= 100; ++round) {
    ASSERT_LT(round, 5000);
    folder_.Write("t.xml", "<S><G/></S>");
    const pid_t writer = fork();
    ASSERT_GE(writer, 0);
    if (writer == 0) SaveUntilKilled(name_.Get(), node_.Get());
    usleep(static_cast<useconds_t>(random() % 6000));
    kill(writer, SIGKILL);
    int status = 0;
    ASSERT_EQ(writer, waitpid(writer, &status, 0));
    ASSERT_TRUE(WIFSIGNALED(status)) << "a save failed";

    ConfigDocument document;
    ASSERT_TRUE(document.Load(name_.View())) << document.Failure().Describe();
    std::string first;
    std::string second;
    std::size_t keys = 0;
    Text text;
    for (const ConfigElement key : document.Select("/S/G").Children()) {
      if (key.Is("ObscuredColor")) first += ToUtf8(key.ReadText(text)) + ' ';
      if (key.Is("LayoutBkColor")) second += ToUtf8(key.ReadText(text)) + ' ';
      ++keys;
    }
    ASSERT_EQ(first, second);
    ASSERT_EQ(0U, keys % DisplayCfgFields::Rows().size());
    saves += keys / DisplayCfgFields::Rows().size();
  }
}

}  // namespace
}  // namespace sab::testing
