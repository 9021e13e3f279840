#pragma once

#include <functional>
#include <string>

#include "lsp/diagnostics.h"
#include "lsp/message_reader.h"

namespace sab::lsp {

/// A language server: takes messages and sends others. It reads files and never writes one.
class Server {
 public:
  using Send = std::function<void(const Json& message)>;
  using IsCancelled = std::function<bool(const Json& id)>;

  /// @param version of the program
  /// @param is_cancelled whether a request was cancelled that is still to be answered
  Server(std::string version, Send send, IsCancelled is_cancelled);

  /// Handles one message; whatever it is, the server goes on.
  void Handle(const Incoming& incoming);
  /// Whether there is something to do when no message waits.
  bool HasWork() const { return has_changes_; }
  /// Does that: looks for mistakes and tells of them.
  void Work();

  /// Whether the client has ended the server.
  bool IsDone() const { return is_done_; }
  /// 0 if it was shut down before.
  int ExitCode() const { return state_ == State::kShutDown ? 0 : 1; }

 private:
  enum class State { kNew, kRunning, kShutDown };

  void HandleRequest(const Json& id, const std::string& method, const Json& params);
  void HandleNotification(const std::string& method, const Json& params);
  Json ResultOf(const std::string& method, const Json& params);
  Json Initialize(const Json& params);
  void SetFolders(const Json& folders);
  void ReportOptionFailures();
  void Fail(const Json& id, ErrorCode code, const std::string& message);

  const std::string version_;
  const Send send_;
  const IsCancelled is_cancelled_;
  State state_ = State::kNew;
  bool is_done_ = false;
  bool has_changes_ = false;
  Json current_;  // the request that is being answered
  ClientAbilities client_;
  Workspace workspace_;
  Diagnostics diagnostics_;
  std::string told_failure_;
  Context context_;
};

}  // namespace sab::lsp
