#pragma once

#include "check/finding.h"

namespace sab::check {

/// Takes away what "sabxml-ignore RULE" in a comment says about the element after it, its content
/// included; without a rule all that is found there. Notes comments that name no rule.
void Suppress(const project::Project& project, Findings& findings);

}  // namespace sab::check
