#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "check/finding.h"
#include "check/host_ids.h"
#include "project/project.h"

namespace sab::preview {

struct Options {
  std::string images;                    ///< folder of all pictures; empty for those of the files
  std::optional<std::int32_t> app_mode;  ///< draws only what this mode shows
  /// For a page that a server gives: number of its state. The page loads itself again when the
  /// server has another one. Nothing for a page without a script.
  std::optional<unsigned> state;
};

/// A page and what it was made of.
struct Page {
  std::string html;
  std::size_t views = 0;                         ///< user interfaces, each with one environment
  std::size_t elements = 0;                      ///< that were drawn
  std::size_t pictures = 0;                      ///< that were embedded
  std::vector<std::string> pictures_looked_for;  ///< paths, of missing ones too
};

/// Whether a file is a user interface or of a kind that leads to environments.
bool CanBeDrawn(const project::File& file);

/// Draws the user interfaces that a file leads to as one HTML file that needs nothing else: no
/// script, no other file, no network.
/// @param start a file that can be drawn
/// @param findings what is wrong with the project; shown at the elements and as a list
Page Draw(const project::Project& project, project::FileIndex start,
          const check::Findings& findings, const check::HostIds& host_ids, const Options& options);

}  // namespace sab::preview
