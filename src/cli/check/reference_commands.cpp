// Commands that tell of the formats and of the identifiers of a project: schema, explain, find.

#include <filesystem>
#include <iostream>
#include <memory>
#include <set>

#include "base/com_error.h"
#include "cli/check/check_options.h"
#include "cli/check/check_output.h"
#include "cli/commands.h"
#include "cli/display_text.h"
#include "cli/standard_input.h"
#include "cli/suggestion.h"
#include "cli/tree_sink.h"
#include "formats/manual.h"
#include "platform/file.h"
#include "project/project.h"
#include "project/rule_words.h"
#include "project/xml_schema.h"
#include "text/ascii.h"

namespace sabxml::cli {
namespace {

namespace formats = sab::formats;
namespace project = sab::project;

// Settings are no kind of document; their keys are explained like elements.
constexpr std::string_view kSettingsKind = "settings";

std::string Listed(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
  return list;
}

[[noreturn]] void RefuseKind(const std::string& name, const std::vector<std::string>& kinds) {
  throw Misunderstood("there is no kind of document " + name +
                      DidYouMean(name, kinds, "the kinds are " + Listed(kinds)));
}

std::vector<std::string> KindsWithElements() {
  std::vector<std::string> kinds;
  for (const formats::Document* const document : project::DocumentsWithElements())
    kinds.push_back(project::ShortNameOf(*document));
  return kinds;
}

const formats::Document& CheckedKind(const std::string& name) {
  if (const formats::Document* const document = project::DocumentNamed(name)) return *document;
  RefuseKind(name, KindsWithElements());
}

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

// --- explain ---

// Every element of a name: lines for people, or an array.
class Explanations {
 public:
  void Begin(const std::string& element, std::string_view help) {
    if (!text_.empty()) text_ += '\n';
    text_ += element + ": " + std::string(help) + '\n';
    all_.push_back({{"element", element}, {"help", help}});
  }
  void Add(std::string_view name, std::string_view line) {
    if (line.empty()) return;
    text_ += "  " + Padded(name, 10) + std::string(line) + '\n';
    all_.back()[std::string(name)] = line;
  }

  bool IsEmpty() const { return text_.empty(); }
  void Print(bool as_json) const { std::cout << (as_json ? all_.dump(2) + '\n' : text_); }

 private:
  std::string text_;
  Json all_ = Json::array();
};

void ExplainRule(const formats::Rule& rule, const std::string& places, std::string_view about,
                 Explanations& found) {
  found.Begin(std::string(rule.name), rule.help);
  found.Add("in", places + " (" + std::string(about) + ")");
  found.Add("type", formats::WordsFor(rule.type));
  found.Add("need", project::NeedOf(rule));
  found.Add("default", DefaultOf(rule));
  found.Add("counts", project::WhichCounts(rule));
  std::string content;
  for (const formats::Rule& inner : rule.Content()) {
    if (inner.name == formats::kAnyName) continue;
    content += (content.empty() ? "" : ", ") + std::string(inner.name);
  }
  found.Add("holds", content);
}

// Keys of settings, and what is in those that are structures.
void ExplainKeys(const std::string& element, std::span<const formats::Rule> keys,
                 std::string_view place, Explanations& found, std::vector<std::string>& names) {
  for (const formats::Rule& rule : keys) {
    names.emplace_back(rule.name);
    if (rule.name == element) ExplainRule(rule, std::string(place), "settings", found);
    ExplainKeys(element, rule.Content(), rule.name, found, names);
  }
}

const formats::Document& Sections() {
  return formats::DocumentOfKind(formats::Kind::kTextTemplate);
}

// What can be explained: kinds of documents, settings, and sections of text templates.
std::vector<std::string> ExplainedKinds() {
  std::vector<std::string> kinds = KindsWithElements();
  kinds.emplace_back(kSettingsKind);
  kinds.push_back(project::ShortNameOf(Sections()));
  return kinds;
}

void ExplainElementOf(const formats::Document& document, const std::string& element,
                      Explanations& found, std::vector<std::string>& names) {
  const project::Schema& schema = project::Schema::Of(document.kind);
  names.emplace_back(document.root);
  if (element == document.root) {
    found.Begin(element, document.help);
    found.Add("is", "the document element of a file of the kind " + std::string(document.about));
  }
  for (project::RuleId id = 1; id < schema.RuleCount(); ++id) {
    const formats::Rule& rule = schema.At(id);
    names.emplace_back(rule.name);
    if (rule.name != element) continue;
    ExplainRule(rule, project::PlacesOf(schema, schema.HomeOf(id)), document.about, found);
  }
}

// Adds what a kind has of an element, and the names of all elements that it knows.
void ExplainIn(const std::string& kind, const std::string& element, Explanations& found,
               std::vector<std::string>& names) {
  if (const formats::Document* const document = project::DocumentNamed(kind))
    return ExplainElementOf(*document, element, found, names);
  if (kind == kSettingsKind) {
    for (const formats::SettingsGroup* const group : formats::SettingsGroups())
      ExplainKeys(element, group->keys, group->class_name, found, names);
    return;
  }
  for (const formats::Rule& section : Sections().content) {
    names.emplace_back(section.name);
    if (section.name != element) continue;
    found.Begin(element, section.help);
    found.Add("is", "a section of a " + std::string(Sections().about));
  }
}

std::string CheckedExplainedKind(const std::string& name) {
  if (const formats::Document* const document = project::DocumentNamed(name))
    return project::ShortNameOf(*document);
  Explanations found;
  std::vector<std::string> names;
  for (const std::string& kind : ExplainedKinds()) {
    if (sab::EqualsIgnoringAsciiCase(kind, name)) return kind;
    ExplainIn(kind, name, found, names);
  }
  if (found.IsEmpty()) RefuseKind(name, ExplainedKinds());
  throw Misunderstood(name +
                      " is no kind of document, but has an explanation of its own; try "
                      "sabxml explain " +
                      name);
}

[[noreturn]] void RefuseElement(const std::string& element, const std::string& kind,
                                const std::vector<std::string>& names_of_kind) {
  std::vector<std::string> kinds;  // that have it
  std::vector<std::string> names;
  for (const std::string& other : ExplainedKinds()) {
    Explanations found;
    ExplainIn(other, element, found, names);
    if (!found.IsEmpty()) kinds.push_back(other);
  }
  if (kinds.empty()) {
    std::string meant = DidYouMean(element, names_of_kind);
    if (meant.empty()) meant = DidYouMean(element, names);
    throw Misunderstood("there is no element, key or section " + element + meant);
  }
  throw Misunderstood("no " + element + " is known in files of the kind " + kind +
                      ", but in those of " + Listed(kinds) + "; try sabxml explain " + element +
                      " " + kinds.front());
}

void ExplainElement(const std::string& element, const std::string& kind, bool as_json) {
  const std::vector<std::string> kinds =
      kind.empty() ? ExplainedKinds() : std::vector{CheckedExplainedKind(kind)};
  std::vector<std::string> names;
  Explanations found;
  for (const std::string& one : kinds) ExplainIn(one, element, found, names);
  if (found.IsEmpty()) RefuseElement(element, kinds.front(), names);
  found.Print(as_json);
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
