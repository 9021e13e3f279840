#pragma once

#include <stdexcept>
#include <string>

namespace sab::xml {

/// Why a text is no XML document, or cannot be read or written. Line and column count characters
/// from 1; both are 0 where there is no place to name.
class Error : public std::runtime_error {
 public:
  Error(unsigned line, unsigned column, const std::string& reason)
      : std::runtime_error(reason), line_(line), column_(column) {}
  explicit Error(const std::string& reason) : Error(0, 0, reason) {}

  unsigned Line() const { return line_; }
  unsigned Column() const { return column_; }

 private:
  unsigned line_;
  unsigned column_;
};

}  // namespace sab::xml
