#include <algorithm>
#include <iomanip>
#include <iostream>
#include <memory>

#include "cli/commands.h"
#include "cli/host/idl_text.h"
#include "cli/host/type_description.h"
#include "cli/suggestion.h"
#include "cli/tree_sink.h"
#include "text/ascii.h"

namespace sabxml::cli {
namespace {

struct DescribeOptions {
  std::string class_name;
  bool all = false;
  bool as_json = false;
  bool as_idl = false;
};

std::vector<ClassDescription> ClassesOf(Server& server) {
  const ComPtr<ITypeLib> library = server.TypeLibrary();
  return DescribeClasses(*library.Get());
}

// Both identifiers where a class has two.
std::string IdentifiersOf(const ClassDescription& known) {
  if (known.registered_identifier.empty()) return known.identifier;
  return known.identifier + " (registered as " + known.registered_identifier + ")";
}

// What is named by its name or its identifier.
const ClassDescription* Find(const std::vector<ClassDescription>& all, const std::string& name) {
  const auto found = std::find_if(all.begin(), all.end(), [&name](const ClassDescription& known) {
    return sab::EqualsIgnoringAsciiCase(known.name, name) ||
           sab::EqualsIgnoringAsciiCase(known.identifier, name) ||
           sab::EqualsIgnoringAsciiCase(known.registered_identifier, name);
  });
  return found == all.end() ? nullptr : &*found;
}

std::vector<ClassDescription> InterfacesOf(Server& server) {
  const ComPtr<ITypeLib> library = server.TypeLibrary();
  return DescribeInterfaces(*library.Get());
}

ClassDescription DescriptionOf(Server& server, const std::string& named) {
  const std::string name = WithBraces(named);
  const std::vector<ClassDescription> classes = ClassesOf(server);
  if (const ClassDescription* const known = Find(classes, name)) return *known;
  const std::vector<ClassDescription> interfaces = InterfacesOf(server);
  if (const ClassDescription* const known = Find(interfaces, name)) return *known;
  std::vector<std::string> names;
  for (const auto* const all : {&classes, &interfaces}) {
    for (const ClassDescription& known : *all) names.push_back(known.name);
  }
  // A ProgID has parts, and an identifier braces.
  if (name.find_first_of(".{") == name.npos) {
    throw Failure("the server has no class or interface named " + name +
                  DidYouMean(name, names, "\"sabxml classes\" lists the classes that it has"));
  }
  OLECHAR text[40];
  StringFromGUID2(server.ClassNamed(name), text, 40);
  const ClassDescription* const known = Find(classes, ToUtf8(sab::TextView(text)));
  if (!known) throw Failure("the server has no class or interface " + name);
  return *known;
}

Json HeadAsJson(const ClassDescription& known) {
  const bool is_class = !known.interface_name.empty();
  Json head = {{"name", known.name}, {is_class ? "clsid" : "iid", known.identifier}};
  if (!known.registered_identifier.empty()) head["registered_clsid"] = known.registered_identifier;
  head["help"] = known.help;
  if (is_class) head["interface"] = known.interface_name;
  return head;
}

void ListClasses(const Settings& settings, bool as_json) {
  Server server(settings.server);
  const std::vector<ClassDescription> classes = ClassesOf(server);
  if (as_json) {
    Json all = Json::array();
    for (const ClassDescription& known : classes) all.push_back(HeadAsJson(known));
    std::cout << all.dump(2) << '\n';
    return;
  }
  std::size_t widest = 0;
  for (const ClassDescription& known : classes) widest = std::max(widest, known.name.size());
  for (const ClassDescription& known : classes) {
    std::cout << std::left << std::setw(static_cast<int>(widest) + 2) << known.name
              << IdentifiersOf(known) << "  " << known.interface_name << '\n';
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
  Json description = HeadAsJson(known);
  description["members"] = std::move(members);
  return description;
}

void Print(const ClassDescription& known) {
  std::cout << known.name << "  " << known.help << "\n  " << IdentifiersOf(known);
  if (!known.interface_name.empty()) std::cout << "  " << known.interface_name;
  std::cout << '\n';
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

void PrintIdl(Server& server, const std::vector<ClassDescription>& chosen, bool all) {
  const std::vector<ClassDescription> interfaces = InterfacesOf(server);
  std::string text;
  for (const ClassDescription& known : interfaces) {
    const bool is_wanted = std::any_of(chosen.begin(), chosen.end(), [&](const auto& one) {
      return one.name == known.name || one.interface_name == known.name;
    });
    if (is_wanted || all) text += (text.empty() ? "" : "\n") + IdlOfInterface(known);
  }
  for (const ClassDescription& known : chosen) {
    if (!known.interface_name.empty()) text += "\n" + IdlOfClass(known);
  }
  std::cout << text;
}

void Describe(const Settings& settings, const DescribeOptions& options) {
  if (options.class_name.empty() != options.all) {
    throw CLI::ValidationError("describe", "name a class, or give --all");
  }
  if (options.as_idl && options.as_json) {
    throw CLI::ValidationError("describe", "choose one of --idl and --json");
  }
  Server server(settings.server);
  std::vector<ClassDescription> classes;
  if (options.all) {
    classes = ClassesOf(server);
  } else {
    classes.push_back(DescriptionOf(server, options.class_name));
  }
  if (options.as_idl) return PrintIdl(server, classes, options.all);
  if (options.as_json) {
    Json all = Json::array();
    for (const ClassDescription& known : classes) all.push_back(ToJson(known));
    std::cout << (options.all ? all : all.front()).dump(2) << '\n';
    return;
  }
  for (const ClassDescription& known : classes) Print(known);
}

constexpr char kDescribeHelp[] =
    "Examples:\n"
    "  sabxml describe VeAppParser\n"
    "  sabxml describe SabXmlParser.VeAppParser --idl\n"
    "  sabxml describe IVePrsAccel --idl\n";

}  // namespace

void AddDescribe(CLI::App& program, const Settings& settings) {
  auto options = std::make_shared<DescribeOptions>();
  CLI::App* const classes = program.add_subcommand("classes", "List the server's classes");
  classes->footer("Example:\n  sabxml classes --json\n");
  classes->add_flag("--json", options->as_json, "Print JSON");
  classes->callback([&settings, options] { ListClasses(settings, options->as_json); });
  CLI::App* const command =
      program.add_subcommand("describe", "Print the members of a class: identifiers, types, help");
  command->footer(kDescribeHelp);
  command->add_option("CLASS", options->class_name,
                      "Name, ProgID or identifier of a class or interface: VeAppParser");
  command->add_flag("--all", options->all, "Every class of the server");
  command->add_flag("--idl", options->as_idl, "Print the definition of the interface, in IDL");
  command->add_flag("--json", options->as_json, "Print JSON");
  command->callback([&settings, options] { Describe(settings, *options); });
}

}  // namespace sabxml::cli
