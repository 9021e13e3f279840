// What a shell asks for when a word is to be completed: a candidate a line, nothing where there is
// none. The command is for the shells' scripts and is not listed in the help.

#include <iostream>
#include <memory>

#include "check/finding.h"
#include "cli/check/document_kinds.h"
#include "cli/check/explain.h"
#include "cli/commands.h"
#include "cli/host/server.h"
#include "cli/host/type_description.h"
#include "cli/settings/settings_block.h"

namespace sabxml::cli {
namespace {

namespace check = sab::check;

using Candidates = std::vector<std::string>;

Candidates GroupsToOffer() {
  Candidates names;
  for (const SettingsChoice& group : SettingsChoices()) names.push_back(group.class_name);
  return names;
}

// What begins a further block among the keys of one.
Candidates BlocksToOffer() {
  Candidates beginnings;
  for (const SettingsChoice& group : SettingsChoices())
    beginnings.push_back(group.class_name + ":");
  return beginnings;
}

// The keys of a group; of one that takes any key none.
Candidates KeysToOffer(const std::string& class_name) {
  Candidates keys;
  const SettingsChoice group = SettingsChoiceNamed(class_name);
  if (!group.table) return keys;
  for (const sab::SettingsRow& row : group.table->rows()) keys.emplace_back(row.key);
  return keys;
}

Candidates RulesToOffer() {
  Candidates ids;
  for (const check::RuleText& rule : check::Rules()) ids.emplace_back(rule.id);
  return ids;
}

// With the interfaces, which are described like classes.
Candidates ClassesToOffer(const Settings& settings) {
  Candidates names;
  Server server(settings.server);
  const ComPtr<ITypeLib> library = server.TypeLibrary();
  for (const auto& all : {DescribeClasses(*library.Get()), DescribeInterfaces(*library.Get())}) {
    for (const ClassDescription& known : all) names.push_back(known.name);
  }
  return names;
}

// The class of the block that the last of the words begins, or of the first block.
std::string ClassOfBlock(const std::string& first_class, const std::vector<std::string>& words) {
  for (auto word = words.rbegin(); word != words.rend(); ++word) {
    const std::size_t colon = BlockColonIn(*word);
    if (colon != word->npos) return word->substr(0, colon);
  }
  return first_class;
}

Candidates KeysAndBlocksToOffer(const std::string& class_name) {
  Candidates candidates = KeysToOffer(class_name);
  for (std::string& block : BlocksToOffer()) candidates.push_back(std::move(block));
  return candidates;
}

Candidates CandidatesFor(const Settings& settings, const std::string& kind,
                         const std::string& subject, const std::vector<std::string>& words) {
  if (kind == "group") return GroupsToOffer();
  if (kind == "key") return KeysToOffer(subject);
  if (kind == "key-or-block") return KeysAndBlocksToOffer(ClassOfBlock(subject, words));
  if (kind == "node") return NodePathsOf(subject);
  if (kind == "rule") return RulesToOffer();
  if (kind == "kind") return KindsWithElements();
  if (kind == "explained-kind") return ExplainedKinds();
  if (kind == "element") return ExplainedNames();
  if (kind == "class") return ClassesToOffer(settings);
  return {};
}

}  // namespace

void AddCompletion(CLI::App& program, const Settings& settings) {
  struct Options {
    std::string kind;
    std::string subject;
    std::vector<std::string> words;
  };
  auto options = std::make_shared<Options>();
  CLI::App* const command = program.add_subcommand("complete", "Candidates for a word");
  command->group("");
  command->footer("");
  command
      ->add_option(
          "KIND", options->kind,
          "What is wanted: class, element, explained-kind, group, key, key-or-block, kind, "
          "node or rule")
      ->required();
  command->add_option("OF", options->subject, "The class of the keys, or the file of the nodes");
  command->add_option("WORD", options->words, "The arguments before the one that is typed");
  command->callback([&settings, options] {
    // A line that is being typed may be wrong; a shell wants no message then.
    try {
      for (const std::string& word :
           CandidatesFor(settings, options->kind, options->subject, options->words))
        std::cout << word << '\n';
    } catch (const Failure&) {
    }
  });
}

}  // namespace sabxml::cli
