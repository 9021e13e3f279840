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
#include "platform/registry_change.h"

namespace sabxml::cli {
namespace {

constexpr char kDryRunHelp[] =
    "\n"
    "A dry run needs a registry that is a file, as everywhere but on Windows: the one that "
    "--registry\n"
    "or SABCOM_REGISTRY names, else sabcom/registry.reg in $XDG_DATA_HOME or ~/.local/share.\n";

constexpr char kRegisterHelp[] =
    "The library is the one that --server or SABXML_SERVER names, else the one beside this "
    "program.\n"
    "\n"
    "Examples:\n"
    "  sabxml register --dry-run                 + is what would be added, - what would go\n"
    "  sabxml register --registry /tmp/test.reg  where the registry is a file\n"
    "  sabxml register --user                    without administrator rights\n"
    "  sabxml register --status                  which library serves each class\n";

constexpr char kUnregisterHelp[] =
    "Removes what registering this very library wrote and nothing else; another copy stays\n"
    "registered. The library is the one that --server or SABXML_SERVER names, else the one beside\n"
    "this program. A registered library whose file is missing may be named, too.\n"
    "\n"
    "Examples:\n"
    "  sabxml unregister\n"
    "  sabxml unregister --user                  what register --user wrote\n"
    "  sabxml unregister --dry-run               - is what would go\n"
    "  sabxml --server /opt/old/server.so unregister\n";

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
  bool is_of_user = false;
};

std::filesystem::path LibraryFile(const std::string& utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

bool IsSameFile(const std::string& a, const std::string& b) {
  std::error_code error;
  return a == b || std::filesystem::equivalent(LibraryFile(a), LibraryFile(b), error);
}

// A name without a folder is looked for by the system.
bool IsMissing(const std::string& library) {
  std::error_code error;
  return LibraryFile(library).is_absolute() &&
         std::filesystem::status(LibraryFile(library), error).type() ==
             std::filesystem::file_type::not_found;
}

std::vector<RegisteredClass> RegisteredClassesOf(Server& server, bool for_user) {
  const ComPtr<ITypeLib> types = server.TypeLibrary();
  std::vector<RegisteredClass> classes;
  for (const ClassDescription& known : DescribeClasses(*types.Get())) {
    RegisteredClass& found = classes.emplace_back();
    found.name = known.name;
    const std::string& clsid =
        known.registered_identifier.empty() ? known.identifier : known.registered_identifier;
    const RegisteredLibrary registered = RegisteredLibraryOf(clsid, for_user);
    if (registered.path.empty()) continue;
    found.library = registered.path;
    found.since = registered.since;
    found.is_of_user = registered.key.starts_with("HKEY_CURRENT_USER");
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
                     {"is_this_library", known.is_this_one},
                     {"is_missing", IsMissing(known.library)}});
    }
    const std::string file = RegistryFile();
    PrintJson({{"this_library", server.LibraryPath()},
               {"registry", file.empty() ? RegistryName() : file},
               {"classes", std::move(all)}});
    return code;
  }
  Columns columns;
  for (const RegisteredClass& known : classes) {
    if (known.library.empty()) {
      columns.Add({known.name, "not registered"});
    } else {
      const char* const which = known.is_this_one          ? "this library"
                                : IsMissing(known.library) ? "missing library"
                                                           : "another library";
      columns.Add({known.name, which, known.since, OnOneLine(known.library)});
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
  std::set<std::string> told;
  for (const RegisteredClass& known : classes) {
    if (!IsMissing(known.library) || !told.insert(known.library).second) continue;
    const std::string library = OnOneLine(known.library);
    std::cout << library << " is missing. To unregister it: sabxml --server \"" << library
              << "\" unregister" << (known.is_of_user ? " --user\n" : "\n");
  }
  return code;
}

struct Options {
  bool is_dry = false;
  bool for_user = false;
  bool tells_status = false;
  bool as_json = false;
};

using Step = void (Server::*)(bool for_user);

// The registered library that is meant, where its file is missing; empty for any other.
std::string MissingLibrary(const std::set<std::string>& registered, const std::string& named) {
  std::error_code error;
  const std::filesystem::path full = std::filesystem::absolute(LibraryFile(named), error);
  for (const std::string& library : registered) {
    const bool is_named = library == named || LibraryFile(library) == full;
    if (is_named && IsMissing(library)) return library;
  }
  return {};
}

// A library that is missing cannot remove its entries. They are those that this program's own one
// writes, but for its path.
void UnregisterMissing(const std::string& library, const std::set<std::string>& registered,
                       bool for_user) {
  if (registered.size() > 1) {
    throw Failure(library +
                  " is missing, and other libraries serve some of the classes: unregister "
                  "these first");
  }
  Server own(OwnServer());
  OrFail([&own, for_user] {
    sab::RegistryChange change;
    own.Register(for_user);
    own.Unregister(for_user);
    change.Keep();
  });
}

void Run(const Settings& settings, Step step, const Options& options) {
  if (options.tells_status) {
    if (options.is_dry)
      throw CLI::ValidationError("register", "choose one of --status and --dry-run");
    if (const int code = PrintStatus(settings, options.for_user, options.as_json))
      throw CLI::RuntimeError(code);
    return;
  }
  if (options.as_json && !options.is_dry)
    throw step == &Server::Register
        ? CLI::ValidationError("register", "--json is for --status and --dry-run")
        : CLI::ValidationError("unregister", "--json is for --dry-run");
  Server server(settings.server);
  Trace("the registry is " + RegistryName());
  const std::set<std::string> before = RegisteredLibraries(options.for_user);
  const std::string missing =
      step == &Server::Unregister ? MissingLibrary(before, server.LibraryPath()) : std::string();
  const auto take_step = [&] {
    if (missing.empty()) return (server.*step)(options.for_user);
    UnregisterMissing(missing, before, options.for_user);
  };
  if (options.is_dry) {
    const RegistryDifference change = TryOnScratchRegistry(take_step);
    PrintDifference(change.before, change.after, options.as_json);
    return;
  }
  take_step();
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
  const bool registers = step == &Server::Register;
  command->footer(std::string(registers ? kRegisterHelp : kUnregisterHelp) + kDryRunHelp);
  command->add_flag("--dry-run", options->is_dry, "Print what would change and change nothing");
  command->add_flag("--user", options->for_user,
                    "For the current user alone; needs no administrator rights");
  if (registers) {
    command->add_flag("--status", options->tells_status,
                      "Change nothing: tell which library serves each class, since when, and "
                      "whether it is this one; the exit code is 1 where none is registered or "
                      "another library serves some");
  }
  command->add_flag("--json", options->as_json,
                    registers ? "Print a status or a dry run as JSON" : "Print a dry run as JSON");
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
