#include "check/settings_blocks.h"

#include <algorithm>
#include <map>

#include "check/markup.h"
#include "text/distance.h"
#include "xml/path.h"

namespace sab::check {
namespace {

using formats::Kind;
using project::File;
using xml::kNoNode;
using xml::NodeIndex;

// The name with which a path begins, its first step; empty for a path that is more than steps.
std::string_view TakeStep(std::string_view& path) {
  if (path.starts_with('/')) path.remove_prefix(1);
  const std::string_view step = path.substr(0, path.find('/'));
  path.remove_prefix(step.size());
  return step;
}

std::vector<std::string_view> FirstStepsOf(const std::vector<SettingsChoice>& choices) {
  std::vector<std::string_view> steps;
  for (const SettingsChoice& choice : choices) {
    if (!xml::IsChildSteps(choice.node_path)) continue;
    std::string_view path = choice.node_path;
    steps.push_back(TakeStep(path));
  }
  return steps;
}

bool HasBlock(const File& file, const std::vector<SettingsChoice>& choices) {
  xml::Paths paths(file.Xml());
  return std::ranges::any_of(choices, [&paths](const SettingsChoice& choice) {
    return !choice.node_path.empty() && paths.SelectFirst(choice.node_path) != kNoNode;
  });
}

// Where the path of a block ends in a file that lacks it.
struct PathEnd {
  std::size_t found_steps = 0;
  NodeIndex last = kNoNode;     // the last element that was found, or the document element
  std::string_view step;        // for which there is no element
  NodeIndex similar = kNoNode;  // an element whose name is similar
  NodeIndex foreign = kNoNode;

  std::size_t Score() const {
    return 2 * found_steps + (similar != kNoNode || foreign != kNoNode ? 1 : 0);
  }
  NodeIndex Place() const {
    return foreign != kNoNode ? foreign : similar != kNoNode ? similar : last;
  }
};

PathEnd EndOf(const xml::Document& xml, const std::set<NodeIndex>& blocks, std::string_view path) {
  PathEnd end;
  end.last = xml.Root();
  if (!xml::IsChildSteps(path)) return end;
  for (std::vector<NodeIndex> reached{kNoNode}; !path.empty(); ++end.found_steps) {
    end.step = TakeStep(path);
    std::vector<NodeIndex> next;
    // What another path leads to is not meant by this one.
    std::vector<NodeIndex> others;
    std::vector<std::string_view> names;
    for (const NodeIndex parent : reached) {
      for (NodeIndex child = xml.FirstChildElement(parent); child != kNoNode;
           child = xml.NextElement(child)) {
        const bool is_foreign = xml.IsInNamespace(child);
        if (xml.LocalNameOf(child) == end.step) {
          if (!is_foreign) next.push_back(child);
          if (is_foreign && end.foreign == kNoNode) end.foreign = child;
        } else if (!is_foreign && !blocks.contains(child)) {
          others.push_back(child);
          names.push_back(xml.NameOf(child));
        }
      }
    }
    if (next.empty()) {
      const std::string_view nearest = text::FindNearest(end.step, names).word;
      const auto similar = std::ranges::find(names, nearest);
      if (similar != names.end())
        end.similar = others[static_cast<std::size_t>(similar - names.begin())];
      break;
    }
    end.foreign = kNoNode;
    end.last = next.front();
    reached = std::move(next);
  }
  return end;
}

class MissingBlocks {
 public:
  MissingBlocks(Reporter& reporter, std::span<const SettingsBlocks> files,
                const std::vector<SettingsChoice>& choices, bool are_all)
      : are_all_(are_all),
        reporter_(reporter),
        files_(files),
        choices_(choices),
        first_steps_(FirstStepsOf(choices)) {}

  void Report() {
    for (const SettingsBlocks& file : files_) {
      if (!IsStrange(file)) known_.push_back(&file);
    }
    if (known_.empty()) return;
    for (std::size_t i = 0; i < choices_.size(); ++i) {
      const bool is_found = std::ranges::any_of(
          files_, [i](const SettingsBlocks& file) { return !file.by_choice[i].empty(); });
      if (!is_found) ReportMissing(choices_[i]);
    }
    for (auto& [place, missing] : missing_) {
      if (missing.others > 0) {
        missing.words.message += "; nor are those of " + Counted(missing.others, "other block");
      }
      reporter_.Add(Mistake::kSettingsBadStructure, place.first, missing.span,
                    std::move(missing.words));
    }
  }

 private:
  struct Missing {
    project::Span span;
    Words words;
    std::size_t others = 0;  // for which the same element is missing
  };

  const xml::Document& XmlOf(const SettingsBlocks& file) const {
    return reporter_.GetProject().At(file.file).Xml();
  }

