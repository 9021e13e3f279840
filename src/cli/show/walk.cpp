#include "cli/show/walk.h"

#include <algorithm>
#include <utility>

#include "base/result_words.h"
#include "cli/host/object_reader.h"
#include "cli/show/element_counter.h"
#include "cli/show/tree_printers.h"
#include "cli/trace.h"

namespace sabxml::cli {

namespace formats = sab::formats;

namespace {

std::string NamedBy(const std::string& named_by, const std::string& named) {
  return named.empty() ? "" : "; " + named_by + " names it \"" + named + "\"";
}

}  // namespace

void Walk::AddJson(std::string_view name, const Json& value) {
  if (json_) json_->AddValue(name, value);
}

void Walk::Note(const Mention& mention, const Failure& failure) {
  failures_.emplace_back(failure.what() + NamedBy(mention.named_by, mention.named), failure.Code());
  lines_.back().content = sab::ResultWords(failure.Code());
  if (lines_.back().content.empty()) lines_.back().content = failure.what();
  lines_.back().has_failed = true;
  if (json_) AddFailure(*json_, failure);
}

void Walk::Follow(const std::string& file, const Names& names) {
  for (const auto& [path, kind] : names) {
    const sab::project::PathFinder::Found found = finder_.Find(file, path);
    if (found.differs_in_case) {
      warnings_.push_back(found.path + ": taken, though the letter case differs" +
                          NamedBy(file, path));
    }
    Visit({}, {found.path, path, file}, *kind);
  }
}

void Walk::Read(const Mention& mention, const DescriptorKind& kind) {
  const ComPtr<IDispatch> parser = LoadDescriptor(server_, kind, mention.file);
  Names names;
  formats::ForEachRule(kind.content, [&](const formats::Rule& rule) {
    if (rule.role != formats::Role::kLeadsTo) return;
    for (std::string& path : ReadTexts(*parser.Get(), rule.member)) {
      names.emplace_back(std::move(path), &formats::DocumentOfKind(rule.leads_to));
    }
  });
  ElementCounter counter(json_);
  ObjectReader reader(counter);
  reader.Read(*parser.Get(), "values");
  lines_.back().content = counter.Words();
  for (const std::string& refusal : reader.Refusals()) {
    failures_.emplace_back(mention.file + ": " + refusal);
  }
  if (json_) {
    json_->BeginObject("counts", {}, 0);
    for (const auto& [class_name, count] : counter.Counts()) json_->AddValue(class_name, count);
    json_->End();
    json_->BeginList("links");
  }
  Follow(mention.file, names);
  if (json_) json_->End();
}

void Walk::Visit(std::string_view name, const Mention& mention, const DescriptorKind& kind) {
  progress_.Set(std::to_string(seen_.size()) + " files read; reading " + mention.file);
  lines_.push_back({depth_++, mention.file, std::string(kind.about), {}, false});
  if (json_) json_->BeginObject(name, {}, 0);
  AddJson("file", mention.file);
  if (!mention.named.empty()) AddJson("named", mention.named);
  AddJson("class", std::string(kind.class_name));
  const auto [seen, is_first] = seen_.try_emplace(std::string(kind.root) + " " + mention.file);
  if (is_first) {
    Trace("opens " + mention.file +
          (mention.named.empty() ? ": the application that is named"
                                 : NamedBy(mention.named_by, mention.named).replace(0, 1, ":")));
    try {
      Read(mention, kind);
    } catch (const Failure& failure) {
      seen->second = failure;
      Note(mention, failure);
    }
  } else if (seen->second) {
    Note(mention, *seen->second);
  } else {
    lines_.back().content = "as above";
    AddJson("repeated", true);
  }
  if (json_) json_->End();
  --depth_;
}

std::size_t Walk::FailedFileCount() const {
  return static_cast<std::size_t>(std::count_if(
      seen_.begin(), seen_.end(), [](const auto& file) { return file.second.has_value(); }));
}

void Walk::Run(const std::string& file) {
  if (json_) json_->BeginObject({}, {}, 0);
  Visit("application", {file, {}, {}}, formats::DocumentOfKind(formats::Kind::kApplication));
  if (!json_) return;
  json_->AddValue("files", seen_.size());
  json_->AddValue("failed_files", FailedFileCount());
  json_->BeginList("warnings");
  for (const std::string& warning : warnings_) json_->AddValue({}, warning);
  json_->End();
  json_->End();
}

}  // namespace sabxml::cli
