#include "cli/show/element_counter.h"

#include <algorithm>

namespace sabxml::cli {
namespace {

// The words in the names of classes that are no words.
constexpr std::pair<std::string_view, std::string_view> kWords[] = {
    {"accel", "accelerator"}, {"config", "configuration"}, {"obj", "object"}, {"wnd", "window"}};

// "VePrsCustomWnd": "custom window"
std::string WordsOf(std::string_view class_name) {
  if (class_name.starts_with("VePrs")) class_name.remove_prefix(5);
  std::string words;
  while (!class_name.empty()) {
    const auto end = std::find_if(class_name.begin() + 1, class_name.end(),
                                  [](char c) { return c >= 'A' && c <= 'Z'; });
    std::string word(class_name.begin(), end);
    if (word[0] >= 'A' && word[0] <= 'Z') word[0] = static_cast<char>(word[0] + 32);
    class_name.remove_prefix(word.size());
    for (const auto& [given, meant] : kWords) {
      if (word == given) word = meant;
    }
    // "tool bar" is one word.
    words += (words.empty() || word == "bar" ? "" : " ") + word;
  }
  return words;
}

}  // namespace

void ElementCounter::BeginObject(std::string_view name, std::string_view type,
                                 std::size_t name_width) {
  if (name.empty() && !type.empty()) {
    const std::string_view class_name = type.substr(type.starts_with('I') ? 1 : 0);
    auto count = std::find_if(counts_.begin(), counts_.end(), [class_name](const auto& known) {
      return known.first == class_name;
    });
    if (count == counts_.end()) count = counts_.emplace(count, class_name, 0);
    ++count->second;
  }
  if (next_) next_->BeginObject(name, type, name_width);
}

void ElementCounter::BeginList(std::string_view name) {
  if (next_) next_->BeginList(name);
}

void ElementCounter::End() {
  if (next_) next_->End();
}

void ElementCounter::AddValue(std::string_view name, const Json& value) {
  if (next_) next_->AddValue(name, value);
}

std::string ElementCounter::Words() const {
  std::string words;
  for (const auto& [class_name, count] : counts_) {
    words += (words.empty() ? "" : ", ") + std::to_string(count) + " " + WordsOf(class_name) +
             (count == 1 ? "" : "s");
  }
  return words;
}

}  // namespace sabxml::cli
