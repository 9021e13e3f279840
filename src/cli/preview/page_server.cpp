#include "cli/preview/page_server.h"

#include <httplib.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace sabxml::cli {
namespace {

constexpr char kLoopback[] = "127.0.0.1";
constexpr std::size_t kThreads = 32;  // each open page takes one

}  // namespace

struct PageServer::State {
  httplib::Server server;
  int port = -1;
  std::thread thread;
  std::mutex mutex;
  std::condition_variable changed;
  std::string html;
  unsigned state = 0;
  bool is_ending = false;
  std::atomic<bool> has_ended = false;

  // A name that leads to this address may belong to a site that wants to read the page.
  bool IsForeign(const httplib::Request& request) const {
    const std::string host = request.get_header_value("Host");
    const std::string own = ":" + std::to_string(port);
    return host != kLoopback + own && host != "localhost" + own;
  }

  void GivePage(httplib::Response& response) {
    response.set_header("Cache-Control", "no-store");
    response.set_header("X-Content-Type-Options", "nosniff");
    response.set_header("X-Frame-Options", "DENY");
    response.set_header("Cross-Origin-Resource-Policy", "same-origin");
    const std::lock_guard lock(mutex);
    response.set_content(html, "text/html; charset=utf-8");
  }

  // An event as soon as the page is another one; a comment now and then, to notice who is gone.
  void GiveChanges(const std::string& seen, httplib::Response& response) {
    response.set_header("Cache-Control", "no-store");
    response.set_chunked_content_provider(
        "text/event-stream", [this, seen](std::size_t, httplib::DataSink& sink) {
          std::unique_lock lock(mutex);
          const bool is_over = changed.wait_for(lock, std::chrono::seconds(2), [&] {
            return is_ending || std::to_string(state) != seen;
          });
          if (is_ending) {
            sink.done();
            return true;
          }
          const std::string event = is_over ? "data: changed\n\n" : ": still the same\n\n";
          lock.unlock();
          if (!sink.write(event.data(), event.size())) return false;
          if (is_over) sink.done();
          return true;
        });
  }
};

PageServer::PageServer() : state_(std::make_unique<State>()) {
  httplib::Server& server = state_->server;
  server.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
  server.set_keep_alive_timeout(1);
  server.set_pre_routing_handler(
      [this](const httplib::Request& request, httplib::Response& response) {
        if (!state_->IsForeign(request)) return httplib::Server::HandlerResponse::Unhandled;
        response.status = 403;
        return httplib::Server::HandlerResponse::Handled;
      });
  server.Get("/", [this](const httplib::Request&, httplib::Response& response) {
    state_->GivePage(response);
  });
  server.Get("/changes", [this](const httplib::Request& request, httplib::Response& response) {
    const std::size_t question = request.target.find('?');
    state_->GiveChanges(
        question == std::string::npos ? std::string() : request.target.substr(question + 1),
        response);
  });
  state_->port = server.bind_to_any_port(kLoopback);
  if (state_->port <= 0) throw std::runtime_error("no port of 127.0.0.1 can be listened on");
  state_->thread = std::thread([state = state_.get()] {
    state->server.listen_after_bind();
    state->has_ended = true;
  });
}

PageServer::~PageServer() {
  {
    const std::lock_guard lock(state_->mutex);
    state_->is_ending = true;
  }
  state_->changed.notify_all();
  // A server that does not run yet would not be stopped.
  while (!state_->server.is_running() && !state_->has_ended) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  state_->server.stop();
  state_->thread.join();
}

std::string PageServer::Address() const {
  return "http://" + std::string(kLoopback) + ":" + std::to_string(state_->port) + "/";
}

void PageServer::Show(std::string html, unsigned state) {
  {
    const std::lock_guard lock(state_->mutex);
    state_->html = std::move(html);
    state_->state = state;
  }
  state_->changed.notify_all();
}

}  // namespace sabxml::cli
