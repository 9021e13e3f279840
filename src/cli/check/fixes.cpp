#include "cli/check/fixes.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "text/utf.h"
#include "xml/document.h"
#include "xml/edit.h"
#include "xml/error.h"

namespace sabxml::cli {
namespace {

namespace check = sab::check;
using LinesOfFile = std::vector<std::string_view>;

constexpr std::size_t kContext = 3;

LinesOfFile LinesOfText(std::string_view text) {
  LinesOfFile lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.push_back(text.substr(0, end > 0 && text[end - 1] == '\r' ? end - 1 : end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

// Lines [from, to) of the one give way to lines of the other; both begin at the same line where
// earlier changes keep the number of lines.
struct Hunk {
  std::size_t from;
  std::size_t to;
  std::size_t other_from;
  std::size_t other_to;
};

std::vector<Hunk> HunksOf(const LinesOfFile& before, const LinesOfFile& after) {
  std::vector<Hunk> hunks;
  if (before.size() == after.size()) {
    for (std::size_t i = 0; i < before.size(); ++i) {
      if (before[i] == after[i]) continue;
      if (!hunks.empty() && hunks.back().to + 2 * kContext >= i) {
        hunks.back().to = hunks.back().other_to = i + 1;
      } else {
        hunks.push_back({i, i + 1, i, i + 1});
      }
    }
    return hunks;
  }
  const std::size_t shorter = std::min(before.size(), after.size());
  std::size_t same = 0;
  while (same < shorter && before[same] == after[same]) ++same;
  std::size_t same_at_end = 0;
  while (same_at_end < shorter - same &&
         before[before.size() - same_at_end - 1] == after[after.size() - same_at_end - 1]) {
    ++same_at_end;
  }
  return {{same, before.size() - same_at_end, same, after.size() - same_at_end}};
}

std::string HunkRange(std::size_t from, std::size_t to) {
  return std::to_string(from + 1) + "," + std::to_string(to - from);
}

}  // namespace

std::map<std::string, std::string> FixedFiles(const sab::project::Project& project,
                                              const check::Findings& findings, std::size_t& count) {
  std::map<sab::project::FileIndex, sab::xml::Editor> editors;
  for (const check::Finding& finding : findings.list) {
    if (!finding.fix) continue;
    const sab::project::File& file = project.At(finding.file);
    sab::xml::Editor& editor = editors.try_emplace(finding.file, file.Xml()).first->second;
    if (finding.fix->name.empty()) {
      const auto text = sab::text::FromUtf8<char16_t>(std::string_view(finding.fix->text));
      editor.SetText(finding.fix->element, text);
      for (const sab::xml::NodeIndex other : finding.fix->others) editor.SetText(other, text);
      count += finding.fix->others.size();
    } else {
      editor.Rename(finding.fix->element, finding.fix->name);
    }
    ++count;
  }
  std::map<std::string, std::string> files;
  for (const auto& [index, editor] : editors) {
    files[project.At(index).Path()] = editor.Serialise();
  }
  return files;
}

std::string DiffOf(const std::string& file, const std::string& before, const std::string& after) {
  const sab::xml::Document old_document(before);
  const sab::xml::Document new_document(after);
  const LinesOfFile old_lines = LinesOfText(old_document.TextBytes());
  const LinesOfFile new_lines = LinesOfText(new_document.TextBytes());
  std::string diff = "--- " + file + "\n+++ " + file + "\n";
  const auto add = [&diff](char sign, const LinesOfFile& lines, std::size_t from, std::size_t to) {
    for (; from < to; ++from) diff.append(1, sign).append(lines[from]).append("\n");
  };
  for (const Hunk& hunk : HunksOf(old_lines, new_lines)) {
    const std::size_t from = hunk.from - std::min(hunk.from, kContext);
    const std::size_t to = std::min(hunk.to + kContext, old_lines.size());
    const std::size_t other_from = hunk.other_from - std::min(hunk.other_from, kContext);
    const std::size_t other_to = std::min(hunk.other_to + kContext, new_lines.size());
    diff += "@@ -" + HunkRange(from, to) + " +" + HunkRange(other_from, other_to) + " @@\n";
    add(' ', old_lines, from, hunk.from);
    // Of a hunk of several changes, what is between them stays.
    if (hunk.to - hunk.from == hunk.other_to - hunk.other_from) {
      for (std::size_t i = hunk.from; i < hunk.to; ++i) {
        const bool is_same = old_lines[i] == new_lines[i];
        add(is_same ? ' ' : '-', old_lines, i, i + 1);
        if (!is_same) add('+', new_lines, i, i + 1);
      }
    } else {
      add('-', old_lines, hunk.from, hunk.to);
      add('+', new_lines, hunk.other_from, hunk.other_to);
    }
    add(' ', old_lines, hunk.to, to);
  }
  return diff;
}

}  // namespace sabxml::cli
