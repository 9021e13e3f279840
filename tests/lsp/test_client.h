#pragma once

#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "lsp/server.h"
#include "lsp/uri.h"

namespace sab::lsp {

inline const std::string kWorkshop = std::string(SAB_SOURCE) + "/samples/workshop/";

inline std::string BytesOfFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// A client in the same process, which keeps what the server has said of each file.
class TestClient {
 public:
  explicit TestClient(const Json& capabilities) {
    Request("initialize", {{"capabilities", capabilities}});
    Notify("initialized", Json::object());
  }

  Json Request(const std::string& method, const Json& params) {
    server_.Handle({{{"id", 1}, {"method", method}, {"params", params}}, ""});
    return answer_.contains("result") ? answer_["result"] : answer_["error"];
  }
  void Notify(const std::string& method, const Json& params) {
    server_.Handle({{{"method", method}, {"params", params}}, ""});
  }
  void Open(const std::string& path, const std::string& text) {
    Notify("textDocument/didOpen",
           {{"textDocument", {{"uri", UriOfPath(path)}, {"version", 1}, {"text", text}}}});
  }
  /// Diagnostics by path, once the keys rest.
  const std::map<std::string, Json>& Diagnostics() {
    if (server_.HasWork()) server_.Work();
    return diagnostics_;
  }

 private:
  void Take(const Json& message) {
    if (message.contains("id") && !message.contains("method")) answer_ = message;
    if (message.value("method", "") != "textDocument/publishDiagnostics") return;
    const Json& params = message["params"];
    diagnostics_[PathOfUri(params["uri"].get<std::string>())] = params["diagnostics"];
  }

  Json answer_;
  std::map<std::string, Json> diagnostics_;
  Server server_{"test", [this](const Json& message) { Take(message); },
                 [](const Json&) { return false; }};
};

}  // namespace sab::lsp
