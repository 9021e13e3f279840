#pragma once

#include <sabxml/retain_style.h>

#include <array>
#include <vector>

#include "base/bstr.h"
#include "common/config_document.h"

namespace sab {

/// Lists of style names, one for each type of style; types are numbered from 1.
class RetainedStyles {
 public:
  static constexpr INT kTypes = 12;
  static constexpr bool IsType(INT type) { return type >= 1 && type <= kTypes; }

  /// The list of a type; its address stays, its content is that of the moment.
  const VeRetainStyleInfo& OfType(INT type) const { return ListOf(type).info; }
  /// Whether an address, which is only compared, is that of a list of a type.
  bool IsOneOfThese(const VeRetainStyleInfo* info) const;
  /// Copies a list, which may be one of these. Raises std::bad_alloc and then changes nothing.
  void Replace(INT type, const VeRetainStyleInfo& info);

  /// Reads the lists whose elements are there; the others stay.
  void Read(const ConfigElement& element, Text& scratch);
  void Write(AppendedElement element) const;

 private:
  struct List {
    std::vector<Bstr> names;
    std::vector<BSTR> places;  // of the names, for those who read the list in place
    VeRetainStyleInfo info{0, nullptr};

    void Assign(std::vector<Bstr> new_names);
  };

  const List& ListOf(INT type) const { return lists_[static_cast<std::size_t>(type - 1)]; }

  std::array<List, kTypes> lists_;
};

}  // namespace sab
