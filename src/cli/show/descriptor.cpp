#include "cli/show/descriptor.h"

#include <string_view>

#include "cli/show/document_element.h"
#include "cli/standard_input.h"

namespace sabxml::cli {
namespace formats = sab::formats;

const DescriptorKind& RecogniseDescriptor(const std::string& file) {
  const std::string root = DocumentElementOf(file);
  std::string known;
  for (const DescriptorKind* const kind : formats::Documents()) {
    if (kind->kind > formats::Kind::kCatalogue) continue;  // read with something else
    if (root == kind->root) return *kind;
    known += (known.empty() ? "" : ", ") + std::string(kind->root);
  }
  if (root.empty()) throw Failure(file + ": this is no XML file: it has no document element");
  throw Failure(file + ": the document element " + root + " is that of no descriptor (" + known +
                ").\nSettings are read with: sabxml get CLASS FILE NODEPATH");
}

ComPtr<IDispatch> LoadDescriptor(Server& server, const DescriptorKind& kind,
                                 const std::string& file) {
  ComPtr<IDispatch> parser = server.Create(std::string(kind.class_name));
  const Value path(PathToRead(file));
  if (kind.method == "Load") {
    Call(*parser.Get(), kind.method, DISPATCH_METHOD, {path});
    return parser;
  }
  Call(*parser.Get(), "ConfigurationPath", DISPATCH_PROPERTYPUT, {path});
  Call(*parser.Get(), kind.method, DISPATCH_METHOD);
  if (file == kStandardInput) {
    Call(*parser.Get(), "ConfigurationPath", DISPATCH_PROPERTYPUT, {Value(file)});
  }
  return parser;
}

}  // namespace sabxml::cli
