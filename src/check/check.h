#pragma once

#include <map>
#include <string>
#include <vector>

#include "check/finding.h"
#include "check/host_ids.h"
#include "check/settings.h"

namespace sab::check {

/// What a person chose.
struct Choices {
  std::map<Mistake, Severity> severities;  ///< kNone for a rule that is not to be looked at
  HostIds host_ids;
  std::vector<SettingsChoice> settings;  ///< blocks of the settings files
};

/// Looks at all documents of a project.
/// @param failures receives what of the choices is not understood, a message each
Findings Check(const project::Project& project, const Choices& choices,
               std::vector<std::string>& failures);

}  // namespace sab::check
