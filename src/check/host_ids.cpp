#include "check/host_ids.h"

#include <optional>
#include <vector>

#include "text/ascii.h"
#include "text/distance.h"

namespace sab::check {
namespace {

using formats::Subject;

std::optional<Subject> SubjectNamed(std::string_view word) {
  for (auto i = static_cast<int>(Subject::kApplication); i <= static_cast<int>(Subject::kStandard);
       ++i) {
    const auto subject = static_cast<Subject>(i);
    const std::string_view name = formats::NameOf(subject);
    const bool is_plural = word.size() == name.size() + 1 && word.ends_with('s');
    if (EqualsIgnoringAsciiCase(word.substr(0, word.size() - (is_plural ? 1 : 0)), name)) {
      return subject;
    }
  }
  return std::nullopt;
}

std::vector<std::string> NamesOfKinds() {
  std::vector<std::string> names;
  for (auto i = static_cast<int>(Subject::kApplication); i <= static_cast<int>(Subject::kStandard);
       ++i) {
    names.emplace_back(formats::NameOf(static_cast<Subject>(i)));
  }
  return names;
}

}  // namespace

std::string HostIds::Add(std::string_view lines) {
  std::string failure;
  unsigned number = 0;
  if (lines.starts_with("\xEF\xBB\xBF")) lines.remove_prefix(3);
  while (!lines.empty()) {
    std::string_view line = lines.substr(0, lines.find('\n'));
    lines.remove_prefix(std::min(line.size() + 1, lines.size()));
    ++number;
    line = line.substr(0, line.find('#'));
    std::vector<std::string_view> words;
    for (std::size_t at = 0; (at = line.find_first_not_of(" \t\r:=,;", at)) != line.npos;) {
      const std::size_t end = std::min(line.find_first_of(" \t\r:=,;", at), line.size());
      words.push_back(line.substr(at, end - at));
      at = end;
    }
    if (words.empty()) continue;
    if (words.size() == 1) {
      ids_[Subject::kNone].emplace(words[0]);
      continue;
    }
    const auto kind = SubjectNamed(words[0]);
    const auto kind_after = SubjectNamed(words[1]);
    if (words.size() == 2 && (kind || kind_after)) {
      ids_[kind ? *kind : *kind_after].emplace(kind ? words[1] : words[0]);
    } else if (failure.empty()) {
      failure = std::to_string(number) + ": " +
                (kind || kind_after ? "an identifier and a kind are two words"
                                    : "there is no kind " + std::string(words[0]) +
                                          text::DidYouMean(words[0], NamesOfKinds()));
    }
  }
  return failure;
}

bool HostIds::Has(Subject subject, std::string_view id) const {
  for (const Subject kind : {Subject::kNone, subject}) {
    const auto found = ids_.find(kind);
    if (found != ids_.end() && found->second.contains(id)) return true;
  }
  return false;
}

std::vector<std::string_view> HostIds::Known(Subject subject) const {
  std::vector<std::string_view> known;
  for (const Subject kind : {Subject::kNone, subject}) {
    const auto found = ids_.find(kind);
    if (found != ids_.end()) known.insert(known.end(), found->second.begin(), found->second.end());
  }
  return known;
}

std::vector<std::string> HostIds::Of(Subject subject) const {
  const auto found = ids_.find(subject);
  if (found == ids_.end()) return {};
  return {found->second.begin(), found->second.end()};
}

}  // namespace sab::check
