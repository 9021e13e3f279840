#pragma once

#include "base/text.h"

namespace sab::testing {

/// A help text as the type library holds it. The library's texts are GBK; the system reads them in
/// the code page of the machine, which need not be Chinese.
Text HelpAsStored(TextView as_read);

}  // namespace sab::testing
