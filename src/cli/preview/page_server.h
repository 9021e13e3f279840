#pragma once

#include <memory>
#include <string>

namespace sabxml::cli {

/// Gives one page to browsers on this machine, and tells them when it is another one. It listens on
/// the loopback address alone and answers no request that a foreign site's name leads to.
class PageServer {
 public:
  /// Raises std::runtime_error where it cannot listen, or where the program was built without it.
  PageServer();
  PageServer(const PageServer&) = delete;
  PageServer& operator=(const PageServer&) = delete;
  ~PageServer();

  /// "http://127.0.0.1:40123/"
  std::string Address() const;

  /// Gives this page from now on. @param state number by which pages that are open know theirs
  void Show(std::string html, unsigned state);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace sabxml::cli
