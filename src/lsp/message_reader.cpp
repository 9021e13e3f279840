#include "lsp/message_reader.h"

#include <algorithm>
#include <charconv>

#include "text/ascii.h"

namespace sab::lsp {
namespace {

constexpr std::string_view kLengthName = "Content-Length:";
constexpr std::size_t kMostHeaderBytes = 64 << 10;

}  // namespace

void MessageReader::Drop(std::size_t count) {
  buffer_.erase(0, count);
  searched_ = 0;
}

// Nothing for headers that do not say how long the body is.
std::optional<std::size_t> MessageReader::ReadLength(std::string_view headers) const {
  std::optional<std::size_t> length;
  while (!headers.empty()) {
    const std::size_t end = std::min(headers.find("\r\n"), headers.size());
    std::string_view line = headers.substr(0, end);
    headers.remove_prefix(std::min(end + 2, headers.size()));
    if (!EqualsIgnoringAsciiCase(line.substr(0, kLengthName.size()), kLengthName)) continue;
    line.remove_prefix(kLengthName.size());
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    while (line.ends_with(' ') || line.ends_with('\t')) line.remove_suffix(1);
    std::size_t number = 0;
    const auto [stop, error] = std::from_chars(line.data(), line.data() + line.size(), number);
    if (error != std::errc() || stop != line.data() + line.size()) return std::nullopt;
    length = number;
  }
  return length;
}

std::optional<Incoming> MessageReader::Next() {
  if (is_lost_) {
    const std::size_t next = buffer_.find(kLengthName);
    if (next == buffer_.npos) {
      Drop(buffer_.size() - std::min(buffer_.size(), kLengthName.size() - 1));
      return std::nullopt;
    }
    Drop(next);
    is_lost_ = false;
  }
  if (!is_body_expected_) {
    const std::size_t from = searched_ - std::min<std::size_t>(searched_, 3);
    const std::size_t end = buffer_.find("\r\n\r\n", from);
    if (end == buffer_.npos && buffer_.size() <= kMostHeaderBytes) {
      searched_ = buffer_.size();
      return std::nullopt;
    }
    const std::optional<std::size_t> length =
        end == buffer_.npos ? std::nullopt : ReadLength({buffer_.data(), end});
    if (!length || *length > kMostBytes) {
      Drop(end == buffer_.npos ? kMostHeaderBytes / 2 : end + 4);
      is_lost_ = true;
      return Incoming{nullptr,
                      length ? "a message of " + std::to_string(*length) + " bytes is not read"
                             : "a message needs a Content-Length: a number of bytes"};
    }
    body_ = end + 4;
    length_ = *length;
    is_body_expected_ = true;
  }
  if (buffer_.size() - body_ < length_) return std::nullopt;
  Incoming incoming;
  try {
    const auto* const begin = buffer_.data() + body_;
    incoming.message = Json::parse(begin, begin + length_);
  } catch (const Json::exception& error) {
    incoming.failure = std::string("the message is no JSON: ") + error.what();
  }
  Drop(body_ + length_);
  is_body_expected_ = false;
  return incoming;
}

}  // namespace sab::lsp
