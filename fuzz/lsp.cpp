// Any bytes as messages to the language server: each request is answered once, nothing ends the
// server, and any text can be repaired into a document.
//
// An input that begins with @ is taken line by line, each a message; any other is the stream
// itself.

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/choices.h"
#include "lsp/server.h"
#include "xml/document.h"
#include "xml/repaired_text.h"

namespace {

using sab::fuzz::Require;

void CheckRepair(std::string_view text) {
  const sab::xml::RepairedText repaired(text);
  const sab::xml::Document document(repaired.Text());  // raises for what is not well-formed
  std::size_t last = 0;
  for (std::size_t at = 0; at <= repaired.Text().size(); ++at) {
    const std::size_t original = repaired.ToOriginal(at);
    Require(original >= last && original <= text.size());
    last = original;
  }
  for (std::size_t at = 0; at <= text.size(); ++at) {
    Require(repaired.ToOriginal(repaired.FromOriginal(at)) == at);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  CheckRepair(input);
  std::size_t answers = 0;
  sab::lsp::Server server(
      "fuzz",
      [&answers](const sab::lsp::Json& message) {
        answers += message.contains("id") && !message.contains("method") ? 1 : 0;
      },
      [](const sab::lsp::Json&) { return false; });
  sab::lsp::MessageReader reader;
  std::size_t expected = 0;
  const auto handle_all = [&] {
    while (const auto incoming = reader.Next()) {
      const sab::lsp::Json& method = sab::lsp::Member(incoming->message, {"method"});
      const sab::lsp::Json& id = sab::lsp::Member(incoming->message, {"id"});
      const bool is_notification = method.is_string() && !incoming->message.contains("id");
      const bool is_answer =
          !method.is_string() && (id.is_string() || id.is_number_integer()) &&
          (incoming->message.contains("result") || incoming->message.contains("error"));
      expected += !incoming->failure.empty() || !(is_notification || is_answer) ? 1 : 0;
      server.Handle(*incoming);
      if (server.HasWork()) server.Work();
    }
  };
  if (!input.starts_with('@')) {
    reader.Feed(input);
    handle_all();
  } else {
    input.remove_prefix(1);
    while (!input.empty()) {
      const std::string_view line = input.substr(0, input.find('\n'));
      input.remove_prefix(std::min(line.size() + 1, input.size()));
      reader.Feed("Content-Length: " + std::to_string(line.size()) + "\r\n\r\n");
      reader.Feed(line);
      handle_all();
    }
  }
  Require(answers == expected);
  return 0;
}
