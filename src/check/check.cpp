#include "check/check.h"

#include "check/catalogue.h"
#include "check/elements.h"
#include "check/files.h"
#include "check/keys.h"
#include "check/names.h"
#include "check/suppression.h"
#include "check/text_template.h"

namespace sab::check {

using formats::Kind;

Findings Check(const project::Project& project, const Choices& choices,
               std::vector<std::string>& failures) {
  Reporter reporter(project);
  project::PathFinder finder;
  CheckDocuments(reporter);
  for (project::FileIndex index = 0; index < project.FileCount(); ++index) {
    const project::File& file = project.At(index);
    if (file.GetKind() == Kind::kTextTemplate && !file.Failure()) {
      CheckTextTemplate(reporter, index);
    } else if (file.GetKind() == Kind::kSettings && file.HasElements()) {
      for (std::string& failure : CheckSettings(reporter, index, choices.settings)) {
        failures.push_back(std::move(failure));
      }
    } else if (file.HasSchema()) {
      std::vector<Resource> resources;
      Elements(reporter, index).Check(resources);
      CheckResources(reporter, index, finder, resources);
      if (file.GetKind() == Kind::kUserInterface) CheckKeys(reporter, index);
      if (file.GetKind() == Kind::kCatalogue) CheckCatalogue(reporter, index);
    }
  }
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
