#include "lsp/serve.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <set>
#include <thread>

#include "lsp/server.h"

namespace sab::lsp {
namespace {

// Messages that wait. A thread of its own reads them, so that a request can be cancelled before or
// while it is answered.
class Inbox {
 public:
  void ReadAll(const std::function<std::size_t(char*, std::size_t)>& read) {
    MessageReader reader;
    char bytes[65536];
    bool is_ended = false;
    while (!is_ended) {
      const std::size_t size = read(bytes, sizeof bytes);
      is_ended = size == 0;
      reader.Feed({bytes, size});
      while (std::optional<Incoming> incoming = reader.Next()) {
        const Json& method = Member(incoming->message, {"method"});
        // What comes after it is not for this server.
        is_ended = is_ended || method == "exit";
        const std::lock_guard lock(mutex_);
        if (method == "$/cancelRequest") {
          const Json& id = Member(incoming->message, {"params", "id"});
          if (id.is_string() || id.is_number()) cancelled_.insert(BytesOf(id));
        } else {
          messages_.push_back(std::move(*incoming));
        }
        changed_.notify_one();
      }
    }
    const std::lock_guard lock(mutex_);
    is_ended_ = true;
    changed_.notify_one();
  }

  // The next message; nothing at the end, or where none comes in time.
  std::optional<Incoming> Take(std::optional<std::chrono::milliseconds> time) {
    std::unique_lock lock(mutex_);
    const auto has_news = [this] { return is_ended_ || !messages_.empty(); };
    if (time) {
      changed_.wait_for(lock, *time, has_news);
    } else {
      changed_.wait(lock, has_news);
    }
    if (messages_.empty()) return std::nullopt;
    std::optional<Incoming> first = std::move(messages_.front());
    messages_.pop_front();
    return first;
  }

  bool IsEnded() {
    const std::lock_guard lock(mutex_);
    return is_ended_ && messages_.empty();
  }

  // Once for each cancelled request.
  bool IsCancelled(const Json& id) {
    const std::lock_guard lock(mutex_);
    return cancelled_.erase(BytesOf(id)) > 0;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Incoming> messages_;
  std::set<std::string> cancelled_;
  bool is_ended_ = false;
};

}  // namespace

int Serve(const std::string& version, const std::function<std::size_t(char*, std::size_t)>& read,
          std::ostream& output) {
  // Who types goes on typing: what is wrong is looked for when the keys rest.
  constexpr std::chrono::milliseconds kRest(50);
  Inbox inbox;
  std::thread reader([&inbox, &read] { inbox.ReadAll(read); });
  Server server(
      version,
      [&output](const Json& message) {
        const std::string bytes = BytesOf(message);
        output << "Content-Length: " << bytes.size() << "\r\n\r\n" << bytes;
        output.flush();
      },
      [&inbox](const Json& id) { return inbox.IsCancelled(id); });
  while (!server.IsDone()) {
    const std::optional<Incoming> incoming =
        inbox.Take(server.HasWork() ? std::optional(kRest) : std::nullopt);
    if (incoming) {
      server.Handle(*incoming);
    } else if (server.HasWork()) {
      server.Work();
    } else if (inbox.IsEnded()) {
      break;
    }
  }
  reader.join();
  return server.ExitCode();
}

}  // namespace sab::lsp
