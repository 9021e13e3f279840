#include "descriptor.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace sabxml::cli {
namespace {

constexpr DescriptorKind kKinds[] = {
    {"Application", "VeAppParser", "GenerateApp"},  {"Template", "VeTmplParser", "GenerateTmpl"},
    {"Module", "VeModuleParser", "GenerateModule"}, {"Environment", "VeEnvParser", "GenerateEnv"},
    {"Cmd", "VeCmdParser", "GenerateCmd"},
};

// The start of a file as ASCII, whatever its encoding: names of document elements are ASCII, and
// what is not is of no interest here.
std::string StartOf(const std::string& file) {
  std::ifstream stream(std::filesystem::path(std::u8string(file.begin(), file.end())),
                       std::ios::binary);
  if (!stream) throw Failure(file + ": " + std::strerror(errno));
  std::string bytes(65536, '\0');
  stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(stream.gcount()));
  std::string ascii;
  for (const char c : bytes) {
    if (c != '\0' && static_cast<unsigned char>(c) < 0x80) ascii += c;
  }
  return ascii;
}

// The name of the document element; empty where there is none in sight.
std::string RootNameIn(const std::string& text) {
  for (std::size_t at = text.find('<'); at != std::string::npos; at = text.find('<', at)) {
    if (text.compare(at, 4, "<!--") == 0) {
      at = text.find("-->", at);
    } else if (text.compare(at, 2, "<?") == 0 || text.compare(at, 2, "<!") == 0) {
      at = text.find('>', at);
    } else {
      const std::size_t end = text.find_first_of(" \t\r\n/>", at);
      std::string name = text.substr(at + 1, end == std::string::npos ? end : end - at - 1);
      return name.substr(name.find(':') == std::string::npos ? 0 : name.find(':') + 1);
    }
    if (at == std::string::npos) break;
  }
  return {};
}

}  // namespace

const DescriptorKind& RecogniseDescriptor(const std::string& file) {
  const std::string root = RootNameIn(StartOf(file));
  std::string known;
  for (const DescriptorKind& kind : kKinds) {
    if (root == kind.root) return kind;
    known += std::string(known.empty() ? "" : ", ") + kind.root;
  }
  if (root.empty()) throw Failure(file + ": this is no XML file");
  throw Failure(file + ": the document element " + root + " is that of no descriptor (" + known +
                ").\nSettings are read with: sabxml get CLASS FILE NODEPATH");
}

Reference<IDispatch> LoadDescriptor(Server& server, const DescriptorKind& kind,
                                    const std::string& file) {
  Reference<IDispatch> parser = server.Create(kind.class_name);
  std::vector<Value> path;
  path.emplace_back(std::string_view(file));
  Call(*parser.Get(), "ConfigurationPath", DISPATCH_PROPERTYPUT, std::move(path));
  Call(*parser.Get(), kind.generate, DISPATCH_METHOD);
  return parser;
}

}  // namespace sabxml::cli
