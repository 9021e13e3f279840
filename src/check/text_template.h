#pragma once

#include "check/reporter.h"

namespace sab::check {

/// The sections of a text template.
void CheckTextTemplate(Reporter& reporter, project::FileIndex file);

}  // namespace sab::check
