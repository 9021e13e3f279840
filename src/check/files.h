#pragma once

#include <vector>

#include "check/elements.h"
#include "check/reporter.h"

namespace sab::check {

/// Files that are not read, are broken or are of another kind than they should be.
void CheckDocuments(Reporter& reporter);

/// The paths to other documents.
void CheckLinks(Reporter& reporter);

/// Folders, files and pictures that are no documents.
void CheckResources(Reporter& reporter, project::FileIndex file, project::PathFinder& finder,
                    const std::vector<Resource>& resources);

}  // namespace sab::check
