#pragma once

#include <vector>

#include "base/bstr.h"
#include "common/config_document.h"

namespace sab {

/// The visual styles of the product: identifiers and names, in the order in which they came.
class VisualStyles {
 public:
  struct Pair {
    Bstr id;
    Bstr name;
  };

  const std::vector<Pair>& Pairs() const { return pairs_; }
  /// A known identifier gets the new name.
  void Add(TextView id, TextView name);

  void Read(const ConfigElement& element, Text& scratch);
  /// A pair without an identifier or a name is left out.
  void Write(AppendedElement element) const;

 private:
  std::vector<Pair> pairs_;
};

}  // namespace sab
