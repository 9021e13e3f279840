#include "common/config_document.h"

#include "base/com_error.h"

namespace sab {
namespace {

// Child steps lead to elements only; a path needs one of these to lead to anything else.
bool MayLeadElsewhere(TextView path) {
  const std::size_t last = path.find_last_not_of(OLESTR(" \t\r\n"));
  return path.find_first_of(OLESTR("@(:.")) != TextView::npos ||
         (last != TextView::npos && path[last] == '/');
}

// A path that ends with an attribute never leads to an element, whether the attribute exists or
// not.
bool EndsWithAttribute(TextView path) {
  const std::size_t slash = path.find_last_of(OLESTR("/"));
  const TextView step = path.substr(slash == TextView::npos ? 0 : slash + 1);
  return step.starts_with(OLESTR("@")) && step.find_first_of(OLESTR("]'\"|")) == TextView::npos;
}

}  // namespace

ConfigElement ConfigDocument::SelectToChange(TextView path) {
  const ConfigElement element = Select(path);
  if (element || !Root() || !MayLeadElsewhere(path)) return element;
  // Whatever node the path leads to has the document among its ancestors, or is it.
  Text any_node(OLESTR("("));
  any_node.append(path).append(OLESTR(")/ancestor-or-self::node()/*"));
  if (EndsWithAttribute(path) || Select(any_node))
    throw ComError(E_INVALIDARG,
                   ToUtf8(document_.File()) + ": the node path \"" + ToUtf8(path) +
                       "\" leads to no element: give the path of the element with the keys");
  return element;
}

}  // namespace sab