  // A document element with which no path begins is one mistake, however many there are.
  bool IsStrange(const SettingsBlocks& blocks) {
    if (!blocks.all.empty() || first_steps_.size() < choices_.size()) return false;
    const File& file = reporter_.GetProject().At(blocks.file);
    const NodeIndex root = file.Xml().Root();
    const std::string_view name = file.Xml().LocalNameOf(root);
    if (std::ranges::find(first_steps_, name) != first_steps_.end()) {
      if (!file.Xml().IsInNamespace(root)) return false;
      ReportForeign(reporter_, blocks.file, root);
      covered_.insert(name);
      return true;
    }
    const text::Nearest nearest = text::FindNearest(name, first_steps_);
    Words words{"the document element " + Tag(name) +
                " is none with which a path of the named settings begins: nothing in it is read"};
    if (!nearest.word.empty()) {
      words.suggestion = Tag(nearest.word);
      covered_.insert(nearest.word);
      // One path alone may be misspelt itself.
      const auto paths = std::ranges::count(first_steps_, nearest.word);
      if (nearest.is_only && paths > 1) words.fix = Fix{root, std::string(nearest.word), {}};
    }
    reporter_.Add(Mistake::kWrongDocumentElement, blocks.file, file.TagSpan(root),
                  std::move(words));
    return true;
  }

  void ReportMissing(const SettingsChoice& choice) {
    std::string_view rest = choice.node_path;
    if (covered_.contains(TakeStep(rest))) return;
    const SettingsBlocks* best = nullptr;
    PathEnd end;
    std::size_t files_with_similar = 0;
    for (const SettingsBlocks* const file : known_) {
      const PathEnd here = EndOf(XmlOf(*file), file->all, choice.node_path);
      if (here.similar != kNoNode) ++files_with_similar;
      if (best && here.Score() <= end.Score()) continue;
      best = file;
      end = here;
    }
    const NodeIndex place = end.Place();
    if (end.foreign != kNoNode) {
      if (foreign_.emplace(best->file, place).second) ReportForeign(reporter_, best->file, place);
      return;
    }
    if (end.similar == kNoNode && !are_all_) return;
    const auto [known, is_new] = missing_.try_emplace({best->file, {place, end.step}});
    Missing& missing = known->second;
    if (!is_new) {
      ++missing.others;
      return;
    }
    missing.span = reporter_.GetProject().At(best->file).TagSpan(place);
    missing.words.message = "the path " + choice.node_path + " of " + choice.class_name +
                            " leads to no element: its values are not read";
    if (end.similar == kNoNode) return;
    const std::string name(XmlOf(*best).NameOf(end.similar));
    if (files_with_similar > 1 || LeadsToBlock(*best, end.similar)) {
      const auto at = static_cast<std::size_t>(end.step.data() - choice.node_path.data());
      missing.words.message += ", since the path seems to be misspelt";
      missing.words.suggestion = choice.node_path;
      missing.words.suggestion.replace(at, end.step.size(), name);
    } else {
      missing.words.message += ", since either " + Tag(name) + " or the path is misspelt";
      missing.words.suggestion = Tag(end.step);
    }
  }

  bool LeadsToBlock(const SettingsBlocks& file, NodeIndex element) const {
    const xml::Document& xml = XmlOf(file);
    return std::ranges::any_of(file.all, [&xml, element](NodeIndex node) {
      while (node != kNoNode && node != element) node = xml.ParentOf(node);
      return node == element;
    });
  }

  const bool are_all_;
  Reporter& reporter_;
  const std::span<const SettingsBlocks> files_;
  const std::vector<SettingsChoice>& choices_;
  const std::vector<std::string_view> first_steps_;
  std::vector<const SettingsBlocks*> known_;  // files whose document element is right
  std::set<std::string_view> covered_;        // first steps that a reported element is meant for
  std::set<std::pair<project::FileIndex, NodeIndex>> foreign_;
  std::map<std::pair<project::FileIndex, std::pair<NodeIndex, std::string_view>>, Missing> missing_;
};

}  // namespace

Kind KindToRead(const File& probe, const std::vector<SettingsChoice>& choices) {
  if (choices.empty() || !probe.HasElements() || probe.KindOfRoot() != Kind::kNone) {
    return Kind::kNone;
  }
  if (probe.GetKind() == Kind::kNone || HasBlock(probe, choices)) return Kind::kSettings;
  // Its document element is near that of a document; it may be nearer to that of the settings.
  std::vector<std::string_view> roots = FirstStepsOf(choices);
  roots.push_back(formats::DocumentOfKind(probe.GetKind()).root);
  const std::string_view name = probe.Xml().LocalNameOf(probe.Xml().Root());
  const bool is_document = text::FindNearest(name, roots).word == roots.back();
  return is_document ? Kind::kNone : Kind::kSettings;
}

std::vector<SettingsBlocks> FindSettingsBlocks(const project::Project& project,
                                               const std::vector<SettingsChoice>& choices) {
  std::vector<SettingsBlocks> files;
  for (project::FileIndex index = 0; index < project.FileCount(); ++index) {
    const File& file = project.At(index);
    if (file.GetKind() != Kind::kSettings || !file.HasElements()) continue;
    SettingsBlocks& blocks = files.emplace_back(SettingsBlocks{index, {}, {}});
    xml::Paths paths(file.Xml());
    for (const SettingsChoice& choice : choices) {
      const std::vector<NodeIndex>& nodes = blocks.by_choice.emplace_back(
          choice.node_path.empty() ? std::vector<NodeIndex>{kNoNode}
                                   : paths.SelectAll(choice.node_path));
      blocks.all.insert(nodes.begin(), nodes.end());
    }
  }
  return files;
}

void ReportMissingBlocks(Reporter& reporter, std::span<const SettingsBlocks> files,
                         const std::vector<SettingsChoice>& choices, bool are_all) {
  MissingBlocks(reporter, files, choices, are_all).Report();
}

}  // namespace sab::check
