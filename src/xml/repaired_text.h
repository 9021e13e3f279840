#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace sab::xml {

/// A text that is meant to be a document, made well-formed: what is half written is blanked out,
/// and tags that are missing are put in. It is for looking at a document while a person writes it;
/// what reads a file for use refuses such a text.
///
/// All bytes that stay are the same, and a text that ends too early keeps everything before its
/// end. Where an end tag is missing, lines and indentation tell where the element ends.
class RepairedText {
 public:
  /// @param text any bytes, without a byte-order mark; a declaration is blanked out
  explicit RepairedText(std::string_view text);

  /// Well-formed, whatever the bytes are.
  const std::string& Text() const { return text_; }

  /// The place in the original of a place in the repaired text, and back. Of what was put in, the
  /// place is where it was; a place where something was put in is before it.
  std::size_t ToOriginal(std::size_t repaired) const;
  std::size_t FromOriginal(std::size_t original) const;

 private:
  struct Insertion {
    std::size_t original;
    std::size_t repaired;
    std::size_t size;
  };

  std::string text_;
  std::vector<Insertion> insertions_;
};

}  // namespace sab::xml
