#include "lsp/server.h"

#include <map>

#include "lsp/uri.h"

namespace sab::lsp {
namespace {

using Request = Json (*)(Context&, const Json&);

const std::map<std::string, Request>& Requests() {
  static const std::map<std::string, Request> requests = {
      {"textDocument/completion", Complete},
      {"textDocument/hover", Hover},
      {"textDocument/definition", Definition},
      {"textDocument/references", References},
      {"textDocument/documentHighlight", Highlights},
      {"textDocument/prepareRename", PrepareRename},
      {"textDocument/rename", Rename},
      {"textDocument/documentSymbol", DocumentSymbols},
      {"workspace/symbol", WorkspaceSymbols},
      {"textDocument/foldingRange", FoldingRanges},
      {"textDocument/selectionRange", SelectionRanges},
      {"textDocument/linkedEditingRange", LinkedEditing},
      {"textDocument/documentLink", DocumentLinks},
      {"textDocument/semanticTokens/full", SemanticTokens},
      {"textDocument/semanticTokens/range", SemanticTokensOfRange},
      {"textDocument/inlayHint", InlayHints},
      {"textDocument/formatting", Format},
      {"textDocument/rangeFormatting", FormatRange},
      {"textDocument/documentColor", Colours},
      {"textDocument/colorPresentation", ColourPresentations},
      {"textDocument/codeAction", CodeActions},
  };
  return requests;
}

ClientAbilities AbilitiesOf(const Json& capabilities) {
  const Json& text = Member(capabilities, {"textDocument"});
  ClientAbilities client;
  client.has_snippets = IsTrue(text, {"completion", "completionItem", "snippetSupport"});
  client.keeps_indentation =
      Member(text, {"completion", "completionItem", "insertTextModeSupport"}).is_object();
  client.has_related_places = IsTrue(text, {"publishDiagnostics", "relatedInformation"});
  client.has_document_changes =
      IsTrue(capabilities, {"workspace", "workspaceEdit", "documentChanges"});
  client.has_symbol_trees = IsTrue(text, {"documentSymbol", "hierarchicalDocumentSymbolSupport"});
  client.watches_files =
      IsTrue(capabilities, {"workspace", "didChangeWatchedFiles", "dynamicRegistration"});
  client.has_action_literals = Member(text, {"codeAction", "codeActionLiteralSupport"}).is_object();
  return client;
}

PositionEncoding EncodingOf(const Json& capabilities) {
  // UTF-8 is what the texts are held in.
  const Json& offered = Member(capabilities, {"general", "positionEncodings"});
  return HasText(offered, "utf-8") ? PositionEncoding::kUtf8 : PositionEncoding::kUtf16;
}

Json Capabilities(PositionEncoding encoding) {
  return {
      {"positionEncoding", encoding == PositionEncoding::kUtf8 ? "utf-8" : "utf-16"},
      {"textDocumentSync", {{"openClose", true}, {"change", 2}, {"save", true}}},
      {"completionProvider", {{"triggerCharacters", {"<", ">", "/", "\\"}}}},
      {"hoverProvider", true},
      {"definitionProvider", true},
      {"referencesProvider", true},
      {"documentHighlightProvider", true},
      {"renameProvider", {{"prepareProvider", true}}},
      {"documentSymbolProvider", true},
      {"workspaceSymbolProvider", true},
      {"foldingRangeProvider", true},
      {"selectionRangeProvider", true},
      {"linkedEditingRangeProvider", true},
      {"documentLinkProvider", Json::object()},
      {"semanticTokensProvider",
       {{"legend", SemanticTokensLegend()}, {"full", true}, {"range", true}}},
      {"inlayHintProvider", true},
      {"documentFormattingProvider", true},
      {"documentRangeFormattingProvider", true},
      {"colorProvider", true},
      {"codeActionProvider", {{"codeActionKinds", {"quickfix"}}}},
      {"workspace", {{"workspaceFolders", {{"supported", true}, {"changeNotifications", true}}}}},
  };
}

// The version of a document; null where it is none.
Json VersionOf(const Json& params) {
  const Json& version = Member(params, {"textDocument", "version"});
  return version.is_number_integer() ? version : Json();
}

}  // namespace

Server::Server(std::string version, Send send, IsCancelled is_cancelled)
    : version_(std::move(version)),
      send_(std::move(send)),
      is_cancelled_(std::move(is_cancelled)),
      context_{workspace_, client_, [this] {
                 if (!current_.is_null() && is_cancelled_(current_)) {
                   throw RequestError(kRequestCancelled, "the request was cancelled");
                 }
               }} {}

void Server::Fail(const Json& id, ErrorCode code, const std::string& message) {
  send_({{"jsonrpc", "2.0"},
         {"id", id},
         {"error", {{"code", static_cast<int>(code)}, {"message", message}}}});
}

void Server::Handle(const Incoming& incoming) {
  if (!incoming.failure.empty()) return Fail(nullptr, kParseError, incoming.failure);
  const Json& message = incoming.message;
  const Json& method = Member(message, {"method"});
  const Json& id = Member(message, {"id"});
  const bool has_id = id.is_string() || id.is_number_integer();
  if (!method.is_string()) {
    // The answer to a request of the server.
    const bool is_answer = has_id && (message.contains("result") || message.contains("error"));
    if (!is_answer) Fail(has_id ? id : Json(), kInvalidRequest, "this is no request");
    return;
  }
  const auto name = method.get<std::string>();
  const Json& params = Member(message, {"params"});
  if (has_id) return HandleRequest(id, name, params);
  if (message.contains("id")) return Fail(nullptr, kInvalidRequest, "an id is a text or a number");
  try {
    HandleNotification(name, params);
  } catch (const std::exception&) {  // which has no answer
  }
}

void Server::HandleRequest(const Json& id, const std::string& method, const Json& params) {
  try {
    if (is_cancelled_(id)) throw RequestError(kRequestCancelled, "the request was cancelled");
    if (state_ == State::kNew && method != "initialize") {
      throw RequestError(kNotInitialized, "the first request must be initialize");
    }
    if (state_ == State::kShutDown) {
      throw RequestError(kInvalidRequest, "the server was shut down");
    }
    current_ = id;
    Json result = ResultOf(method, params);
    current_ = nullptr;
    send_({{"jsonrpc", "2.0"}, {"id", id}, {"result", std::move(result)}});
  } catch (const RequestError& error) {
    current_ = nullptr;
    Fail(id, error.Code(), error.what());
  } catch (const std::exception& error) {
    current_ = nullptr;
    Fail(id, kInternalError, error.what());
  }
}

Json Server::ResultOf(const std::string& method, const Json& params) {
  if (method == "initialize") return Initialize(params);
  if (method == "shutdown") {
    state_ = State::kShutDown;
    return nullptr;
  }
  const auto request = Requests().find(method);
  if (request == Requests().end()) {
    throw RequestError(kMethodNotFound, "the method " + method + " is not known");
  }
  return request->second(context_, params);
}

Json Server::Initialize(const Json& params) {
  if (state_ != State::kNew) throw RequestError(kInvalidRequest, "the server is initialized");
  const Json& capabilities = Member(params, {"capabilities"});
  client_ = AbilitiesOf(capabilities);
  workspace_.SetEncoding(EncodingOf(capabilities));
  const Json& folders = Member(params, {"workspaceFolders"});
  if (folders.is_array()) {
    SetFolders(folders);
  } else if (Member(params, {"rootUri"}).is_string()) {
    SetFolders(Json::array({{{"uri", Member(params, {"rootUri"})}}}));
  }
  state_ = State::kRunning;
  return {{"capabilities", Capabilities(workspace_.Encoding())},
          {"serverInfo", {{"name", "sabxml"}, {"version", version_}}}};
}

void Server::SetFolders(const Json& folders) {
  std::vector<std::string> paths;
  for (const Json& folder : folders) {
    const Json& uri = Member(folder, {"uri"});
    std::string path = uri.is_string() ? PathOfUri(uri.get<std::string>()) : "";
    while (path.ends_with('/')) path.pop_back();
    if (!path.empty()) paths.push_back(path + "/");
  }
  workspace_.SetFolders(std::move(paths));
}

void Server::HandleNotification(const std::string& method, const Json& params) {
  if (method == "exit") {
    is_done_ = true;
    return;
  }
  if (state_ != State::kRunning) return;
  if (method == "initialized" && client_.watches_files) {
    const Json watchers = Json::array({{{"globPattern", "**/*.xml"}},
                                       {{"globPattern", "**/.sabxml-check"}},
                                       {{"globPattern", "**/*.ids"}}});
    const Json registration = {{"id", "files"},
                               {"method", "workspace/didChangeWatchedFiles"},
                               {"registerOptions", {{"watchers", watchers}}}};
    send_({{"jsonrpc", "2.0"},
           {"id", "watch"},
           {"method", "client/registerCapability"},
           {"params", {{"registrations", Json::array({registration})}}}});
    return;
  }
  if (method == "workspace/didChangeWorkspaceFolders") {
    Json folders = Json::array();
    const Json& removed = Member(params, {"event", "removed"});
    for (const std::string& path : workspace_.Folders()) {
      const Json folder = {{"uri", UriOfPath(path.substr(0, path.size() - 1))}};
      const bool is_removed = removed.is_array() && [&] {
        for (const Json& other : removed) {
          const Json& uri = Member(other, {"uri"});
          if (uri.is_string() && PathOfUri(uri.get<std::string>()) + "/" == path) return true;
        }
        return false;
      }();
      if (!is_removed) folders.push_back(folder);
    }
    const Json& added = Member(params, {"event", "added"});
    if (added.is_array()) folders.insert(folders.end(), added.begin(), added.end());
    SetFolders(folders);
    workspace_.ForgetDisk();
  } else if (method == "workspace/didChangeWatchedFiles" || method == "textDocument/didSave") {
    workspace_.ForgetDisk();
  } else if (method == "textDocument/didOpen") {
    workspace_.Open(NeededText(params, {"textDocument", "uri"}),
                    NeededText(params, {"textDocument", "text"}), VersionOf(params));
  } else if (method == "textDocument/didChange") {
    workspace_.Change(NeededText(params, {"textDocument", "uri"}),
                      Member(params, {"contentChanges"}), VersionOf(params));
  } else if (method == "textDocument/didClose") {
    workspace_.Close(NeededText(params, {"textDocument", "uri"}));
  } else {
    return;
  }
  has_changes_ = true;
}

void Server::Work() {
  has_changes_ = false;
  if (state_ != State::kRunning) return;
  for (const Json& notification : diagnostics_.Publish(context_)) send_(notification);
  ReportOptionFailures();
}

void Server::ReportOptionFailures() {
  std::string failure;
  for (const Application* const application : workspace_.Applications()) {
    if (failure.empty()) failure = application->OptionFailure();
  }
  if (failure != told_failure_ && !failure.empty()) {
    send_({{"jsonrpc", "2.0"},
           {"method", "window/showMessage"},
           {"params", {{"type", 2}, {"message", "sabxml: " + failure}}}});
  }
  told_failure_ = failure;
}

}  // namespace sab::lsp
