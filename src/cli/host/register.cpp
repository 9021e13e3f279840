#include <SabXmlParser.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <memory>
#include <set>
#include <string>

#include "base/registry_key.h"
#include "cli/commands.h"
#include "cli/platform.h"

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
    "  sabxml unregister\n"
    "\n"
    "A dry run needs a registry that is a file, as everywhere but on Windows: the one that "
    "--registry\n"
    "or SABCOM_REGISTRY names, else sabcom/registry.reg in $XDG_DATA_HOME or ~/.local/share.\n";

void PrintDifference(std::vector<std::string> before, std::vector<std::string> after) {
  std::sort(before.begin(), before.end());
  std::sort(after.begin(), after.end());
  std::vector<std::string> gone;
  std::vector<std::string> added;
  std::set_difference(before.begin(), before.end(), after.begin(), after.end(),
                      std::back_inserter(gone));
  std::set_difference(after.begin(), after.end(), before.begin(), before.end(),
                      std::back_inserter(added));
  for (const std::string& line : gone) std::cout << "- " << line << '\n';
  for (const std::string& line : added) std::cout << "+ " << line << '\n';
  if (gone.empty() && added.empty()) std::cout << "Nothing would change.\n";
}

// The default value of a key below one that is open; empty without a text.
std::string DefaultText(const sab::OpenKey& parent, const sab::Text& name) {
  const sab::OpenKey key(parent.Get(), name, KEY_READ);
  OLECHAR text[1024] = {};
  DWORD size = sizeof text - sizeof(OLECHAR);
  DWORD type = REG_NONE;
  if (!key ||
      RegQueryValueExW(key.Get(), nullptr, nullptr, &type, reinterpret_cast<LPBYTE>(text), &size) !=
          ERROR_SUCCESS ||
      type != REG_SZ) {
    return {};
  }
  return sab::ToUtf8(text);
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
    if (entry && DefaultText(entry, OLESTR("TypeLib")) == sab::ToUtf8(type_library)) {
      libraries.insert(DefaultText(entry, OLESTR("InprocServer32")));
    }
  }
}

struct Options {
  bool is_dry = false;
  bool for_user = false;
};

using Step = void (Server::*)(bool for_user);

void Run(const Settings& settings, Step step, const Options& options) {
  Server server(settings.server);
  if (options.is_dry) {
    const RegistryChange change = TryOnScratchRegistry([&] { (server.*step)(options.for_user); });
    PrintDifference(change.before, change.after);
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
