#pragma once

#include <vector>

#include "base/bstr.h"
#include "common/config_document.h"

namespace sab {

/// On which layer entities of a class are drawn; in the order of the bytes of the identifiers.
class AutomaticLayers {
 public:
  struct Pair {
    GUID entity_class;
    Bstr layer;
  };

  const std::vector<Pair>& Pairs() const { return pairs_; }
  /// A class that is there already keeps its layer.
  void Add(const GUID& entity_class, TextView layer);
  void Clear() { pairs_.clear(); }
  /// Replaces all pairs by those that drafting starts with; the names of their layers are the
  /// host's string resources.
  void Seed();

  void Read(const ConfigElement& element, Text& scratch);
  void Write(AppendedElement element) const;

 private:
  std::vector<Pair> pairs_;
};

}  // namespace sab
