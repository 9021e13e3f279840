#pragma once

#include <optional>
#include <string>

#include "automation/takes_addresses.h"
#include "common/config_element.h"
#include "platform/node_handle.h"
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
/// @param node the handle of a node, as the parser of its owner hands it on
HandedElement ElementToLoad(const Address& node);

/// Raises ComError if a part, which may be another library's, failed to load; the message has what
/// the part itself said.
/// @param what which part: "symbol 3"
void CheckLoaded(HRESULT result, const std::string& what);

}  // namespace sab
