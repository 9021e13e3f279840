#pragma once

#include <string>
#include <vector>

#include "client/late_call.h"

namespace sab::testing {

using LateResult = client::CallResult;
using LateValue = client::Value;
using client::InvokeParameters;

}  // namespace sab::testing
