#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "fingerprint.h"
#include "text/utf.h"

// What one would write without the server: a user interface as plain structs with all its
// properties, filled over another DOM. Each struct names its members once, for reading and for
// walking; a visitor returns true when the element that is being read was meant.

namespace sab::bench::plain {

struct Button {
  std::u16string identify, command, text, object, menu, option;
  bool is_large = false, is_visible = true, is_group = false, is_separator = false;
  int width = 0, app_mode = -1;
  std::vector<Button> buttons;

  bool Visit(auto& v) {
    return v("Identify", identify) || v("Command", command) || v("Text", text) ||
           v.Flag("LargeImage", is_large, "1") || v.FlagUnless("IsVisible", is_visible, "0") ||
           v("Object", object) || v("Menu", menu) || v("Width", width) || v("Option", option) ||
           v("AppMode", app_mode) || v("RibbonButton", buttons) ||
           v.Marked("Separator", buttons, &Button::is_separator) || v.Value(is_group) ||
           v.Value(is_separator);
  }
};

struct Panel {
  std::u16string identify, text, image_small, image_large, resource_path, launch_button;
  int app_mode = -1;
  std::vector<Button> buttons;

  bool Visit(auto& v) {
    return v("Identify", identify) || v("Text", text) || v("ImageSmall", image_small) ||
           v("ImageLarge", image_large) || v("ResourcePath", resource_path) ||
           v("AppMode", app_mode) || v("LaunchButton", launch_button) ||
           v.Marked("RibbonGroup", buttons, &Button::is_group) || v("RibbonButton", buttons) ||
           v.Marked("Separator", buttons, &Button::is_separator);
  }
};

struct HiddenButtons {
  std::u16string image_small, image_large;
  std::vector<Button> buttons;

  bool Visit(auto& v) {
    return v("ImageSmall", image_small) || v("ImageLarge", image_large) ||
           v("RibbonButton", buttons);
  }
};

struct Tab {
  std::u16string identify, text, key;
  int app_mode = -1;
  std::vector<Panel> panels;
  HiddenButtons hidden;

  bool Visit(auto& v) {
    return v("Identify", identify) || v("Text", text) || v("Key", key) || v("AppMode", app_mode) ||
           v("RibbonPanel", panels) || v.Part("HiddenButtons", hidden);
  }
};

struct MenuItem {
  std::u16string identify, text, command, option, object;
  bool is_separator = false, is_popup = false;
  int app_mode = -1;
  std::vector<MenuItem> items;

  bool Visit(auto& v) {
    return v("Identify", identify) || v("Text", text) || v("Command", command) ||
           v("Option", option) || v("Object", object) || v("AppMode", app_mode) ||
           v.Marked("Popup", items, &MenuItem::is_popup) || v("MenuItem", items) ||
           v.Marked("Separator", items, &MenuItem::is_separator) || v.Value(is_separator) ||
           v.Value(is_popup);
  }
};

struct ToolBarButton {
  std::u16string identify, command, object, sub_tool_bar;
  bool is_separator = false, is_drop_down = false;
  int app_mode = -1;

  bool Visit(auto& v) {
    return v("Identify", identify) || v("Command", command) || v("Object", object) ||
           v("AppMode", app_mode) || v.Value(is_separator) || v.Value(is_drop_down) ||
           v.Value(sub_tool_bar);
  }
};

struct ToolBar {
  std::u16string identify, text, left_of, dock, image, image_large, resource_path;
  int app_mode = -1;
  std::vector<ToolBarButton> buttons;

  bool Visit(auto& v) {
    return v("Identify", identify) || v("Text", text) || v("LeftOf", left_of) || v("Dock", dock) ||
           v("BmpDef", image) || v("BmpLarge", image_large) || v("ResourcePath", resource_path) ||
           v("Button", buttons) || v.Marked("Separator", buttons, &ToolBarButton::is_separator) ||
           v.Marked("DropDown", buttons, &ToolBarButton::is_drop_down,
                    &ToolBarButton::sub_tool_bar) ||
           v.Value(app_mode);
  }
};

struct CustomWindow {
  std::u16string identify, text, left_of, dock, object, icon, resource_path, size;
  int app_mode = -1;

  bool Visit(auto& v) {
    return v("Identify", identify) || v("Text", text) || v("LeftOf", left_of) || v("Dock", dock) ||
           v("Object", object) || v("ICON", icon) || v("ResourcePath", resource_path) ||
           v("Size", size) || v("AppMode", app_mode);
  }
};

struct Accel {
  std::u16string command, key, ctrl, ribbon_key;

