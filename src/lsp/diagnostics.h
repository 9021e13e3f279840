#pragma once

#include <map>
#include <string>
#include <vector>

#include "lsp/features.h"

namespace sab::lsp {

/// A finding as the protocol has it.
Json DiagnosticOf(Context& context, const check::Finding& finding);

/// Tells a client what is wrong with the files of its applications, those that are not open
/// included, where it has changed.
class Diagnostics {
 public:
  /// The notifications to send, in order of the files.
  std::vector<Json> Publish(Context& context);

 private:
  std::map<std::string, std::string> published_;  // bytes by address
};

}  // namespace sab::lsp
