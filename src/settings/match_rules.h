#pragma once

#include <vector>

#include "base/bstr.h"
#include "common/config_document.h"

namespace sab {

/// Which values belong to which key, in the order in which they came. Keys are compared exactly;
/// the values of a key without regard to case.
class MatchRules {
 public:
  struct Entry {
    Bstr key;
    std::vector<Bstr> values;
  };

  const std::vector<Entry>& Entries() const { return entries_; }
  /// Adds a value to its key unless it is there already; a new key comes last.
  void Insert(TextView key, TextView value);
  /// Removes a value, and its key with the last one; does nothing where there is no such value.
  void Remove(TextView key, TextView value);
  void Clear() { entries_.clear(); }

  void Read(const ConfigElement& element, Text& scratch);
  void Write(AppendedElement element) const;

 private:
  Entry& EntryOf(TextView key);

  std::vector<Entry> entries_;
};

}  // namespace sab
