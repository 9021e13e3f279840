#include "cli/show/tree_printers.h"

#include <algorithm>

#include "base/result_words.h"
#include "cli/display_text.h"

namespace sabxml::cli {
namespace {

// Where nesting is deeper than a screen is wide, blanks would outgrow the text.
constexpr std::size_t kMaxIndentation = 40;

std::string Indentation(std::size_t depth) {
  return std::string(2 * std::min(depth, kMaxIndentation), ' ');
}

}  // namespace

void AddFailure(TreeSink& sink, const Failure& failure) {
  const bool has_code = FAILED(failure.Code());
  sink.BeginObject("error", {}, 0);
  sink.AddValue("code", has_code ? Json(sab::ResultDigits(failure.Code())) : Json());
  sink.AddValue("meaning", has_code ? Json(sab::ResultWords(failure.Code())) : Json());
  sink.AddValue("reason", failure.what());
  sink.End();
}

std::string TextTreePrinter::NextName(std::string_view name) {
  if (!levels_.empty() && levels_.back().is_list) {
    return "[" + std::to_string(levels_.back().elements++) + "]";
  }
  return std::string(name);
}

// An empty list is on one line with its name, so the name waits for what comes.
void TextTreePrinter::FinishHeading() {
  if (!has_heading_) return;
  has_heading_ = false;
  out_ << Indentation(levels_.size() - 2)
       << (colours_ ? "\x1b[36m" + heading_ + "\x1b[0m" : heading_) << '\n';
}

void TextTreePrinter::PrintLine(const std::string& name, const std::string& value) {
  const std::size_t width = levels_.back().name_width;
  out_ << Indentation(levels_.size() - 1);
  if (value.empty()) {
    out_ << (colours_ ? "\x1b[36m" + name + "\x1b[0m" : name) << '\n';
    return;
  }
  const std::string padded = Padded(name, width) + "  ";
  out_ << (colours_ ? "\x1b[36m" + padded + "\x1b[0m" : padded) << value << '\n';
}

void TextTreePrinter::Begin(std::string_view name, const Level& level) {
  FinishHeading();
  has_heading_ = !levels_.empty();
  if (has_heading_) heading_ = NextName(name);
  levels_.push_back(level);
}

void TextTreePrinter::BeginObject(std::string_view name, std::string_view, std::size_t name_width) {
  Begin(name, {name_width});
}

void TextTreePrinter::BeginList(std::string_view name) { Begin(name, {0, 0, true}); }

void TextTreePrinter::End() {
  levels_.pop_back();
  if (!has_heading_) return;
  has_heading_ = false;
  PrintLine(heading_, "(none)");
}

void TextTreePrinter::AddValue(std::string_view name, const Json& value) {
  FinishHeading();
  PrintLine(NextName(name), value.is_string() ? OnOneLine(value.get_ref<const std::string&>())
                            : value.is_null() ? ""
                                              : value.dump());
}

void JsonPrinter::BreakLine() { out_ << '\n' << Indentation(closing_.size()); }

void JsonPrinter::Separate(std::string_view name) {
  if (!closing_.empty()) {
    if (!is_empty_) out_ << ',';
    BreakLine();
    if (closing_.back() == '}') out_ << Json(name).dump() << ": ";
  }
  is_empty_ = true;
}

void JsonPrinter::BeginObject(std::string_view name, std::string_view, std::size_t) {
  Separate(name);
  out_ << '{';
  closing_ += '}';
}

void JsonPrinter::BeginList(std::string_view name) {
  Separate(name);
  out_ << '[';
  closing_ += ']';
}

void JsonPrinter::End() {
  const char bracket = closing_.back();
  closing_.pop_back();
  if (!is_empty_) BreakLine();
  out_ << bracket;
  is_empty_ = false;
  if (closing_.empty()) out_ << '\n';
}

void JsonPrinter::AddValue(std::string_view name, const Json& value) {
  Separate(name);
  out_ << value.dump(-1, ' ', false, Json::error_handler_t::replace);
  is_empty_ = false;
}

}  // namespace sabxml::cli
