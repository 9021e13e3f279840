#include "check/check.h"

#include <iterator>
#include <utility>

#include "check/catalogue.h"
#include "check/elements.h"
#include "check/files.h"
#include "check/keys.h"
#include "check/names.h"
#include "check/suppression.h"
#include "check/text_template.h"

namespace sab::check {

using formats::Kind;

// The checks that look at one file of a schema only.
class FileChecks {
 public:
  FileChecks(Reporter& reporter, KnownFindings* known) : reporter_(reporter), known_(known) {}

  void Check(project::FileIndex index) {
    const std::shared_ptr<const project::File>& file = reporter_.GetProject().Shared(index);
    if (!known_) return CheckAnew(index, *file);
    const auto [place, is_new] = known_->files_.try_emplace(file.get());
    KnownFindings::Entry& entry = place->second;
    entry.is_used = true;
    if (!is_new) {
      for (Finding finding : entry.findings) {
        finding.file = index;
        reporter_.AddAgain(std::move(finding));
      }
      return;
    }
    const std::size_t before = reporter_.All().size();
    CheckAnew(index, *file);
    entry.file = file;
    const auto all = reporter_.All();
    entry.findings.assign(all.begin() + static_cast<std::ptrdiff_t>(before), all.end());
  }

  // Forgets what files had that are no longer in the project.
  void Finish() {
    if (!known_) return;
    for (auto entry = known_->files_.begin(); entry != known_->files_.end();) {
      const bool is_used = std::exchange(entry->second.is_used, false);
      entry = is_used ? std::next(entry) : known_->files_.erase(entry);
    }
  }

 private:
  void CheckAnew(project::FileIndex index, const project::File& file) {
    std::vector<Resource> resources;
    Elements(reporter_, index).Check(resources);
    CheckResources(reporter_, index, finder_, resources);
    if (file.GetKind() == Kind::kUserInterface) CheckKeys(reporter_, index);
    if (file.GetKind() == Kind::kCatalogue) CheckCatalogue(reporter_, index);
  }

  Reporter& reporter_;
  KnownFindings* const known_;
  project::PathFinder finder_;
};

Findings Check(const project::Project& project, const Choices& choices, KnownFindings* known) {
  Reporter reporter(project);
  FileChecks checks(reporter, known);
  CheckDocuments(reporter);
  for (project::FileIndex index = 0; index < project.FileCount(); ++index) {
    const project::File& file = project.At(index);
    if (file.GetKind() == Kind::kTextTemplate && !file.Failure()) {
      CheckTextTemplate(reporter, index);
    } else if (file.HasSchema()) {
      checks.Check(index);
    }
  }
  checks.Finish();
  CheckSettings(reporter, choices.settings, choices.has_all_settings_files);
  CheckLinks(reporter);
  Names names(reporter, choices.host_ids);
  names.CheckDefinitions();
  names.CheckReferences();
  Findings findings = reporter.Take();
  Suppress(project, findings);
  for (Finding& finding : findings.list) {
    const auto chosen = choices.severities.find(finding.mistake);
    if (chosen != choices.severities.end()) finding.severity = chosen->second;
  }
  std::erase_if(findings.list,
                [](const Finding& finding) { return finding.severity == Severity::kNone; });
  return findings;
}

}  // namespace sab::check
