#include "framework/user_interface/ui_parser.h"

#include "framework/user_interface/bindings.h"

namespace sab {

HRESULT CVeUiParser::GenerateUI() {
  return Guarded([this] {
    DocumentReader file(formats::kUserInterfaceDocument, fields.ConfigurationPath.View());
    const ConfigElement ui = file.Root();
    ComponentCreator creator;
    const ComponentCreator::Scope scope(creator);
    Reading reading;
    ReadElements(reading, ui, UserInterface::kContent, OwnerPointer(*fields.UI));
  });
}

HRESULT CVeUiParser::get_UI(IVePrsUI** o_ppUI) {
  if (!o_ppUI) return Fail(E_FAIL, "There is no place for the user interface: it is null.");
  return Reported(fields.UI.CopyTo(o_ppUI));
}

}  // namespace sab
