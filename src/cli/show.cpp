#include <algorithm>
#include <fstream>
#include <iostream>
#include <memory>

#include "commands.h"
#include "descriptor.h"
#include "object_tree.h"

namespace sabxml::cli {
namespace {

struct ShowOptions {
  std::vector<std::string> files;
  bool as_json = false;
};

void Show(const Settings& settings, const ShowOptions& options) {
  Server server(settings.server);
  bool all_shown = true;
  for (const std::string& file : options.files) {
    try {
      const DescriptorKind& kind = RecogniseDescriptor(file);
      const Reference<IDispatch> parser = LoadDescriptor(server, kind, file);
      const Json tree{{kind.class_name, ReadObject(*parser.Get())}};
      if (options.as_json) {
        std::cout << tree.dump(2) << '\n';
      } else {
        PrintTree(std::cout, tree, settings.UsesColour());
      }
    } catch (const Failure& failure) {
      std::cerr << "sabxml: " << failure.what() << '\n';
      all_shown = false;
    }
  }
  if (!all_shown) throw CLI::RuntimeError(1);
}

struct GetOptions {
  std::string class_name;
  std::string file;
  std::string node_path;
  std::vector<std::string> keys;
  bool as_json = false;
};

void Get(const Settings& settings, const GetOptions& options) {
  // A settings object takes a missing file for one without values; a person wants to know.
  if (!std::ifstream(options.file)) throw Failure(options.file + ": the file cannot be read");
  Server server(settings.server);
  const Reference<IDispatch> object = server.Create(options.class_name);
  std::vector<Value> arguments;
  arguments.emplace_back(std::string_view(options.file));
  arguments.emplace_back(std::string_view(options.node_path));
  Call(*object.Get(), "Load", DISPATCH_METHOD, std::move(arguments));
  const Json values = ReadObject(*object.Get(), options.keys);
  for (const std::string& key : options.keys) {
    const bool is_known =
        std::any_of(values.items().begin(), values.items().end(), [&key](auto& item) {
          return CLI::detail::to_lower(item.key()) == CLI::detail::to_lower(key);
        });
    if (!is_known) throw Failure(options.class_name + " has no value named " + key);
  }
  if (options.as_json) {
    std::cout << values.dump(2) << '\n';
  } else {
    PrintTree(std::cout, values, settings.UsesColour());
  }
}

}  // namespace

void AddShow(CLI::App& program, const Settings& settings) {
  auto options = std::make_shared<ShowOptions>();
  CLI::App* const command =
      program.add_subcommand("show", "Print every value, list and element of descriptor files");
  command->add_option("FILE", options->files, "Descriptor files, known by their document elements")
      ->required();
  command->add_flag("--json", options->as_json, "Print JSON instead of a tree");
  command->callback([&settings, options] { Show(settings, *options); });
}

void AddGet(CLI::App& program, const Settings& settings) {
  auto options = std::make_shared<GetOptions>();
  CLI::App* const command =
      program.add_subcommand("get", "Print the values of a settings group of a file");
  command
      ->add_option("CLASS", options->class_name, "Class of the group: VeAutoUpdateAdminCfgParser")
      ->required();
  command->add_option("FILE", options->file, "Settings file")->required();
  command
      ->add_option("NODEPATH", options->node_path,
                   "Path of the element that holds the values: /Settings/Update")
      ->required();
  command->add_option("KEY", options->keys, "Names of values; all of them if none is given");
  command->add_flag("--json", options->as_json, "Print JSON instead of a tree");
  command->callback([&settings, options] { Get(settings, *options); });
}

}  // namespace sabxml::cli
