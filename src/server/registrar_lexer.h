#pragma once

#include <string>
#include <string_view>

#include "server/registrar.h"

namespace sab {

/// A word of a registrar script, with the replacements made in it.
struct RegistrarToken {
  enum class Kind { kWord, kQuoted, kOpen, kClose, kEquals, kEnd } kind = Kind::kEnd;
  std::string text;
  unsigned line = 1;
  unsigned column = 1;

  bool IsWord(std::string_view word) const;  ///< unquoted, whatever the letter case
  bool IsName() const { return kind == Kind::kWord || kind == Kind::kQuoted; }
};

/// Cuts a script into words. A quoted word may hold '' for one quote, and %NAME% stands for a
/// replacement in any word, %% for a percent sign.
class RegistrarLexer {
 public:
  RegistrarLexer(const RegistrarScript& script, const Replacements& replacements)
      : script_(script), replacements_(replacements) {}

  /// Raises ComError for a quote that is not closed or a replacement that is not known.
  RegistrarToken Next();

  [[noreturn]] void Fail(const RegistrarToken& at, const std::string& reason) const;

 private:
  char Peek() const { return at_ < script_.text.size() ? script_.text[at_] : '\0'; }
  char Take();
  void SkipSpace();
  std::string Replaced(const RegistrarToken& token) const;

  const RegistrarScript& script_;
  const Replacements& replacements_;
  std::size_t at_ = 0;
  unsigned line_ = 1;
  unsigned column_ = 1;
};

}  // namespace sab
