#include "lsp/application.h"

#include "check/options.h"

namespace sab::lsp {

using formats::Kind;
using project::FileIndex;
using project::Project;

Application::Application(const project::Source& source, FileCache& files, std::string root)
    : source_(source), files_(files), root_(std::move(root)) {
  ReadOptions();
}

void Application::ReadOptions() {
  choices_ = {};
  option_failure_.clear();
  try {
    check::Options options;
    const std::string file = check::OptionFileFor(root_);
    if (!file.empty()) AddOptionFile(options, file);
    choices_ = ChoicesOf(options);
    choices_.has_all_settings_files = false;  // an editor looks at one
  } catch (const check::OptionError& error) {
    option_failure_ = error.what();
  }
}

Kind Application::KindOfRoot() {
  if (choices_.settings.empty()) return Kind::kNone;
  return KindToRead(*files_.Get(root_, Kind::kNone, project::Reading::kTolerant),
                    choices_.settings);
}

const Project& Application::Tolerant() { return Current(tolerant_); }
const Project& Application::Strict() { return Current(strict_); }

const Project& Application::Current(Reading& reading) {
  if (reading.project) {
    for (const std::string& path : reading.changed) {
      bool is_replaced = true;
      for (FileIndex i = 0; i < reading.project->FileCount() && is_replaced; ++i) {
        const project::File& file = reading.project->At(i);
        if (file.Path() != path) continue;
        // A document that is named is asked for as what it is named as; the root is recognised.
        const Kind kind = i == 0 ? KindOfRoot() : file.GetKind();
        is_replaced = reading.project->Replace(i, files_.Get(path, kind, reading.manner));
      }
      if (!is_replaced) {
        reading.project.reset();
        break;
      }
    }
  }
  reading.changed.clear();
  if (!reading.project) {
    reading.project = std::make_unique<Project>(
        source_, [this, manner = reading.manner](const std::string& path, Kind kind) {
          return files_.Get(path, kind, manner);
        });
    reading.project->Read(root_, KindOfRoot());
  }
  return *reading.project;
}

void Application::Touch(const std::string& path) {
  tolerant_.changed.insert(path);
  strict_.changed.insert(path);
  is_checked_ = false;
}

void Application::Forget() {
  tolerant_.project.reset();
  strict_.project.reset();
  known_.Forget();
  is_checked_ = false;
  ReadOptions();
}

const check::Findings& Application::Findings() {
  if (!is_checked_) {
    // An editor has files of other kinds, too.
    const project::File& root = Tolerant().At(0);
    const bool is_ours = root.GetKind() != Kind::kNone;
    findings_ = is_ours ? Check(Strict(), choices_, &known_) : check::Findings();
    is_checked_ = true;
  }
  return findings_;
}

}  // namespace sab::lsp
