#include "cli/check/document_kinds.h"

#include "cli/check/check_options.h"
#include "cli/suggestion.h"
#include "project/xml_schema.h"

namespace sabxml::cli {

std::vector<std::string> KindsWithElements() {
  std::vector<std::string> kinds;
  for (const sab::formats::Document* const document : sab::project::DocumentsWithElements())
    kinds.push_back(sab::project::ShortNameOf(*document));
  return kinds;
}

const sab::formats::Document& CheckedKind(const std::string& name) {
  if (const auto* const document = sab::project::DocumentNamed(name)) return *document;
  RefuseKind(name, KindsWithElements());
}

void RefuseKind(const std::string& name, const std::vector<std::string>& kinds) {
  throw Misunderstood("there is no kind of document " + name +
                      DidYouMean(name, kinds, "the kinds are " + Listed(kinds)));
}

std::string Listed(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
  return list;
}

}  // namespace sabxml::cli
