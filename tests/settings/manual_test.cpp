// The page of the settings' keys says what the key tables say.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "settings/settings_manual.h"

namespace sab::testing {
namespace {

TEST(SettingsManualTest, ThePageIsPrintedFromTheTables) {
  std::ifstream file(SAB_SETTINGS_PAGE, std::ios::binary);
  const std::string page{std::istreambuf_iterator<char>(file), {}};
  const std::string printed = SettingsManual();
  if (page == printed) return;
  const std::filesystem::path beside = std::filesystem::temp_directory_path() / "settings.md";
  std::ofstream(beside, std::ios::binary) << printed;
  ADD_FAILURE() << SAB_SETTINGS_PAGE << " is not what the key tables say; replace it by " << beside;
}

}  // namespace
}  // namespace sab::testing
