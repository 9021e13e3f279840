#pragma once

#include "text/distance.h"

namespace sabxml::cli {

using sab::text::DidYouMean;

}  // namespace sabxml::cli
