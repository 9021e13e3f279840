#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace sabxml::cli {

/// One line on the standard error that says what is being done, once it has taken over a second.
/// Nothing is written where it is not a terminal. The line is gone when this object is.
class ProgressLine {
 public:
  /// @param is_wanted false for never
  explicit ProgressLine(bool is_wanted);
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  void Set(const std::string& text);

 private:
  void Run();

  std::mutex mutex_;  // guards text_ and is_done_
  std::condition_variable changed_;
  std::string text_;
  bool is_done_ = false;
  std::thread writer_;
};

}  // namespace sabxml::cli
