#include <charconv>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>

#include "base/com_error.h"
#include "check/check.h"
#include "check/reporter.h"
#include "cli/check/check_options.h"
#include "cli/check/check_output.h"
#include "cli/commands.h"
#include "cli/display_text.h"
#include "cli/platform.h"
#include "cli/preview/page_server.h"
#include "cli/standard_input.h"
#include "cli/watched_files.h"
#include "platform/file.h"
#include "preview/preview.h"

namespace sabxml::cli {
namespace {

namespace check = sab::check;
namespace preview = sab::preview;
using sab::project::PathOf;

constexpr char kPreviewHelp[] =
    "Draws the user interfaces that FILE leads to as one HTML file, which needs no script and no\n"
    "network: ribbon, menus, toolbars, windows, keys. FILE is a user interface, an environment,\n"
    "whose commands give captions, or an application with all of its environments. What \"sabxml\n"
    "check\" finds is shown in its place. The server is not asked.\n"
    "\n"
    "Without -o the page is written to the current folder: application.preview.html for\n"
    "application.xml. A file .sabxml-check holds options as for \"sabxml check\".\n"
    "\n"
    "Examples:\n"
    "  sabxml preview application.xml --open\n"
    "  sabxml preview ui/drawing.xml -o drawing.html --app-mode 1\n"
    "  sabxml preview application.xml --watch --serve --open\n";

struct PreviewOptions {
  std::string file;
  std::string output;
  std::string images;
  std::string app_mode;
  bool opens = false;
  bool watches = false;
  bool serves = false;
};

// Reads, checks and draws; again whenever a file has changed.
class Previewer {
 public:
  explicit Previewer(const PreviewOptions& options) : options_(options) {
    page_options_.images = options.images;
    page_options_.app_mode = AppMode();
    if (!options.images.empty()) CheckFolder(options.images);
    if (options.file == kStandardInput) {
      std::string reason;
      auto bytes = source_.Read(PathToRead(options.file), reason);
      if (!bytes) throw Failure("the standard input: " + reason);
      source_.Open(options.file, std::move(*bytes));
    }
  }

  /// Raises Failure for what cannot be drawn, and Misunderstood for what a file .sabxml-check says.
  /// What is watched is known even then.
  /// @param state number of the page for its server; nothing for a page without one
  preview::Page Draw(std::optional<unsigned> state) {
    ReadOptions();
    sab::project::Project project(source_);
    return DrawProject(project, state);
  }

  /// All files on which the page depends, missing ones too.
  std::vector<std::string> Files() const {
    std::vector<std::string> files = files_;
    files.insert(files.end(), option_files_.begin(), option_files_.end());
    return files;
  }
  const std::string& Summary() const { return summary_; }

 private:
  // Each time, since they may change while the page is watched.
  void ReadOptions() {
    CheckOptions options;
    options.files = {options_.file};
    options.fail_on = "never";
    const auto own = PathOf(options_.file).replace_filename(".sabxml-check");
    option_files_ = {sab::project::TextOf(own.lexically_normal()),
                     check::OptionFileFor(options_.file)};
    AddConfiguredOptions(options);
    option_files_.insert(option_files_.end(), options.host_ids.begin(), options.host_ids.end());
    choices_ = ChoicesOf(options);
  }

  preview::Page DrawProject(sab::project::Project& project, std::optional<unsigned> state) {
    const sab::project::FileIndex start = project.Read(options_.file);
    files_.clear();
    for (sab::project::FileIndex i = 0; i < project.FileCount(); ++i) {
      files_.push_back(project.At(i).Path());
    }
    for (const sab::project::Link& link : project.Links()) {
      if (link.to == sab::project::kNoFile) files_.push_back(link.found.path);
    }
    CheckStart(project.At(start));
    const check::Findings findings = check::Check(project, choices_);
    page_options_.state = state;
    preview::Page page = preview::Draw(project, start, findings, choices_.host_ids, page_options_);
    files_.insert(files_.end(), page.pictures_looked_for.begin(), page.pictures_looked_for.end());
    if (page.views == 0) ThrowNothingToDraw(findings);
    Summarize(page, findings);
    return page;
  }

