#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "lsp/json.h"

namespace sab::lsp {

/// A message as it came: a value, or why it is none.
struct Incoming {
  Json message;
  std::string failure;  ///< empty for a message
};

/// Takes messages out of a stream of bytes: headers, an empty line, and as many bytes as
/// Content-Length says. What is no message gives a failure, and reading goes on at the next header.
class MessageReader {
 public:
  /// More than any document that an editor sends.
  static constexpr std::size_t kMostBytes = std::size_t{256} << 20;

  void Feed(std::string_view bytes) { buffer_ += bytes; }
  /// The next message that is complete; nothing where more bytes are needed.
  std::optional<Incoming> Next();

 private:
  std::optional<std::size_t> ReadLength(std::string_view headers) const;
  void Drop(std::size_t count);

  std::string buffer_;
  std::size_t searched_ = 0;  // bytes that have no end of headers
  std::size_t body_ = 0;      // where the body begins that is not complete
  std::size_t length_ = 0;    // of that body
  bool is_body_expected_ = false;
  bool is_lost_ = false;  // looking for the next header
};

}  // namespace sab::lsp
