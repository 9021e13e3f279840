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
    "With --json there is one document a file, one after the other.\n";

constexpr char kGetHelp[] =
    "CLASS is one of the server's classes for settings; \"sabxml describe CLASS\" lists its "
    "values.\n"
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

void ShowTextTemplate(const Settings& settings, Server& server, const std::string& file,
                      bool as_json) {
  const ComPtr<IDispatch> parser = LoadTextTemplate(server, file);
  const std::unique_ptr<TreeSink> printer = PrinterFor(settings, as_json);
  printer->BeginObject({}, {}, 0);
  PrintTextTemplate(*parser.Get(), *printer);
  printer->End();
}

void ShowFile(const Settings& settings, Server& server, const std::string& file, bool as_json) {
  if (IsPlainText(file)) return ShowTextTemplate(settings, server, file, as_json);
  const DescriptorKind& kind = RecogniseDescriptor(file);
  const ComPtr<IDispatch> parser = LoadDescriptor(server, kind, file);
  const std::unique_ptr<TreeSink> printer = PrinterFor(settings, as_json);
  ObjectReader reader(*printer);
  printer->BeginObject({}, {}, 0);
  reader.Read(*parser.Get(), kind.class_name);
  printer->End();
  CheckRefusals(reader, file);
}

void Show(const Settings& settings, const ShowOptions& options) {
  Server server(settings.server);
  bool all_shown = true;
  for (const std::string& file : options.files) {
    try {
      ShowFile(settings, server, file, options.as_json);
    } catch (const Failure& failure) {
      ReportFailure(failure);
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
  sab::ConfigDocument document;
  OpenSettings(document, options.file, options.node_path);
  const std::unique_ptr<TreeSink> printer = PrinterFor(settings, options.as_json);
  ObjectReader reader(*printer);
  reader.Read(*object.Get(), {}, options.keys);
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
