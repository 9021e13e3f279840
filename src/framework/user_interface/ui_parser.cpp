#include "framework/user_interface/ui_parser.h"

#include "framework/user_interface/bindings.h"

namespace sab {

void UiParserFields::GenerateUI() {
  DocumentReader file(formats::kUserInterfaceDocument, ConfigurationPath.View());
  const ConfigElement ui = file.Root();
  ComponentCreator creator;
  const ComponentCreator::Scope scope(creator);
  Reading reading;
  ReadElements(reading, ui, UserInterface::kContent, OwnerPointer(*UI));
}

}  // namespace sab
