#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "xml/code_page.h"

namespace sab::xml {

/// How the bytes of a document encode characters: by byte-order mark, or as declared, or UTF-8.
class Encoding {
 public:
  /// Recognises the encoding of a whole document. Raises Error for one that is not known.
  explicit Encoding(std::string_view bytes);
  Encoding(Encoding&&) = default;
  Encoding& operator=(Encoding&&) = default;
  ~Encoding();

  /// Whether the bytes after the mark are the text without decoding.
  bool IsUtf8() const { return form_ == Form::kUtf8; }
  /// Bytes of the byte-order mark.
  std::size_t BomLength() const { return bom_length_; }

  /// The text as UTF-8, without the mark. Raises Error for undecodable bytes.
  std::string Decode(std::string_view bytes) const;

  /// How many of the bytes encode the text.
  /// @param text a part of the decoded text
  /// @param bytes those of the document from where this part starts
  std::size_t LengthOf(std::string_view text, std::string_view bytes) const;

  /// Bytes for text that goes into the document; a character that the encoding lacks becomes a
  /// character reference.
  std::string Encode(std::string_view utf8) const;
  /// Whether it has every one of these characters.
  bool CanEncode(std::string_view utf8) const;

 private:
  enum class Form { kUtf8, kUtf16LittleEndian, kUtf16BigEndian, kCodePage };

  void RecogniseForm(std::string_view bytes);
  void SetCodePage(std::string_view name);
  char16_t UnitAt(const char* bytes) const;
  void AppendUnit(std::string& bytes, char16_t unit) const;

  Form form_ = Form::kUtf8;
  std::size_t bom_length_ = 0;
  std::unique_ptr<CodePage> code_page_;
};

}  // namespace sab::xml