  std::optional<std::int32_t> AppMode() const {
    if (options_.app_mode.empty()) return std::nullopt;
    std::int32_t mode = 0;
    const char* const end = options_.app_mode.data() + options_.app_mode.size();
    const auto [stop, error] = std::from_chars(options_.app_mode.data(), end, mode);
    if (error != std::errc() || stop != end) {
      throw Misunderstood("--app-mode takes a whole number, not " + options_.app_mode);
    }
    return mode;
  }

  static void CheckFolder(const std::string& folder) {
    std::error_code error;
    if (std::filesystem::is_directory(PathOf(folder), error)) return;
    throw Failure("--images " + folder + ": there is no such folder");
  }

  void CheckStart(const sab::project::File& file) const {
    const std::string advice = "name a user interface, an environment or an application";
    if (const auto& failure = file.Failure()) {
      const bool is_read = failure->reason != sab::project::ReadFailure::Reason::kUnreadable;
      throw Failure(PlaceIn(file.Path(), failure->place) + ": " + failure->message +
                    (is_read ? "" : "; " + advice));
    }
    if (preview::CanBeDrawn(file)) return;
    if (!file.HasElements()) throw Failure(file.Path() + ": this is no XML; " + advice);
    const sab::xml::NodeIndex root = file.Xml().Root();
    const bool is_known = file.GetKind() != sab::formats::Kind::kNone;
    const std::string name(file.Xml().LocalNameOf(root));
    throw Failure(PlaceIn(file.Path(), file.PlaceOf(file.TagSpan(root).from)) + ": <" + name +
                  "> is the document element of " +
                  (is_known
                       ? "a file of another kind (" +
                             std::string(sab::formats::DocumentOfKind(file.GetKind()).about) + ")"
                       : "no file that has a user interface") +
                  "; " + advice);
  }

  [[noreturn]] void ThrowNothingToDraw(const check::Findings& findings) const {
    std::string reason = options_.file + ": this leads to no user interface that can be read";
    for (const check::Finding& finding : findings.list) {
      if (finding.severity != check::Severity::kError) continue;
      reason += "\n" + PlaceIn(finding.where.file, finding.where.start) + ": " + finding.message;
    }
    throw Failure(reason);
  }

  void Summarize(const preview::Page& page, const check::Findings& findings) {
    std::size_t errors = 0;
    std::size_t warnings = 0;
    for (const check::Finding& finding : findings.list) {
      errors += finding.severity == check::Severity::kError ? 1 : 0;
      warnings += finding.severity == check::Severity::kWarning ? 1 : 0;
    }
    summary_ = check::Counted(page.views, "user interface") + ", " +
               check::Counted(page.elements, "element") + ", " +
               check::Counted(page.pictures, "picture") + "; " + check::Counted(errors, "error") +
               ", " + check::Counted(warnings, "warning");
  }

  const PreviewOptions& options_;
  check::Choices choices_;
  preview::Options page_options_;
  sab::project::Source source_;
  std::vector<std::string> files_;
  std::vector<std::string> option_files_;
  std::string summary_;
};

class PreviewRun {
 public:
  explicit PreviewRun(const PreviewOptions& options) : options_(options), previewer_(options) {
    output_ = options.output;
    if (output_.empty() && !options.serves) {
      const std::string stem = options.file == kStandardInput
                                   ? "standard-input"
                                   : sab::project::TextOf(PathOf(options.file).stem());
      output_ = stem + ".preview.html";
    }
  }

  void Run() {
    if (options_.watches || options_.serves) CatchInterrupt();
    if (options_.serves) StartServer();
    Make();
    if (server_) Say("serving " + server_->Address() + " until Ctrl+C");
    if (options_.opens) {
      OpenForPerson(server_ ? server_->Address()
                            : sab::project::TextOf(std::filesystem::absolute(PathOf(output_))));
    }
    if (!options_.watches && !options_.serves) return;
    watched_.Watch(previewer_.Files());
    while (!WaitForInterrupt(WatchedFiles::kInterval)) {
      if (options_.watches) LookForChanges();
    }
  }