  bool Visit(auto& v) {
    return v("Command", command) || v("Key", key) || v("Ctrl", ctrl) || v("RibbonKey", ribbon_key);
  }
};

struct AccelGroup {
  std::u16string identify;
  std::vector<Accel> accels;

  bool Visit(auto& v) { return v("Identify", identify) || v("Accel", accels); }
};

struct Prompt {
  std::u16string command, text, tool_tip, description, tool_tip_image;

  bool Visit(auto& v) {
    return v("Command", command) || v("Text", text) || v("ToolTip", tool_tip) ||
           v("Description", description) || v("ToolTipImage", tool_tip_image);
  }
};

struct Instruction {
  std::u16string command, instruction, parameter;

  bool Visit(auto& v) {
    return v.Value(command) || v("Ins", instruction) || v("CommandPara", parameter);
  }
};

struct CommandImage {
  std::u16string command, small, large, type, resource_path, dark_small, dark_large;

  bool Visit(auto& v) {
    return v.Value(command) || v("ImageSmall", small) || v("ImageLarge", large) ||
           v("ImageType", type) || v("ResourcePath", resource_path) ||
           v("ImageDarkSmall", dark_small) || v("ImageDarkLarge", dark_large);
  }
};

struct CommandSearch {
  bool is_enabled = false;
  std::u16string text, key, tool_tip, description, suppresses, max_results, hidden;
  int width = -1, app_mode = -1;

  bool Visit(auto& v) {
    return v.Flag("Enable", is_enabled, "1") || v("Text", text) || v("Key", key) ||
           v("ToolTip", tool_tip) || v("Description", description) || v("Width", width) ||
           v("SuppressDisabledCommands", suppresses) || v("MaxResults", max_results) ||
           v("SearchInHiddenCategories", hidden) || v("AppMode", app_mode);
  }
};

struct MainButton {
  std::u16string icon, command, small, large, recent, option, exit, resource_path, scenic;

  bool Visit(auto& v) {
    return v("Icon", icon) || v("Command", command) || v("ImageSmall", small) ||
           v("ImageLarge", large) || v("RecentDocDescription", recent) ||
           v("OptionCommand", option) || v("ExitCommand", exit) ||
           v("ResourcePath", resource_path) || v("ScenicText", scenic);
  }
};

struct MainMenu {
  std::u16string text;
  std::vector<MenuItem> items;

  bool Visit(auto& v) {
    return v("Text", text) || v.Marked("Popup", items, &MenuItem::is_popup) ||
           v("MenuItem", items) || v.Marked("Separator", items, &MenuItem::is_separator);
  }
};

struct StatusBar {
  std::u16string image;
  std::vector<Button> buttons;

  bool Visit(auto& v) { return v("Image", image) || v("RibbonButton", buttons); }
};

/// A group of elements that is no object of its own.
template <class Function>
struct Group {
  Function function;
  bool Visit(auto& v) { return function(v); }
};

struct UserInterface {
  MainMenu main_menu;
  MainButton main_button;
  std::vector<Button> quick_buttons, caption_buttons;
  std::vector<Tab> tabs, context_tabs;
  std::vector<Panel> context_panels;
  std::vector<MenuItem> context_menus;
  std::vector<ToolBar> tool_bars;
  StatusBar status_bar;
  std::vector<CustomWindow> windows;
  std::vector<Accel> accels;
  std::vector<AccelGroup> accel_groups;
  std::vector<Prompt> prompts;
  std::vector<Instruction> instructions;
  std::vector<CommandImage> images;
  CommandSearch search;
  bool has_input_menu = false, has_minimize_button = false;

