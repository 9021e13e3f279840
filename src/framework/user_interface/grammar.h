#pragma once

#include "framework/user_interface/element_reader.h"

namespace sab {

/// The grammar of a user-interface file, from its document element "UI" down. Its owner is an
/// IVePrsUI.
extern const ElementGrammar kUserInterfaceGrammar;

}  // namespace sab