 private:
  void StartServer() {
    try {
      server_ = std::make_unique<PageServer>();
    } catch (const std::runtime_error& error) {
      throw Failure(error.what());
    }
  }

  void Make() {
    // Only a page that may change has the script.
    const bool is_live = server_ && options_.watches;
    ++state_;
    preview::Page page = previewer_.Draw(is_live ? std::optional(state_) : std::nullopt);
    if (output_ == kStandardInput) {
      std::cout << page.html;
    } else if (!output_.empty()) {
      RefuseToReplaceInput();
      WriteOutput(page.html);
      Say(output_ + ": " + previewer_.Summary());
    } else {
      Say(previewer_.Summary());
    }
    if (server_) server_->Show(std::move(page.html), state_);
  }

  void WriteOutput(const std::string& html) const {
    try {
      sab::ReplaceFileBytes(FromUtf8(output_), html);
    } catch (const sab::ComError& error) {
      throw Failure(std::string(error.what()) + "; name a file in another place with -o",
                    error.Code());
    }
  }

  void RefuseToReplaceInput() const {
    for (const std::string& file : previewer_.Files()) {
      std::error_code error;
      if (std::filesystem::equivalent(PathOf(file), PathOf(output_), error)) {
        throw Failure(output_ + ": the page is made from this file; name another one with -o");
      }
    }
  }

  void LookForChanges() {
    const std::vector<std::string> changed = watched_.Changed();
    if (changed.empty()) return;
    for (const std::string& file : changed) Say(file + " has changed");
    try {
      Make();
    } catch (const Failure& failure) {
      ReportFailure(failure);
    } catch (const Misunderstood& error) {
      ReportFailure(Failure(error.what()));
    }
    watched_.Watch(previewer_.Files());
  }

  // The page itself may be on the standard output.
  void Say(const std::string& text) const {
    (output_ == kStandardInput ? std::cerr : std::cout) << OnOneLine(text) << std::endl;
  }

  const PreviewOptions& options_;
  Previewer previewer_;
  std::string output_;
  std::unique_ptr<PageServer> server_;
  WatchedFiles watched_;
  unsigned state_ = 0;
};

void RunPreview(const PreviewOptions& options) {
  try {
    if (options.watches && options.file == kStandardInput) {
      throw Misunderstood("the standard input cannot be watched; name a file");
    }
    if (options.opens && options.output == kStandardInput && !options.serves) {
      throw Misunderstood("what is written to the standard output cannot be opened");
    }
    PreviewRun(options).Run();
  } catch (const Misunderstood& error) {
    std::cout.flush();
    std::cerr << "sabxml: " << AsMessage(error.what()) << "\nTry: sabxml preview --help\n";
    throw CLI::RuntimeError(2);
  } catch (const sab::ComError& error) {
    throw Failure(error.what(), error.Code());
  }
}

}  // namespace

void AddPreview(CLI::App& program) {
  auto options = std::make_shared<PreviewOptions>();
  CLI::App* const command =
      program.add_subcommand("preview", "Draw user interfaces as an HTML page");
  command->footer(kPreviewHelp);
  command->add_option("FILE", options->file, "User interface, environment or application")
      ->required();
  command->add_option("-o,--output", options->output,
                      "HTML file to write; - is the standard output");
  command->add_flag("--open", options->opens, "Show the page in the browser");
  command->add_option("--images", options->images,
                      "Folder of the pictures, instead of the folders of the files");
  command->add_option("--app-mode", options->app_mode,
                      "Draw only what this mode shows: what has one of its bits in AppMode");
  command->add_flag("--watch", options->watches,
                    "Write the page again when a file has changed, until Ctrl+C");
  command->add_flag("--serve", options->serves,
                    "Give the page to browsers on this machine, until Ctrl+C; with --watch it "
                    "loads itself again");
  command->callback([options] { RunPreview(*options); });
}

}  // namespace sabxml::cli
