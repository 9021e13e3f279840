#pragma once

#include <optional>
#include <string>

#include "common/config_document.h"
#include "server/component_creator.h"

namespace sab {

/// What is used for the length of one Load call, and by all Load calls inside it.
class CatalogueLoading {
 public:
  CatalogueLoading();

  ComponentCreator& Creator() { return *ComponentCreator::Current(); }

 private:
  struct OwnCreator {
    OwnCreator() : scope(creator) {}

    ComponentCreator creator;
    ComponentCreator::Scope scope;
  };

  std::optional<OwnCreator> own_;  // none where the call around this one has one
};

/// The element that a Load method was handed. Raises ComError: kInvalidCatalogue for no handle,
/// E_INVALIDARG for one that does not hold.
/// @param is_late_bound whether a script calls, which can know no other handles than this server's
ConfigElement ElementToLoad(ULONG_PTR handle, bool is_late_bound, const char* class_name);

/// Raises ComError if a part, which may be another library's, failed to load; the message has what
/// the part itself said.
/// @param what which part: "symbol 3"
void CheckLoaded(HRESULT result, const std::string& what);

}  // namespace sab
