#include "samples.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <string_view>
#include <vector>

namespace sab::bench {
namespace {

// Appends elements, each on a line of its own.
class Writer {
 public:
  explicit Writer(std::size_t bytes) : wanted_(bytes) {
    out_.reserve(bytes + bytes / 8 + 4096);
    out_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  }

  bool HasRoom() const { return out_.size() < wanted_; }
  void Open(std::string_view name) {
    Line().append("<").append(name).append(">\n");
    open_.emplace_back(name);
  }
  void Close() {
    const std::string name = std::move(open_.back());
    open_.pop_back();
    Line().append("</").append(name).append(">\n");
  }
  void Raw(std::string_view markup) { Line().append(markup).append("\n"); }
  void Value(std::string_view name, std::string_view text) {
    Line().append("<").append(name).append(">").append(text);
    out_.append("</").append(name).append(">\n");
  }
  std::string Take() { return std::move(out_); }

 private:
  std::string& Line() { return out_.append(2 * open_.size(), ' '); }

  std::size_t wanted_;
  std::string out_;
  std::vector<std::string> open_;
};

void WritePlain(Writer& out) {
  out.Open("RibbonBar");
  for (int number = 0; out.HasRoom();) {
    out.Open("RibbonTab");
    out.Value("Identify", "TAB_" + std::to_string(number));
    for (int panel = 0; panel < 5; ++panel) {
      out.Open("RibbonPanel");
      out.Value("Identify", "PANEL_" + std::to_string(number));
      out.Value("Text", "标注与符号面板");
      for (int button = 0; button < 8; ++button) {
        const std::string id = std::to_string(++number);
        out.Open("RibbonButton");
        out.Value("Identify", "BUTTON_" + id);
        out.Value("Command", "draw.line." + id);
        out.Value("Text", (number % 5 == 0 ? "直线与圆弧" : "Line &amp; arc ") + id);
        out.Value("LargeImage", "1");
        out.Value("Width", id);
        out.Value("AppMode", "3");
        out.Close();
      }
      out.Close();
    }
    out.Close();
  }
  out.Close();
}

class RichWriter {
 public:
  explicit RichWriter(Writer& out) : out_(out) {}

  void Write() {
    while (out_.HasRoom()) {
      switch (Random(4)) {
        case 0:
          In("RibbonBar", [this] { Tab(); });
          break;
        case 1:
          In("MainMenu", [this] { Menu("Popup", 0); });
          break;
        case 2:
          In("ToolBars", [this] { ToolBar(); });
          break;
        default:
          In("CommandsUI", [this] { Times(8, [this] { Command(); }); });
      }
    }
  }

 private:
  std::size_t Random(std::size_t below) { return engine_() % below; }
  bool OneIn(std::size_t count) { return Random(count) == 0; }
  template <class Body>
  void In(std::string_view name, const Body& body) {
    out_.Open(name);
    body();
    out_.Close();
  }
  template <class Body>
  void Times(std::size_t most, const Body& body) {
    for (std::size_t count = 1 + Random(most); count > 0; --count) body();
  }

  std::string Number(std::size_t below) { return std::to_string(Random(below)); }
  std::string Words() {
    static constexpr std::string_view kChinese[] = {"直线",       "标注", "圆弧与样条曲线",
                                                    "粗糙度符号", "图层", "尺寸驱动"};
    static constexpr std::string_view kLatin[] = {
        "Line", "Arc &amp; circle", "Trim &lt;all&gt;", "Offset by a distance", "Hatch", "Layer"};
    const std::size_t choice = Random(6);
    const std::string text = OneIn(3) ? std::string(kChinese[choice]) : std::string(kLatin[choice]);
    if (OneIn(12)) return "<![CDATA[" + text + "]]>";
    return OneIn(2) ? text : text + ' ' + Number(1000);
  }
  void Identify(std::string_view prefix) {
    out_.Value("Identify", std::string(prefix) + std::to_string(++number_));
  }
  void Command(std::string_view name) {
    out_.Value(name, "sketch." + Number(40) + "." + Number(100000));
  }

