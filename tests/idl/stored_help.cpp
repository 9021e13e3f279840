#include "idl/stored_help.h"

namespace sab::testing {

Text HelpAsStored(TextView as_read) {
  const auto length = static_cast<int>(as_read.size());
  std::string bytes(as_read.size() * 4 + 1, '\0');
  BOOL is_strange = FALSE;
  const int count = WideCharToMultiByte(CP_ACP, 0, as_read.data(), length, bytes.data(),
                                        static_cast<int>(bytes.size()), nullptr, &is_strange);
  if (is_strange) return Text(as_read);  // it has not been read in that code page
  Text text(bytes.size(), L'\0');
  const int units =
      MultiByteToWideChar(936, 0, bytes.data(), count, text.data(), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(units));
  return text;
}

}  // namespace sab::testing
