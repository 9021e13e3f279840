#include <algorithm>
#include <iomanip>
#include <iostream>
#include <memory>

#include "commands.h"
#include "tree_sink.h"
#include "type_description.h"

namespace sabxml::cli {
namespace {

struct DescribeOptions {
  std::string class_name;
  bool all = false;
  bool as_json = false;
};

std::vector<ClassDescription> ClassesOf(const Settings& settings) {
  Server server(settings.server);
  const Reference<ITypeLib> library = server.TypeLibrary();
  return DescribeClasses(*library.Get());
}

void ListClasses(const Settings& settings) {
  const std::vector<ClassDescription> classes = ClassesOf(settings);
  std::size_t widest = 0;
  for (const ClassDescription& known : classes) widest = std::max(widest, known.name.size());
  for (const ClassDescription& known : classes) {
    std::cout << std::left << std::setw(static_cast<int>(widest) + 2) << known.name << known.clsid
              << "  " << known.interface_name << '\n';
  }
}

Json ToJson(const ClassDescription& known) {
  Json members = Json::array();
  for (const MemberDescription& member : known.members) {
    Json parameters = Json::array();
    for (const ParameterDescription& parameter : member.parameters) {
      parameters.push_back({{"name", parameter.name},
                            {"type", parameter.type},
                            {"in", parameter.is_in},
                            {"out", parameter.is_out},
                            {"optional", parameter.is_optional}});
    }
    members.push_back({{"id", member.id},
                       {"kind", member.kind},
                       {"name", member.name},
                       {"result", member.result},
                       {"parameters", parameters},
                       {"help", member.help}});
  }
  return {{"name", known.name},
          {"clsid", known.clsid},
          {"help", known.help},
          {"interface", known.interface_name},
          {"members", members}};
}

void Print(const ClassDescription& known) {
  std::cout << known.name << "  " << known.help << "\n  " << known.clsid << "  "
            << known.interface_name << '\n';
  std::size_t widest = 0;
  for (const MemberDescription& member : known.members) {
    widest = std::max(widest, std::min<std::size_t>(member.Signature().size(), 60));
  }
  for (const MemberDescription& member : known.members) {
    std::cout << "  " << std::right << std::setw(10) << member.id << "  " << std::left
              << std::setw(7) << member.kind << std::setw(static_cast<int>(widest) + 2)
              << member.Signature() << member.help << '\n';
  }
}

void Describe(const Settings& settings, const DescribeOptions& options) {
  if (options.class_name.empty() != options.all) {
    throw CLI::ValidationError("describe", "name a class, or give --all");
  }
  std::vector<ClassDescription> classes = ClassesOf(settings);
  if (!options.all) {
    std::erase_if(classes, [&options](const ClassDescription& known) {
      return CLI::detail::to_lower(known.name) != CLI::detail::to_lower(options.class_name);
    });
    if (classes.empty()) {
      throw Failure("the server has no class named " + options.class_name +
                    "; \"sabxml classes\" lists those that it has");
    }
  }
  if (options.as_json) {
    Json all = Json::array();
    for (const ClassDescription& known : classes) all.push_back(ToJson(known));
    std::cout << (options.all ? all : all.front()).dump(2) << '\n';
    return;
  }
  for (const ClassDescription& known : classes) Print(known);
}

}  // namespace

void AddDescribe(CLI::App& program, const Settings& settings) {
  program.add_subcommand("classes", "List the server's classes")->callback([&settings] {
    ListClasses(settings);
  });
  auto options = std::make_shared<DescribeOptions>();
  CLI::App* const command =
      program.add_subcommand("describe", "Print the members of a class: identifiers, types, help");
  command->add_option("CLASS", options->class_name, "Name of a class: VeAppParser");
  command->add_flag("--all", options->all, "Every class of the server");
  command->add_flag("--json", options->as_json, "Print JSON");
  command->callback([&settings, options] { Describe(settings, *options); });
}

}  // namespace sabxml::cli
