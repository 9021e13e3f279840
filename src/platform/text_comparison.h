#pragma once

#include "base/text.h"

namespace sab {

/// Whether two texts are the same for a person who does not look at the case of letters: on Windows
/// by the rules of the user's locale, elsewhere by Unicode's simple case folding.
bool EqualsIgnoringCase(TextView a, TextView b);

}  // namespace sab
