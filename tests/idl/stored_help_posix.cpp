#include "idl/stored_help.h"

namespace sab::testing {

Text HelpAsStored(TextView as_read) { return Text(as_read); }

}  // namespace sab::testing
