#include "xml/path.h"

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

std::vector<NodeIndex> SelectAll(const Document& document, std::string_view path) {
  if (path.empty()) throw Error("the path is empty");
  if (!IsChildSteps(path)) return EvaluateXPath(document, path);
  std::vector<NodeIndex> nodes{kNoNode};
  for (path = WithoutLeadingSlash(path); !path.empty() && !nodes.empty();) {
    const std::string_view step = TakeStep(path);
    std::vector<NodeIndex> found;
    for (const NodeIndex node : nodes) {
      for (NodeIndex child = document.FirstChildElement(node); child != kNoNode;
           child = document.NextElement(child)) {
        if (IsStep(document, child, step)) found.push_back(child);
      }
    }
    nodes = std::move(found);
  }
  return nodes;
}

NodeIndex SelectFirst(const Document& document, std::string_view path) {
  const std::size_t last = path.rfind('/');
  if (!IsChildSteps(path) || last == path.npos || last == 0) {
    const std::vector<NodeIndex> nodes = SelectAll(document, path);
    return nodes.empty() ? kNoNode : nodes.front();
  }
  return FirstChildNamed(document, SelectAll(document, path.substr(0, last)),
                         path.substr(last + 1));
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
  std::size_t next = 0;  // behind the one that was found last: it mostly comes next
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
