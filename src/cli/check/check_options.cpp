#include "cli/check/check_options.h"

#include <set>
#include <utility>

#include "cli/trace.h"

namespace sabxml::cli {

void AddConfiguredOptions(CheckOptions& options) {
  std::set<std::string> known;
  const std::string fail_on = std::exchange(options.fail_on, "");
  for (const std::string& file : options.files) {
    const std::string configuration = sab::check::OptionFileFor(file);
    if (configuration.empty() || !known.insert(configuration).second) continue;
    Trace("opens " + configuration + ": options for " + file);
    AddOptionFile(options, configuration);
  }
  if (!fail_on.empty()) options.fail_on = fail_on;
  if (options.fail_on.empty()) options.fail_on = "error";
  WithPlace(options, options.fail_on, [&options] {
    if (options.fail_on == "error" || options.fail_on == "warning" || options.fail_on == "never") {
      return;
    }
    throw Misunderstood("--fail-on takes error, warning or never, not " + options.fail_on);
  });
}

}  // namespace sabxml::cli
