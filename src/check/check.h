#pragma once

#include <map>
#include <memory>
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
  /// Whether a block is missing that no file of the project has; else it may be in another file.
  bool has_all_settings_files = true;
};

/// What was found in single files, so that of a project that is checked again only those are looked
/// at that have changed. What the disk has besides documents is taken to be the same.
class KnownFindings {
 public:
  void Forget() { files_.clear(); }

 private:
  friend class FileChecks;

  struct Entry {
    std::shared_ptr<const project::File> file;
    std::vector<Finding> findings;
    bool is_used = false;
  };
  std::map<const project::File*, Entry> files_;
};

/// Looks at all documents of a project.
/// @param choices of ChoicesOf; raises xml::Error for a node path that is not well-formed
/// @param known keeps what is found for the next check; null where there is none
Findings Check(const project::Project& project, const Choices& choices,
               KnownFindings* known = nullptr);

}  // namespace sab::check
