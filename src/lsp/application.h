#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "check/check.h"
#include "lsp/file_cache.h"
#include "project/project.h"

namespace sab::lsp {

/// The documents that one of them leads to: an application, or what there is of one. It is read
/// twice: as a host does, for what is wrong with it, and tolerantly, for everything else. Files
/// that are not broken are the same in both.
class Application {
 public:
  /// @param source,files live longer
  /// @param root path of the document that leads to all
  Application(const project::Source& source, FileCache& files, std::string root);

  const std::string& Root() const { return root_; }
  /// As it can be understood while it is being written.
  const project::Project& Tolerant();
  /// As a host reads it.
  const project::Project& Strict();
  bool Contains(const std::string& path) { return Tolerant().Find(path) != project::kNoFile; }

  /// A text has changed.
  void Touch(const std::string& path);
  /// Files on disk may have changed, or a text was opened or closed.
  void Forget();

  /// What is wrong, in the order of "sabxml check"; nothing for a file of no known kind. Valid
  /// until something changes.
  const check::Findings& Findings();
  bool IsChecked() const { return is_checked_; }
  const check::Choices& Choices() const { return choices_; }
  /// Why the options beside the application are not used; empty where they are.
  const std::string& OptionFailure() const { return option_failure_; }

 private:
  struct Reading {
    project::Reading manner;
    std::unique_ptr<project::Project> project;
    std::set<std::string> changed;
  };

  const project::Project& Current(Reading& reading);
  void ReadOptions();
  formats::Kind KindOfRoot();

  const project::Source& source_;
  FileCache& files_;
  const std::string root_;
  Reading tolerant_{project::Reading::kTolerant, nullptr, {}};
  Reading strict_{project::Reading::kStrict, nullptr, {}};
  check::Choices choices_;
  std::string option_failure_;
  check::KnownFindings known_;
  check::Findings findings_;
  bool is_checked_ = false;
};

}  // namespace sab::lsp
