#pragma once

#include <string>
#include <string_view>

namespace sab::xml {

/// An encoding other than UTF-8 and UTF-16, as the system knows it. The platform implements it.
class CodePage {
 public:
  /// @param name as a declaration gives it: "GB2312", "Big5", "windows-1252"; case does not matter
  /// Raises Error for a name that the system does not know; std::bad_alloc; std::system_error where
  /// the system cannot load the conversion, for lack of descriptors above all.
  explicit CodePage(std::string_view name);
  CodePage(const CodePage&) = delete;
  CodePage& operator=(const CodePage&) = delete;
  ~CodePage();

  /// Converts to UTF-8 until the end, or until the output has so many bytes, which must be the end
  /// of a character.
  /// @return bytes of the input that were read; short of its end at the first undecodable byte
  std::size_t Decode(std::string_view bytes, std::string& utf8, std::size_t most = SIZE_MAX);

  /// Appends one character; false if the encoding lacks it.
  bool Encode(char32_t code, std::string& bytes);

 private:
  struct State;
  State* state_;
};

}  // namespace sab::xml
