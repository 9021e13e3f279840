#include <SabXmlParser.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "base/registry_key.h"
#include "cli/commands.h"
#include "cli/display_text.h"
#include "cli/host/type_description.h"
#include "cli/platform.h"
#include "cli/table.h"
#include "cli/trace.h"

namespace sabxml::cli {
namespace {

constexpr char kRegisterHelp[] =
    "The library is the one that --server or SABXML_SERVER names, else the one beside this "
    "program.\n"
    "Unregistering removes what registering this very library wrote and nothing else; another "
    "copy\n"
    "stays registered.\n"
    "\n"
    "Examples:\n"
    "  sabxml register --dry-run                 + is what would be added, - what would go\n"
    "  sabxml register --registry /tmp/test.reg  where the registry is a file\n"
    "  sabxml register --user                    without administrator rights\n"
    "  sabxml register --status                  which library serves each class\n"
    "  sabxml unregister\n"
    "\n"
    "A dry run needs a registry that is a file, as everywhere but on Windows: the one that "
    "--registry\n"
    "or SABCOM_REGISTRY names, else sabcom/registry.reg in $XDG_DATA_HOME or ~/.local/share.\n";

void PrintDifference(std::vector<std::string> before, std::vector<std::string> after,
                     bool as_json) {
  std::sort(before.begin(), before.end());
  std::sort(after.begin(), after.end());
  std::vector<std::string> gone;
  std::vector<std::string> added;
  std::set_difference(before.begin(), before.end(), after.begin(), after.end(),
                      std::back_inserter(gone));
  std::set_difference(after.begin(), after.end(), before.begin(), before.end(),
                      std::back_inserter(added));
  if (as_json) return PrintJson({{"removed", gone}, {"added", added}});
  for (const std::string& line : gone) std::cout << "- " << line << '\n';
  for (const std::string& line : added) std::cout << "+ " << line << '\n';
  if (gone.empty() && added.empty()) std::cout << "Nothing would change.\n";
}

// The name of a key below one that is open; empty after the last.
sab::Text Subkey(const sab::OpenKey& parent, DWORD index) {
  OLECHAR name[256];
  DWORD length = 256;
  if (!parent || RegEnumKeyExW(parent.Get(), index, name, &length, nullptr, nullptr, nullptr,
                               nullptr) != ERROR_SUCCESS) {
    return {};
  }
  return {name, length};
}

// The libraries that classes of the server's type library are registered for.
std::set<std::string> RegisteredLibraries(bool for_user) {
  OLECHAR type_library[40];
  StringFromGUID2(LIBID_SabXmlParserLib, type_library, 40);
  const sab::OpenKey classes(for_user ? HKEY_CURRENT_USER : HKEY_CLASSES_ROOT,
                             for_user ? OLESTR("Software\\Classes\\CLSID") : OLESTR("CLSID"),
                             KEY_READ);
  std::set<std::string> libraries;
  for (DWORD index = 0;; ++index) {
    const sab::Text name = Subkey(classes, index);
    if (name.empty()) return libraries;
    const sab::OpenKey entry(classes.Get(), name, KEY_READ);
    if (entry && DefaultTextOf(entry.Get(), "TypeLib") == sab::ToUtf8(type_library)) {
      libraries.insert(DefaultTextOf(entry.Get(), "InprocServer32"));
    }
  }
}

// --- status ---

struct RegisteredClass {
  std::string name;
  std::string library;  // empty for a class that is not registered
  std::string since;
  bool is_this_one = false;
};

bool IsSameFile(const std::string& a, const std::string& b) {
  const auto path = [](const std::string& text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
  };
  std::error_code error;
  return a == b || std::filesystem::equivalent(path(a), path(b), error);
}

std::vector<RegisteredClass> RegisteredClassesOf(Server& server, bool for_user) {
  const ComPtr<ITypeLib> types = server.TypeLibrary();
  std::vector<RegisteredClass> classes;
  for (const ClassDescription& known : DescribeClasses(*types.Get())) {
    RegisteredClass& found = classes.emplace_back();
    found.name = known.name;
    const std::string& clsid =
        known.registered_identifier.empty() ? known.identifier : known.registered_identifier;
    const sab::OpenKey entry(
        for_user ? HKEY_CURRENT_USER : HKEY_CLASSES_ROOT,
        FromUtf8((for_user ? "Software\\Classes\\CLSID\\" : "CLSID\\") + clsid), KEY_READ);
    if (!entry) continue;
    found.library = DefaultTextOf(entry.Get(), "InprocServer32");
    if (found.library.empty()) continue;
    found.since = LastChangeOf(entry.Get());
    found.is_this_one = IsSameFile(found.library, server.LibraryPath());
  }
  return classes;
}

int PrintStatus(const Settings& settings, bool for_user, bool as_json) {
  Server server(settings.server);
  const std::vector<RegisteredClass> classes = RegisteredClassesOf(server, for_user);
  std::map<std::string, std::size_t> counts;  // of the classes of each library
  for (const RegisteredClass& known : classes) ++counts[known.library];
  const auto ours = static_cast<std::size_t>(
      std::count_if(classes.begin(), classes.end(),
                    [](const RegisteredClass& known) { return known.is_this_one; }));
  // Some classes are made by others only, and never registered.
  const int code = ours > 0 && ours + counts[""] == classes.size() ? 0 : 1;
  if (as_json) {
    Json all = Json::array();
    for (const RegisteredClass& known : classes) {
      const bool is_registered = !known.library.empty();
      all.push_back({{"class", known.name},
                     {"library", is_registered ? Json(known.library) : Json()},
                     {"since", known.since.empty() ? Json() : Json(known.since)},
                     {"is_this_library", known.is_this_one}});
    }
    PrintJson({{"this_library", server.LibraryPath()},
               {"registry", RegistryName()},
               {"classes", std::move(all)}});
    return code;
  }
  Columns columns;
  for (const RegisteredClass& known : classes) {
    if (known.library.empty()) {
      columns.Add({known.name, "not registered"});
    } else {
      columns.Add({known.name, known.is_this_one ? "this library" : "another library", known.since,
                   OnOneLine(known.library)});
    }
  }
  columns.Print(std::cout);
  std::cout << "This library is " << OnOneLine(server.LibraryPath()) << ".\n"
            << "The registry is " << OnOneLine(RegistryName()) << ".\n"
            << "This library serves " << ours << " of " << classes.size() << " classes";
  for (const auto& [library, count] : counts) {
    if (library.empty() || IsSameFile(library, server.LibraryPath())) continue;
    std::cout << ", " << OnOneLine(library) << " " << count;
  }
  if (counts[""] > 0) std::cout << "; " << counts[""] << " are not registered";
  std::cout << ".\n";
  return code;
}

struct Options {
  bool is_dry = false;
  bool for_user = false;
  bool tells_status = false;
  bool as_json = false;
};

using Step = void (Server::*)(bool for_user);

void Run(const Settings& settings, Step step, const Options& options) {
  if (options.tells_status) {
    if (options.is_dry)
      throw CLI::ValidationError("register", "choose one of --status and --dry-run");
    if (const int code = PrintStatus(settings, options.for_user, options.as_json))
      throw CLI::RuntimeError(code);
    return;
  }
  if (options.as_json && !options.is_dry)
    throw CLI::ValidationError("register", "--json is for --status and --dry-run");
  Server server(settings.server);
  Trace("the registry is " + RegistryName());
  if (options.is_dry) {
    const RegistryChange change = TryOnScratchRegistry([&] { (server.*step)(options.for_user); });
    PrintDifference(change.before, change.after, options.as_json);
    return;
  }
  const std::set<std::string> before = RegisteredLibraries(options.for_user);
  (server.*step)(options.for_user);
  if (step == &Server::Register) {
    std::cout << server.LibraryPath() << " is registered\n";
    return;
  }
  const std::set<std::string> after = RegisteredLibraries(options.for_user);
  bool has_removed = false;
  for (const std::string& library : before) {
    if (after.count(library) != 0) continue;
    std::cout << library << " is no longer registered\n";
    has_removed = true;
  }
  if (!has_removed) std::cout << server.LibraryPath() << " is not registered\n";
  for (const std::string& library : after) {
    std::cout << library << " stays registered; name it with --server to remove it\n";
  }
}

void AddOne(CLI::App& program, const Settings& settings, const char* name, const char* help,
            Step step) {
  auto options = std::make_shared<Options>();
  CLI::App* const command = program.add_subcommand(name, help);
  command->footer(kRegisterHelp);
  command->add_flag("--dry-run", options->is_dry, "Print what would change and change nothing");
  command->add_flag("--user", options->for_user,
                    "For the current user alone; needs no administrator rights");
  if (step == &Server::Register) {
    command->add_flag("--status", options->tells_status,
                      "Change nothing: tell which library serves each class, since when, and "
                      "whether it is this one; the exit code is 1 where none is registered or "
                      "another library serves some");
  }
  command->add_flag("--json", options->as_json, "Print a status or a dry run as JSON");
  command->callback([&settings, options, step] { Run(settings, step, *options); });
}

}  // namespace

void AddRegister(CLI::App& program, const Settings& settings) {
  AddOne(program, settings, "register", "Enter the server's classes in the registry",
         &Server::Register);
  AddOne(program, settings, "unregister", "Remove the server's classes from the registry",
         &Server::Unregister);
}

}  // namespace sabxml::cli
