#pragma once

#include "base/com_error.h"
#include "object/component.h"
#include "server/owned_object.h"

namespace sab {

// It was new with a capital I.
template <>
inline constexpr std::string_view kRegisteredName<coclass::VeUiParser> = "VeUIParser";

/// The tree of element objects, handed out with the manner that hosts know: E_FAIL for a null
/// place.
struct UserInterfaceTree : OwnedObject<coclass::VePrsUI> {};

inline HRESULT GetField(UserInterfaceTree& field, IVePrsUI** out) {
  if (!out) throw ComError(E_FAIL, "There is no place for the user interface: it is null.");
  return field.CopyTo(out);
}

/// Reads a user-interface file into a tree of element objects, in one call. The tree lives as long
/// as any reference to it; a second call adds to it.
struct UiParserFields {
  Bstr ConfigurationPath;
  UserInterfaceTree UI;

  void GenerateUI();
};
using CVeUiParser = Component<coclass::VeUiParser, UiParserFields>;

}  // namespace sab
