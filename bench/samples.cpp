#include "samples.h"

#include <filesystem>
#include <fstream>
#include <map>

namespace sab::bench {

const std::string& UserInterfaceFile(std::size_t bytes) {
  static std::map<std::size_t, std::string> files;
  std::string& file = files[bytes];
  if (!file.empty()) return file;
  file = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<UI>\n  <RibbonBar>\n";
  int number = 0;
  while (file.size() < bytes) {
    file += "    <RibbonTab>\n      <Identify>TAB_" + std::to_string(number) + "</Identify>\n";
    for (int panel = 0; panel < 5; ++panel) {
      file += "      <RibbonPanel>\n        <Identify>PANEL_" + std::to_string(number) +
              "</Identify>\n"
              "        <Text>标注与符号面板</Text>\n";
      for (int button = 0; button < 8; ++button) {
        const std::string id = std::to_string(++number);
        file += "        <RibbonButton>\n          <Identify>BUTTON_" + id +
                "</Identify>\n"
                "          <Command>draw.line." +
                id +
                "</Command>\n"
                "          <Text>" +
                (number % 5 == 0 ? "直线与圆弧" : "Line &amp; arc ") + id +
                "</Text>\n          <LargeImage>1</LargeImage>\n          <Width>" + id +
                "</Width>\n          <AppMode>3</AppMode>\n        </RibbonButton>\n";
      }
      file += "      </RibbonPanel>\n";
    }
    file += "    </RibbonTab>\n";
  }
  return file += "  </RibbonBar>\n</UI>\n";
}

std::string KeyName(int number) { return "DisplayKey" + std::to_string(number); }

const std::string& SettingsFile() {
  static std::string file;
  if (!file.empty()) return file;
  file = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Settings>\n";
  for (const char* block :
       {"System", "Paths", "Display", "Select", "Text", "Other", "More", "Last"}) {
    file += std::string("  <") + block + ">\n";
    for (int key = 0; key < kKeys + 12; ++key) {
      file +=
          "    <" + KeyName(key) + ">" + std::to_string(key * 4711) + "</" + KeyName(key) + ">\n";
    }
    file += std::string("  </") + block + ">\n";
  }
  return file += "</Settings>\n";
}

std::string WriteSample(const std::string& name, const std::string& content) {
  const std::filesystem::path path = std::filesystem::temp_directory_path() / ("sab-bench-" + name);
  std::ofstream(path, std::ios::binary) << content;
  return path.string();
}

}  // namespace sab::bench
