#include "descriptor.h"

#include <stdexcept>
#include <string_view>

#include "document_element.h"
#include "standard_input.h"

namespace sabxml::cli {
namespace {

const std::vector<DescriptorKind>& Kinds() {
  static const std::vector<DescriptorKind> kinds = {
      {"Application",
       "application",
       "VeAppParser",
       "GenerateApp",
       {{"GetTmplatePaths", "Template"}}},
      {"Template", "template", "VeTmplParser", "GenerateTmpl", {{"GetModulePaths", "Module"}}},
      {"Module", "module", "VeModuleParser", "GenerateModule", {{"GetEnvPaths", "Environment"}}},
      {"Environment",
       "environment",
       "VeEnvParser",
       "GenerateEnv",
       {{"GetUiPath", "UI"}, {"GetCmdPaths", "Cmd"}}},
      {"Cmd", "commands", "VeCmdParser", "GenerateCmd", {}},
      {"UI", "user interface", "VeUiParser", "GenerateUI", {}},
      {"NEBStandardConfigration", "standards", "VeStandardCfgParser", "Load", {}},
  };
  return kinds;
}

}  // namespace

const DescriptorKind& DescriptorKindOf(const std::string& root) {
  for (const DescriptorKind& kind : Kinds()) {
    if (root == kind.root) return kind;
  }
  throw std::out_of_range(root);
}

const DescriptorKind& RecogniseDescriptor(const std::string& file) {
  const std::string root = DocumentElementOf(file);
  std::string known;
  for (const DescriptorKind& kind : Kinds()) {
    if (root == kind.root) return kind;
    known += std::string(known.empty() ? "" : ", ") + kind.root;
  }
  if (root.empty()) throw Failure(file + ": this is no XML file: it has no document element");
  throw Failure(file + ": the document element " + root + " is that of no descriptor (" + known +
                ").\nSettings are read with: sabxml get CLASS FILE NODEPATH");
}

Reference<IDispatch> LoadDescriptor(Server& server, const DescriptorKind& kind,
                                    const std::string& file) {
  Reference<IDispatch> parser = server.Create(kind.class_name);
  std::vector<Value> path;
  path.emplace_back(std::string_view(PathToRead(file)));
  if (std::string_view(kind.generate) == "Load") {
    Call(*parser.Get(), kind.generate, DISPATCH_METHOD, std::move(path));
    return parser;
  }
  Call(*parser.Get(), "ConfigurationPath", DISPATCH_PROPERTYPUT, std::move(path));
  Call(*parser.Get(), kind.generate, DISPATCH_METHOD);
  if (file == kStandardInput) {
    std::vector<Value> name;
    name.emplace_back(std::string_view(file));
    Call(*parser.Get(), "ConfigurationPath", DISPATCH_PROPERTYPUT, std::move(name));
  }
  return parser;
}

}  // namespace sabxml::cli
