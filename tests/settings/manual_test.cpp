// The pages about files say what the tables say by which files are read.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "formats/documents.h"
#include "formats/manual.h"
#include "settings/settings_manual.h"

namespace sab::testing {
namespace {

const std::filesystem::path kPages = SAB_PAGES;

std::string Read(const std::filesystem::path& page) {
  std::ifstream file(page, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void ExpectPage(const char* name, const std::string& printed) {
  if (Read(kPages / name) == printed) return;
  const std::filesystem::path beside = std::filesystem::temp_directory_path() / name;
  std::ofstream(beside, std::ios::binary) << printed;
  ADD_FAILURE() << kPages / name << " is not what the tables say; replace it by " << beside;
}

TEST(ManualTest, ThePageOfSettingsIsPrintedFromTheTables) {
  ExpectPage("settings.md", SettingsManual());
}

TEST(ManualTest, TheTablesOfElementsArePrintedFromTheFormats) {
  std::string page = Read(kPages / "file-formats.md");
  for (const formats::Document* document : formats::Documents()) {
    const std::string begin = "<!-- elements: " + std::string(document->about) + " -->\n";
    const std::size_t start = page.find(begin);
    ASSERT_NE(page.npos, start) << begin;
    const std::size_t end = page.find("<!-- end -->", start);
    page.replace(start, end - start, begin + "\n" + formats::TablesOf(*document) + "\n");
  }
  ExpectPage("file-formats.md", page);
}

}  // namespace
}  // namespace sab::testing
