#include <iostream>
#include <memory>

#include "cli/commands.h"
#include "cli/display_text.h"
#include "cli/host/object_reader.h"
#include "cli/settings/settings_block.h"
#include "cli/show/descriptor.h"
#include "cli/show/document_element.h"
#include "cli/show/text_template.h"
#include "cli/show/tree_printers.h"
#include "cli/standard_input.h"
#include "cli/trace.h"
#include "text/ascii.h"

namespace sabxml::cli {
namespace {

constexpr char kShowHelp[] =
    "The kind of a file is known by its document element: Application, Template, Module,\n"
    "Environment, Cmd, UI or NEBStandardConfigration, which is the catalogue of drafting\n"
    "standards. A file that does not begin with '<' is a text template of a title block or\n"
    "bill of materials: sections, each after a line [Name].\n"
    "\n"
    "The server reads the file; what is printed is what a host gets from the objects: every\n"
    "property and every Get method, lists element by element.\n"
    "\n"
    "Examples:\n"
    "  sabxml show application.xml\n"
    "  sabxml show --json templates/*.xml\n"
    "  sabxml show title_block.txt\n"
    "  sabxml show ui.xml --json | jq .VeUiParser.UI.RibbonBar\n"
    "\n"
    "With --json one file gives an object, and several an array with one object a file; a file\n"
    "that fails gives {\"file\": …, \"error\": {\"code\": …, \"meaning\": …, \"reason\": …}}.\n";

constexpr char kGetHelp[] =
    "CLASS is one of the server's classes for settings; \"sabxml settings list CLASS\" lists its "
    "keys.\n"
    "NODEPATH is the path of the element that holds them: one file may hold several blocks.\n"
    "A value that the file does not have is shown with its default.\n"
    "\n"
    "Examples:\n"
    "  sabxml get VeAutoUpdateAdminCfgParser settings.xml /Settings/Update\n"
    "  sabxml get VeAutoUpdateAdminCfgParser settings.xml /Settings/Update Interval Server\n";

std::unique_ptr<TreeSink> PrinterFor(const Settings& settings, bool as_json) {
  if (as_json) return std::make_unique<JsonPrinter>(std::cout);
  return std::make_unique<TextTreePrinter>(std::cout, settings.UsesColour());
}

// What an object refused is shown in the tree; it is also a failure of the command.
void CheckRefusals(const ObjectReader& reader, const std::string& file) {
  if (reader.Refusals().empty()) return;
  std::string all;
  for (const std::string& refusal : reader.Refusals()) {
    if (!all.empty()) all += '\n';
    all.append(file).append(": ").append(refusal);
  }
  throw Failure(all);
}

struct ShowOptions {
  std::vector<std::string> files;
  bool as_json = false;
};

void ShowTextTemplate(Server& server, const std::string& file, TreeSink& printer) {
  Trace("opens " + file + ": a text template that is named, by its first character");
  const ComPtr<IDispatch> parser = LoadTextTemplate(server, file);
  printer.BeginObject({}, {}, 0);
  PrintTextTemplate(*parser.Get(), printer);
  printer.End();
}

// @param has_begun whether something was printed, also where the rest fails
void ShowFile(Server& server, const std::string& file, TreeSink& printer, bool& has_begun) {
  if (IsPlainText(file)) return ShowTextTemplate(server, file, printer);
  const DescriptorKind& kind = RecogniseDescriptor(file);
  Trace("opens " + file + ": the " + std::string(kind.about) + " that is named, by its element " +
        std::string(kind.root));
  const ComPtr<IDispatch> parser = LoadDescriptor(server, kind, file);
  ObjectReader reader(printer);
  has_begun = true;
  printer.BeginObject({}, {}, 0);
  reader.Read(*parser.Get(), kind.class_name);
  printer.End();
  CheckRefusals(reader, file);
}

void Show(const Settings& settings, const ShowOptions& options) {
  Server server(settings.server);
  const std::unique_ptr<TreeSink> printer = PrinterFor(settings, options.as_json);
  const bool is_list = options.as_json && options.files.size() > 1;
  if (is_list) printer->BeginList({});
  bool all_shown = true;
  for (const std::string& file : options.files) {
    bool has_begun = false;
    try {
      ShowFile(server, file, *printer, has_begun);
    } catch (const Failure& failure) {
      ReportFailure(failure);
      all_shown = false;
      if (!is_list || has_begun) continue;
      printer->BeginObject({}, {}, 0);
      printer->AddValue("file", file);
      AddFailure(*printer, failure);
      printer->End();
    }
  }
  if (is_list) printer->End();
  if (!all_shown) throw CLI::RuntimeError(1);
}

struct GetOptions {
  std::string class_name;
  std::string file;
  std::string node_path;
  std::vector<std::string> keys;
  bool as_json = false;
};

// A class of settings by any of its names; none for a host's own class.
SettingsChoice GroupServedBy(const std::string& class_name) {
  for (SettingsChoice& choice : SettingsChoices()) {
    const std::string prog_id = "SabXmlParser." + choice.class_name;
    for (const std::string& name : {choice.class_name, prog_id, prog_id + ".1"}) {
      if (sab::EqualsIgnoringAsciiCase(class_name, name)) return std::move(choice);
    }
  }
  return {};
}

// The key that a member is about; a member that no file holds keeps its name. What a row says of
// its member may be the method that sets it.
std::string KeyOfMember(const SettingsChoice& group, const std::string& member) {
  if (!group.table) return member;
  for (const sab::SettingsRow& row : group.table->rows()) {
    const std::string key(row.key);
    const std::string about(row.property);
    for (const std::string& name : {about, "Is" + about, "Select" + key, "Is" + key}) {
      if (name == member) return key;
    }
    if (about == "Add" + member || about == "Set" + member) return key;
  }
  return member;
}

void Get(const Settings& settings, const GetOptions& options) {
  RefuseLastSlash(options.node_path);
  Server server(settings.server);
  const ComPtr<IDispatch> object = server.Create(options.class_name);
  try {
    Call(*object, "Load", DISPATCH_METHOD,
         {Value(PathToRead(options.file)), Value(options.node_path)});
  } catch (const Failure& failure) {
    if (failure.Code() != DISP_E_UNKNOWNNAME && failure.Code() != DISP_E_BADPARAMCOUNT) throw;
    throw Failure(options.class_name + " is no class for settings: it cannot load a node path");
  }
  // To settings objects a missing file or element is one without values.
  const auto file = std::make_shared<SettingsFile>(options.file, SettingsPurpose::kRead);
  file->Require(options.node_path);
  const std::unique_ptr<TreeSink> printer = PrinterFor(settings, options.as_json);
  const SettingsChoice group = GroupServedBy(options.class_name);
  ObjectReader reader(*printer);
  std::vector<std::string> keys = options.keys;
  if (keys.empty() && !group.table && !group.class_name.empty()) {
    // Named values are printed as the keys that they are, and not as one value.
    for (const SettingsEntry& entry : SettingsBlock(group, file, options.node_path).Entries()) {
      if (!entry.is_structure) keys.push_back(entry.key);
    }
  }
  reader.Read(*object.Get(), {}, keys,
              [&group](const std::string& member) { return KeyOfMember(group, member); });
  CheckRefusals(reader, options.file);
}

}  // namespace

void AddShow(CLI::App& program, const Settings& settings) {
  auto options = std::make_shared<ShowOptions>();
  CLI::App* const command = program.add_subcommand(
      "show", "Print every value, list and element of descriptor files and text templates");
  command->footer(kShowHelp);
  command->add_option("FILE", options->files, "Descriptor files, text templates")->required();
  command->add_flag("--json", options->as_json, "Print JSON instead of a tree");
  command->callback([&settings, options] { Show(settings, *options); });
}

void AddGet(CLI::App& program, const Settings& settings) {
  auto options = std::make_shared<GetOptions>();
  CLI::App* const command =
      program.add_subcommand("get", "Print the values of a settings group of a file");
  command->footer(kGetHelp);
  command->add_option("CLASS", options->class_name, "Class of the group")->required();
  command->add_option("FILE", options->file, "Settings file")->required();
  command->add_option("NODEPATH", options->node_path, "Path of the element with the values")
      ->required();
  command->add_option("KEY", options->keys, "Names of values; all of them if none is given");
  command->add_flag("--json", options->as_json, "Print JSON instead of a tree");
  command->callback([&settings, options] { Get(settings, *options); });
}

}  // namespace sabxml::cli
