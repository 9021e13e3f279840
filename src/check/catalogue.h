#pragma once

#include "check/reporter.h"

namespace sab::check {

/// What a catalogue of standards has more rules for than other documents: its symbols, and elements
/// that count whatever their names.
void CheckCatalogue(Reporter& reporter, project::FileIndex file);

}  // namespace sab::check
