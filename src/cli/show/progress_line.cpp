#include "cli/show/progress_line.h"

#include <chrono>
#include <iostream>

#include "cli/display_text.h"

namespace sabxml::cli {

ProgressLine::ProgressLine(bool is_wanted) {
  // Reading one large file does not come back for a while, so another thread must look at the
  // clock.
  if (is_wanted) writer_ = std::thread([this] { Run(); });
}

ProgressLine::~ProgressLine() {
  if (!writer_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    is_done_ = true;
  }
  changed_.notify_one();
  writer_.join();
}

void ProgressLine::Set(const std::string& text) {
  const std::lock_guard lock(mutex_);
  text_ = text;
}

void ProgressLine::Run() {
  std::unique_lock lock(mutex_);
  bool is_shown = false;
  auto pause = std::chrono::milliseconds(1000);
  while (!changed_.wait_for(lock, pause, [this] { return is_done_; })) {
    std::cerr << "\r\x1b[K" << OnOneLine(text_) << std::flush;
    is_shown = true;
    pause = std::chrono::milliseconds(200);
  }
  if (is_shown) std::cerr << "\r\x1b[K" << std::flush;
}

}  // namespace sabxml::cli
