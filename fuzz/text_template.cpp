// Any bytes as a text template: every section and line can be read, and names find the first
// section that has them.

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

#include "fuzz/choices.h"
#include "templates/text_template.h"
#include "xml/plain_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const sab::Text text =
      sab::FromUtf8(sab::xml::DecodePlainText({reinterpret_cast<const char*>(data), size}));
  const sab::TextTemplate sections(text);
  std::size_t length = 0;
  for (std::size_t i = 0; i < sections.SectionCount(); ++i) {
    const sab::TextView name = sections.NameOf(i);
    sab::fuzz::Require(name.find_first_of(OLESTR("[]\r\n")) == name.npos);
    const std::optional<std::size_t> found = sections.Find(name);
    sab::fuzz::Require(found && *found <= i && sections.NameOf(*found).size() == name.size());
    length += name.size();
    for (std::size_t line = 0; line < sections.LineCount(i); ++line) {
      const sab::TextView content = sections.LineAt(i, line);
      sab::fuzz::Require(content.find_first_of(OLESTR("\r\n")) == content.npos);
      length += content.size();
    }
  }
  sab::fuzz::Require(length <= text.size());
  return 0;
}
