#pragma once

#include <initializer_list>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

namespace sab::lsp {

using Json = nlohmann::json;

/// Codes of errors in answers, as JSON-RPC and the protocol number them.
enum ErrorCode : int {
  kParseError = -32700,
  kInvalidRequest = -32600,
  kMethodNotFound = -32601,
  kInvalidParams = -32602,
  kInternalError = -32603,
  kNotInitialized = -32002,
  kRequestCancelled = -32800,
  kRequestFailed = -32803,
};

/// A request that is answered with an error.
class RequestError : public std::runtime_error {
 public:
  RequestError(ErrorCode code, const std::string& message)
      : std::runtime_error(message), code_(code) {}
  ErrorCode Code() const { return code_; }

 private:
  ErrorCode code_;
};

// What a client sends may have any form: these look at it without expecting one.

/// A member of members; null where one is missing.
const Json& Member(const Json& value, std::initializer_list<const char*> names);
bool IsTrue(const Json& value, std::initializer_list<const char*> names);
/// Whether a list of texts has one of them.
bool HasText(const Json& list, const char* text);
/// A text that a request must have. Raises RequestError.
std::string NeededText(const Json& value, std::initializer_list<const char*> names);
/// A number cut to what fits; 0 for everything else.
unsigned Number(const Json& value);

/// A value as the bytes of a message; texts that are not UTF-8 are mended.
std::string BytesOf(const Json& value);

}  // namespace sab::lsp