  // Values in either order; some are left out.
  void ButtonValues() {
    const bool is_reversed = OneIn(3);
    if (!is_reversed) Identify("button.");
    if (!OneIn(8)) Command("Command");
    if (OneIn(2)) out_.Value("AppMode", Number(8));
    out_.Value("Text", Words());
    if (OneIn(3)) out_.Value("LargeImage", Number(2));
    if (OneIn(4)) out_.Value("IsVisible", Number(2));
    if (OneIn(4)) out_.Value("Width", Number(300));
    if (OneIn(6)) out_.Value("Option", "mode=" + Number(20));
    if (OneIn(10)) out_.Value("Object", "{1B2F4A60-9D33-4C41-8F52-0A6E7D21C9B4}");
    if (is_reversed) Identify("button.");
  }
  void Button(std::string_view name, int depth) {
    if (OneIn(10)) out_.Raw("<!-- 按钮 " + Number(1000) + " -->");
    if (depth > 0 && OneIn(7)) {
      out_.Raw("<Separator/>");
      return;
    }
    In(name, [&] {
      ButtonValues();
      if (depth < 3 && OneIn(4)) Times(4, [&] { Button("RibbonButton", depth + 1); });
    });
  }
  void Tab() {
    In("RibbonTab", [this] {
      Identify("tab.");
      out_.Value("Text", Words());
      if (OneIn(2)) out_.Value("Key", "K" + Number(10));
      Times(4, [this] {
        In("RibbonPanel", [this] {
          out_.Value("Text", Words());
          Identify("panel.");
          if (OneIn(2)) out_.Value("ImageSmall", "images/small_" + Number(50) + ".bmp");
          if (OneIn(3)) Command("LaunchButton");
          Times(6, [this] { Button(OneIn(5) ? "RibbonGroup" : "RibbonButton", 1); });
        });
      });
    });
  }
  void Menu(std::string_view name, int depth) {
    In(name, [&] {
      if (OneIn(2)) Identify("menu.");
      out_.Value("Text", Words());
      if (name == "MenuItem") Command("Command");
      if (OneIn(5)) out_.Value("Option", "mode=" + Number(20));
      if (OneIn(2)) out_.Value("AppMode", Number(8));
      if (name == "Popup") {
        Times(7, [&] {
          if (OneIn(6)) out_.Raw("<Separator/>");
          Menu(depth < 4 && OneIn(4) ? "Popup" : "MenuItem", depth + 1);
        });
      }
    });
  }
  void ToolBar() {
    In("ToolBar", [this] {
      Identify("bar.");
      out_.Value("Text", Words());
      if (OneIn(2)) out_.Value("Dock", "left");
      out_.Value("BmpDef", "images/bar_" + Number(50) + ".bmp");
      Times(10, [this] {
        if (OneIn(6)) out_.Raw("<Separator/>");
        if (OneIn(6)) out_.Value("DropDown", "bar." + Number(100));
        In("Button", [this] {
          Identify("tool.");
          Command("Command");
          if (OneIn(2)) out_.Value("AppMode", Number(8));
        });
      });
    });
  }
  void Command() {
    In("CommandUI", [this] {
      Command("Command");
      In("Prompt", [this] {
        out_.Value("Text", Words());
        out_.Value("ToolTip", Words());
        if (OneIn(2)) out_.Value("Description", Words() + ", " + Words() + ", " + Words());
      });
      if (OneIn(2)) {
        In("Accel", [this] {
          out_.Value("Key", "F" + Number(12));
          out_.Value("Ctrl", Number(2));
        });
      }
      if (OneIn(3)) {
        In("Image", [this] {
          out_.Value("ImageSmall", "images/small_" + Number(900) + ".bmp");
          out_.Value("ImageLarge", "images/large_" + Number(900) + ".bmp");
        });
      }
      if (OneIn(4)) In("Instruction", [this] { out_.Value("Ins", "i" + Number(900)); });
    });
  }

  Writer& out_;
  std::minstd_rand engine_{1};
  int number_ = 0;
};

std::filesystem::path PathOf(const std::string& name) {
  return std::filesystem::temp_directory_path() / ("sab-bench-" + name);
}

}  // namespace

std::string UserInterfaceFile(Kind kind, std::size_t bytes) {
  Writer out(bytes);
  out.Open("UI");
  if (kind == Kind::kPlain) {
    WritePlain(out);
  } else {
    RichWriter(out).Write();
  }
  out.Close();
  return out.Take();
}

std::string UserInterfaceSample(Kind kind, std::size_t bytes) {
  const std::string name =
      std::string(kKindNames[static_cast<int>(kind)]) + '-' + std::to_string(bytes) + ".xml";
  const std::string path = PathOf(name).string();
  if (std::filesystem::exists(path)) return path;
  return WriteSample(name, UserInterfaceFile(kind, bytes));
}

std::string WriteSample(const std::string& name, const std::string& content) {
  const std::filesystem::path path = PathOf(name);
  std::ofstream(path, std::ios::binary) << content;
  return path.string();
}

}  // namespace sab::bench
