#include "framework/user_interface/ui_parser.h"

#include "base/com_error.h"
#include "framework/descriptor_reader.h"
#include "framework/user_interface/bindings.h"

namespace sab {

HRESULT CVeUiParser::GenerateUI() {
  return Guarded([this] {
    DescriptorReader file(fields.ConfigurationPath);
    const ConfigElement ui = file.Find("UI");
    if (!ui) {
      file.Fail(kInvalidUserInterface, "UI", "is not the document element: it must be <UI>");
    }
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
