#include "xml/path.h"

#include <algorithm>
#include <numeric>

#include "xml/characters.h"
#include "xml/error.h"

namespace sab::xml {
namespace {

// The first step of a path, which is cut off it.
std::string_view TakeStep(std::string_view& path) {
  const std::size_t end = path.find('/');
  const std::string_view step = path.substr(0, end);
  path.remove_prefix(end == path.npos ? path.size() : end + 1);
  return step;
}

std::string_view WithoutLeadingSlash(std::string_view path) {
  if (path.starts_with('/')) path.remove_prefix(1);
  return path;
}

bool IsStep(const Document& document, NodeIndex element, std::string_view step) {
  return document.NameOf(element) == step && !document.IsInNamespace(element);
}

// Past a predicate, an argument list or a literal, which starts here; the end if it is not closed.
std::size_t SkipBracket(std::string_view path, std::size_t i) {
  for (std::size_t depth = 0; i < path.size(); ++i) {
    const char c = path[i];
    if (c == '"' || c == '\'') {
      i = std::min(path.find(c, i + 1), path.size());
    } else if (c == '[' || c == '(') {
      ++depth;
    } else if ((c == ']' || c == ')') && --depth == 0) {
      return i + 1;
    }
  }
  return path.size();
}

// Whether a step after "<path>/" starts at the nodes of the whole path. It does not where the path
// is several joined by an operator ("a | b"), or ends with a slash.
bool ContinuesWithStep(std::string_view path) {
  bool ends_step = false;  // what was read ends a step: no name and no * may follow
  for (std::size_t i = 0; i < path.size();) {
    const char c = path[i];
    if (c == '[' || c == '(') {
      if (c == '(' && ends_step && !Has(path[i - 1], kNameByte)) return false;
      i = SkipBracket(path, i);
      ends_step = true;
    } else if (c == '/' || c == '@' || c == ':') {
      ++i;
      ends_step = false;
    } else if (ends_step) {
      return false;
    } else if (c == '*') {
      ++i;
      ends_step = true;
    } else if (c == '.') {
      i += path.substr(i).starts_with("..") ? 2 : 1;
      ends_step = true;
    } else if (Has(c, kNameStart)) {
      while (i < path.size() && path[i] != ':' && Has(path[i], kNameByte)) ++i;
      ends_step = true;
    } else {
      return false;
    }
  }
  return ends_step;
}

}  // namespace

bool IsChildSteps(std::string_view path) {
  path = WithoutLeadingSlash(path);
  bool is_start = true;
  for (const char c : path) {
    if (c == '/' ? is_start : !Has(c, is_start ? kNameStart : kNameByte) || c == ':') return false;
    is_start = c == '/';
  }
  return !is_start;
}

std::vector<NodeIndex> Paths::SelectAll(std::string_view path) {
  if (path.empty()) throw Error("the path is empty");
  if (!IsChildSteps(path)) return Evaluate(path, false);
  std::vector<NodeIndex> nodes{kNoNode};
  for (path = WithoutLeadingSlash(path); !path.empty() && !nodes.empty();) {
    const std::string_view step = TakeStep(path);
    std::vector<NodeIndex> found;
    for (const NodeIndex node : nodes) {
      for (NodeIndex child = document_.FirstChildElement(node); child != kNoNode;
           child = document_.NextElement(child)) {
        if (IsStep(document_, child, step)) found.push_back(child);
      }
    }
    nodes = std::move(found);
  }
  return nodes;
}

NodeIndex Paths::SelectFirst(std::string_view path) {
  const std::size_t last = path.rfind('/');
  if (!IsChildSteps(path) || last == path.npos || last == 0) {
    const std::vector<NodeIndex> nodes = SelectAll(path);
    return nodes.empty() ? kNoNode : nodes.front();
  }
  return FirstChildNamed(document_, SelectAll(path.substr(0, last)), path.substr(last + 1));
}

std::optional<std::vector<NodeIndex>> Paths::SelectParents(std::string_view path) {
  if (path.empty()) return std::vector<NodeIndex>(1, kNoNode);
  if (IsChildSteps(path)) return SelectAll(path);
  if (!ContinuesWithStep(path)) return std::nullopt;
  std::vector<NodeIndex> parents = Evaluate(path, true);
  for (std::size_t i = 1; i < parents.size(); ++i) {
    if (parents[i - 1] == kNoNode || parents[i] < document_.EndOf(parents[i - 1]))
      return std::nullopt;
  }
  return parents;
}

NodeIndex FirstChildNamed(const Document& document, const std::vector<NodeIndex>& parents,
                          std::string_view name) {
  for (const NodeIndex parent : parents) {
    for (NodeIndex child = document.FirstChildElement(parent); child != kNoNode;
         child = document.NextElement(child)) {
      if (IsStep(document, child, name)) return child;
    }
  }
  return kNoNode;
}

std::vector<NodeIndex> FirstChildrenNamed(const Document& document,
                                          const std::vector<NodeIndex>& parents,
                                          std::span<const std::string_view> names) {
  std::vector<NodeIndex> found(names.size(), kNoNode);
  std::vector<std::size_t> wanted(names.size());  // what is not found yet
  std::iota(wanted.begin(), wanted.end(), std::size_t{0});
  std::size_t next = 0;  // after the one that was found last: it mostly comes next
  for (const NodeIndex parent : parents) {
    for (NodeIndex child = document.FirstChildElement(parent); child != kNoNode && !wanted.empty();
         child = document.NextElement(child)) {
      for (std::size_t looked_at = 0; looked_at < wanted.size(); ++looked_at, ++next) {
        if (next >= wanted.size()) next = 0;
        if (!IsStep(document, child, names[wanted[next]])) continue;
        found[wanted[next]] = child;
        wanted.erase(wanted.begin() + static_cast<std::ptrdiff_t>(next));
        break;
      }
    }
  }
  return found;
}

}  // namespace sab::xml
