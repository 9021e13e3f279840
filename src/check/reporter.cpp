#include "check/reporter.h"

#include <algorithm>
#include <tuple>

#include "text/utf.h"

namespace sab::check {

Location Reporter::At(project::FileIndex file, project::Span span) const {
  const project::File& at = project_.At(file);
  return {at.Path(), at.PlaceOf(span.from), at.PlaceOf(span.to)};
}

void Reporter::Add(Mistake mistake, project::FileIndex file, project::Span span, Words words) {
  Add(mistake, RuleFor(mistake).severity, file, span, std::move(words));
}

void Reporter::Add(Mistake mistake, Severity severity, project::FileIndex file, project::Span span,
                   Words words) {
  findings_.list.push_back({mistake, severity, At(file, span), std::move(words.message),
                            std::move(words.suggestion), std::move(words.related),
                            std::move(words.fix), std::move(words.paths), file, span.from});
}

void Reporter::AddAt(Mistake mistake, project::FileIndex file, xml::Place place, Words words) {
  const xml::Place end{place.line, place.column == 0 ? 0 : place.column + 1};
  findings_.list.push_back({mistake,
                            RuleFor(mistake).severity,
                            {project_.At(file).Path(), place, end},
                            std::move(words.message),
                            std::move(words.suggestion),
                            std::move(words.related),
                            std::move(words.fix),
                            std::move(words.paths),
                            file,
                            0});
}

void Reporter::Note(const std::string& text) {
  if (noted_.insert(text).second) findings_.notes.push_back(text);
}

bool Reporter::MayLackDefinitions(project::FileIndex file) const {
  constexpr Mistake kHiding[] = {Mistake::kNotWellFormed,        Mistake::kBadEncoding,
                                 Mistake::kWrongDocumentElement, Mistake::kRequiredMissing,
                                 Mistake::kIncompleteEntry,      Mistake::kEmptyValue,
                                 Mistake::kFileNotFound,         Mistake::kPathNotRelative,
                                 Mistake::kSameFileTwice,        Mistake::kDuplicateId};
  return std::ranges::any_of(findings_.list, [&](const Finding& finding) {
    return finding.file == file && std::ranges::find(kHiding, finding.mistake) != std::end(kHiding);
  });
}

Findings Reporter::Take() {
  std::vector<Finding> found = std::exchange(findings_.list, {});
  std::vector<Finding*> order;
  order.reserve(found.size());
  for (Finding& finding : found) order.push_back(&finding);
  std::ranges::stable_sort(order, {}, [](const Finding* finding) {
    const xml::Place start = finding->where.start;
    return std::tuple(finding->file, start.line, start.column, finding->mistake);
  });
  // A file that is read as two kinds is broken once.
  std::set<std::tuple<std::string_view, unsigned, unsigned, Mistake, std::string_view>> known;
  std::erase_if(order, [&known](const Finding* finding) {
    const xml::Place start = finding->where.start;
    const auto [same, is_new] = known.emplace(finding->where.file, start.line, start.column,
                                              finding->mistake, finding->message);
    return !is_new;
  });
  for (Finding* const finding : order) findings_.list.push_back(std::move(*finding));
  return std::move(findings_);
}

std::string Quoted(std::string_view text) {
  constexpr std::size_t kMaxLength = 60;
  std::size_t end = 0;
  while (end < text.size() && end < kMaxLength) {
    end += std::max<std::size_t>(text::Utf8CharacterSize(text.substr(end)), 1);
  }
  return "\"" + std::string(text.substr(0, end)) + (end < text.size() ? "...\"" : "\"");
}

std::string Tag(std::string_view name) { return "<" + std::string(name) + ">"; }

std::string Counted(std::size_t count, std::string_view what) {
  return std::to_string(count) + " " + std::string(what) + (count == 1 ? "" : "s");
}

}  // namespace sab::check
