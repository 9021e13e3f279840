#pragma once

#include "object/component.h"
#include "server/owned_object.h"

namespace sab {

// It was new with a capital I.
template <>
inline constexpr std::string_view kRegisteredName<coclass::VeUiParser> = "VeUIParser";

struct UiParserFields {
  Bstr ConfigurationPath;
  OwnedObject<coclass::VePrsUI> UI;
};

/// Reads a user-interface file into a tree of element objects, in one call. The tree lives as long
/// as anybody holds it; a second call adds to it.
class CVeUiParser : public Component<coclass::VeUiParser, UiParserFields> {
 public:
  HRESULT STDMETHODCALLTYPE GenerateUI() override;
  /// @return E_FAIL for a null place; E_OUTOFMEMORY
  HRESULT STDMETHODCALLTYPE get_UI(IVePrsUI** o_ppUI) override;
};

}  // namespace sab
