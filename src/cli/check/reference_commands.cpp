// Commands that tell of the formats and of the identifiers of a project: schema, explain, find.

#include <filesystem>
#include <iostream>
#include <memory>
#include <set>

#include "base/com_error.h"
#include "cli/check/check_options.h"
#include "cli/check/check_output.h"
#include "cli/check/document_kinds.h"
#include "cli/check/explain.h"
#include "cli/commands.h"
#include "cli/display_text.h"
#include "cli/standard_input.h"
#include "cli/suggestion.h"
#include "cli/tree_sink.h"
#include "platform/file.h"
#include "project/project.h"
#include "project/xml_schema.h"

namespace sabxml::cli {
namespace {

namespace formats = sab::formats;
namespace project = sab::project;

// A question that cannot be answered, though the command line is understood.
class NoAnswer : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

template <class Action>
void Reporting(const char* command, const Action& action) {
  try {
    return action();
  } catch (const Misunderstood& error) {
    std::cout.flush();
    std::cerr << "sabxml: " << AsMessage(error.what()) << "\nTry: sabxml " << command
              << " --help\n";
  } catch (const NoAnswer& error) {
    ReportFailure(Failure(error.what()));
  } catch (const sab::ComError& error) {
    throw Failure(error.what(), error.Code());
  }
  throw CLI::RuntimeError(2);
}

// --- schema ---

void PrintSchema(const std::string& kind, const std::string& folder) {
  if (folder.empty()) {
    if (kind.empty()) throw Misunderstood("name a KIND, or a folder for all with --out DIR");
    std::cout << project::XmlSchemaOf(CheckedKind(kind));
    return;
  }
  const formats::Document* const chosen = kind.empty() ? nullptr : &CheckedKind(kind);
  std::error_code error;
  std::filesystem::create_directories(project::PathOf(folder), error);
  if (error) throw Failure("cannot make the folder " + folder + ": " + error.message());
  const auto write = [&folder](const std::string& name, const std::string& bytes) {
    const std::string file = project::TextOf(project::PathOf(folder) / name);
    sab::ReplaceFileBytes(FromUtf8(file), bytes);
    std::cout << file << '\n';
  };
  for (const formats::Document* const document : project::DocumentsWithElements()) {
    const std::string name = project::ShortNameOf(*document);
    if (chosen && document != chosen) continue;
    write(name + ".xsd", project::XmlSchemaOf(*document));
  }
  write("catalog.xml", project::XmlCatalogOfSchemas());
}

// --- find ---

struct IdentifierUse {
  std::string file;
  sab::xml::Place place;
  std::string subject;
};

Json UsesAsJson(const std::vector<IdentifierUse>& uses) {
  Json list = Json::array();
  for (const IdentifierUse& use : uses) {
    list.push_back({{"file", use.file},
                    {"line", use.place.line},
                    {"column", use.place.column},
                    {"kind", use.subject}});
  }
  return list;
}

std::string WhyNotRead(const project::File& file) {
  return PlaceIn(file.Path(), file.Failure()->place) + ": " + file.Failure()->message;
}

// Files that may have further definitions and uses, a message each.
std::vector<std::string> FilesNotRead(const project::Project& all) {
  std::vector<std::string> files;
  for (project::FileIndex index = 0; index < all.FileCount(); ++index) {
    if (all.At(index).Failure()) files.push_back(WhyNotRead(all.At(index)));
  }
  std::set<std::string> missing;
  for (const project::Link& link : all.Links()) {
    if (link.to != project::kNoFile || !missing.insert(link.found.path).second) continue;
    files.push_back(link.found.path + ": there is no such file; " + all.At(link.from).Path() +
                    " names it \"" + std::string(link.path.text) + "\"");
  }
  return files;
}

void FindIdentifier(const std::string& id, const std::string& file, bool as_json) {
  project::Source source;
  std::string reason;
  auto bytes = source.Read(PathToRead(file), reason);
  if (!bytes) throw NoAnswer(file + ": " + reason);
  if (file == kStandardInput) source.Open(file, std::move(*bytes));
  project::Project all(source);
  const project::File& start = all.At(all.Read(file));
  TraceFiles(all);
  if (start.Failure()) throw NoAnswer(WhyNotRead(start));
  std::vector<IdentifierUse> definitions;
  std::vector<IdentifierUse> references;
  std::vector<std::string> others;
  for (project::FileIndex index = 0; index < all.FileCount(); ++index) {
    const project::File& at = all.At(index);
    for (const project::Identifier& identifier : at.Identifiers()) {
      const formats::Rule& rule = at.GetSchema().At(identifier.rule);
      if (rule.role == formats::Role::kLeadsTo) continue;
      if (identifier.text != id) {
        others.emplace_back(identifier.text);
        continue;
      }
      (rule.role == formats::Role::kDefines ? definitions : references)
          .push_back({at.Path(), at.PlaceOf(at.ValueSpan(identifier.node).from),
                      std::string(formats::NameOf(rule.subject))});
    }
  }
  if (as_json) {
    const Json whole = {{"id", id},
                        {"definitions", UsesAsJson(definitions)},
                        {"references", UsesAsJson(references)}};
    std::cout << whole.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
  } else {
    const auto print = [&id](const std::vector<IdentifierUse>& uses, const char* what) {
      for (const IdentifierUse& use : uses) {
        std::cout << OnOneLine(use.file) << ':' << use.place.line << ':' << use.place.column << ": "
                  << what << ' ' << use.subject << ' ' << OnOneLine(id) << '\n';
      }
    };
    print(definitions, "defines");
    print(references, "uses");
  }
  std::cout.flush();
  const std::vector<std::string> unread = FilesNotRead(all);
  for (const std::string& why : unread) Warn(why);
  if (!definitions.empty() || !references.empty()) return;
  const std::string message = file + ": nothing defines or uses " + id;
  if (!unread.empty()) throw NoAnswer(message + " in the files that can be read");
  throw Failure(message + DidYouMean(id, others));
}

}  // namespace

void AddReferenceCommands(CLI::App& program) {
  struct Options {
    std::string name;
    std::string kind;
    std::string folder;
    std::string file = "application.xml";
    bool as_json = false;
  };
  auto options = std::make_shared<Options>();

  CLI::App* const find =
      program.add_subcommand("find", "Tell where an identifier of a project is defined and used");
  find->add_option("ID", options->name, "Identifier of a command, panel, menu, module and so on")
      ->required();
  find->add_option("FILE", options->file,
                   "Document, with all that it leads to; application.xml unless another is named");
  find->add_flag("--json", options->as_json, "Print the places as JSON");
  find->footer(
      "Exit codes: 0 found; 1 nothing has the identifier; 2 a file that may have it cannot be "
      "read.\n");
  find->callback([options] {
    Reporting("find",
              [&options] { FindIdentifier(options->name, options->file, options->as_json); });
  });

  CLI::App* const explain =
      program.add_subcommand("explain", "Tell what an element of a document means");
  explain
      ->add_option("ELEMENT", options->name,
                   "Name of an element, of a key of settings or of a section of a text template, "
                   "as files spell it")
      ->required();
  explain->add_option("KIND", options->kind,
                      "Kind of document: application, template, module, environment, commands, "
                      "user-interface, standards, browse-history, settings, text-template");
  explain->add_flag("--json", options->as_json, "Print JSON");
  explain->footer("Example:\n  sabxml explain RibbonButton user-interface\n");
  explain->callback([options] {
    Reporting("explain",
              [&options] { ExplainElement(options->name, options->kind, options->as_json); });
  });

  CLI::App* const schema =
      program.add_subcommand("schema", "Print the XML Schema of a kind of document");
  schema->add_option("KIND", options->kind,
                     "Kind of document: application, template, module, environment, commands, "
                     "user-interface, standards, browse-history");
  schema->add_option("--out", options->folder,
                     "DIR for one file a kind, with a catalog.xml for editors");
  schema->footer("Example:\n  sabxml schema --out schemas\n");
  schema->callback([options] {
    Reporting("schema", [&options] { PrintSchema(options->kind, options->folder); });
  });
}

}  // namespace sabxml::cli
