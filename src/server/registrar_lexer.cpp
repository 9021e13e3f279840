#include "server/registrar_lexer.h"

#include "base/com_error.h"
#include "text/ascii.h"

namespace sab {
namespace {

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

}  // namespace

bool RegistrarToken::IsWord(std::string_view word) const {
  return kind == Kind::kWord && EqualsIgnoringAsciiCase(text, word);
}

void RegistrarLexer::Fail(const RegistrarToken& at, const std::string& reason) const {
  throw ComError(E_FAIL, std::string(script_.name) + ":" + std::to_string(at.line) + ":" +
                             std::to_string(at.column) + ": " + reason + ".");
}

char RegistrarLexer::Take() {
  const char c = script_.text[at_++];
  if (c == '\n') {
    ++line_;
    column_ = 1;
  } else if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80) {
    ++column_;
  }
  return c;
}

void RegistrarLexer::SkipSpace() {
  while (IsSpace(Peek())) Take();
}

RegistrarToken RegistrarLexer::Next() {
  using TokenKind = RegistrarToken::Kind;
  SkipSpace();
  RegistrarToken token{TokenKind::kEnd, {}, line_, column_};
  if (at_ >= script_.text.size()) return token;
  const char first = Peek();
  if (first == '{' || first == '}' || first == '=') {
    token.kind = first == '{'   ? TokenKind::kOpen
                 : first == '}' ? TokenKind::kClose
                                : TokenKind::kEquals;
    token.text = Take();
    return token;
  }
  if (first != '\'') {
    token.kind = TokenKind::kWord;
    while (at_ < script_.text.size() && !IsSpace(Peek()) && Peek() != '{' && Peek() != '}' &&
           Peek() != '=' && Peek() != '\'') {
      token.text += Take();
    }
  } else {
    token.kind = TokenKind::kQuoted;
    Take();
    for (;;) {
      if (at_ >= script_.text.size()) Fail(token, "the quote is not closed");
      const char c = Take();
      if (c != '\'') {
        token.text += c;
      } else if (Peek() == '\'') {
        token.text += Take();
      } else {
        break;
      }
    }
  }
  token.text = Replaced(token);
  return token;
}

std::string RegistrarLexer::Replaced(const RegistrarToken& token) const {
  std::string out;
  for (std::size_t i = 0; i < token.text.size();) {
    if (token.text[i] != '%') {
      out += token.text[i++];
      continue;
    }
    const std::size_t end = token.text.find('%', i + 1);
    if (end == std::string::npos)
      Fail(token, "a % without its partner; write %% for a percent sign");
    const std::string name = token.text.substr(i + 1, end - i - 1);
    if (name.empty()) {
      out += '%';
    } else {
      const auto found = replacements_.find(name);
      if (found == replacements_.end()) Fail(token, "the replacement %" + name + "% is not known");
      out += found->second;
    }
    i = end + 1;
  }
  return out;
}

}  // namespace sab