  bool Visit(auto& v) {
    const auto group = [&v](std::string_view name, auto function) {
      Group<decltype(function)> content{function};
      return v.Part(name, content);
    };
    return v.Part("MainMenu", main_menu) || v.Part("MainButton", main_button) ||
           group("QuickAccessTool", [&](auto& w) { return w("QATButton", quick_buttons); }) ||
           group("RibbonBar", [&](auto& w) { return w("RibbonTab", tabs); }) ||
           group("ContextMenu",
                 [&](auto& w) {
                   return w.Marked("Popup", context_menus, &MenuItem::is_popup) ||
                          w.Value(context_menus);
                 }) ||
           group("ContextRibbonElement",
                 [&](auto& w) {
                   return w("RibbonTab", context_tabs) || w("RibbonPanel", context_panels);
                 }) ||
           group("ToolBars", [&](auto& w) { return w("ToolBar", tool_bars); }) ||
           v.Part("StatusBar", status_bar) ||
           group("CustomWnds", [&](auto& w) { return w("CustomWnd", windows); }) ||
           group("CommandsUI",
                 [&](auto& w) {
                   std::u16string carried;
                   Group command{[&](auto& x) {
                     return x.Carried("Command", carried) || x("Accel", accels, carried) ||
                            x("Prompt", prompts, carried) ||
                            x("Instruction", instructions, carried) || x("Image", images, carried);
                   }};
                   return w.Part("CommandUI", command);
                 }) ||
           group("ToolAccels", [&](auto& w) { return w("AccelGroup", accel_groups); }) ||
           group("IMenu", [&](auto& w) { return w.Flag("Has", has_input_menu, "1"); }) ||
           v.Part("CommandSearch", search) ||
           group("RibbonMinimizeButton",
                 [&](auto& w) { return w.Flag("Enable", has_minimize_button, "1"); }) ||
           group("CaptionCustomButtons",
                 [&](auto& w) { return w("RibbonButton", caption_buttons); });
  }
};

/// Reads an element into an object. Node has Children(visit), Name() and Text().
template <class Node>
class Reader {
 public:
  template <class Object>
  static void Read(const Node& element, Object& object) {
    element.Children([&object](const Node& child) {
      Reader reader(child);
      object.Visit(reader);
    });
  }

  bool operator()(std::string_view name, std::u16string& text) const {
    if (name != name_) return false;
    text = text::FromUtf8<char16_t>(node_.Text());
    return true;
  }
  bool operator()(std::string_view name, int& number) const {
    if (name != name_) return false;
    number = std::atoi(std::string(node_.Text()).c_str());
    return true;
  }
  template <class Item>
  bool operator()(std::string_view name, std::vector<Item>& list) const {
    if (name != name_) return false;
    Read(node_, list.emplace_back());
    return true;
  }
  template <class Item>
  bool operator()(std::string_view name, std::vector<Item>& list,
                  const std::u16string& command) const {
    if (name != name_) return false;
    list.emplace_back().command = command;
    Read(node_, list.back());
    return true;
  }
  bool Flag(std::string_view name, bool& flag, std::string_view raises) const {
    if (name != name_) return false;
    if (node_.Text() == raises) flag = true;
    return true;
  }
  bool FlagUnless(std::string_view name, bool& flag, std::string_view lowers) const {
    if (name != name_) return false;
    if (node_.Text() == lowers) flag = false;
    return true;
  }
  template <class Item>
  bool Marked(std::string_view name, std::vector<Item>& list, bool Item::*mark,
              std::u16string Item::*text = nullptr) const {
    if (name != name_) return false;
    list.emplace_back().*mark = true;
    if (text) {
      list.back().*text = text::FromUtf8<char16_t>(node_.Text());
    } else {
      Read(node_, list.back());
    }
    return true;
  }
  template <class Object>
  bool Part(std::string_view name, Object& object) const {
    if (name != name_) return false;
    Read(node_, object);
    return true;
  }
  bool Carried(std::string_view name, std::u16string& text) const { return (*this)(name, text); }
  bool Value(const auto&) const { return false; }

 private:
  explicit Reader(const Node& node) : node_(node), name_(node.Name()) {}

  const Node& node_;
  std::string_view name_;
};

/// Looks at every property.
class Walker {
 public:
  Fingerprint fingerprint;

  bool operator()(std::string_view, auto& value, const auto&...) { return Value(value); }
  bool Flag(std::string_view, bool value, std::string_view) { return Value(value); }
  bool FlagUnless(std::string_view, bool value, std::string_view) { return Value(value); }
  bool Marked(auto&&...) { return false; }
  bool Part(std::string_view, auto& object) { return object.Visit(*this); }
  bool Carried(auto&&...) { return false; }
  template <class Type>
  bool Value(Type& value) {
    if constexpr (requires { value.emplace_back().Visit(*this); }) {
      for (auto& item : value) item.Visit(*this);
    } else {
      fingerprint.Add(value);
    }
    return false;
  }
};

}  // namespace sab::bench::plain
