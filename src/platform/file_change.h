#pragma once

#include <string>

#include "base/com_error.h"
#include "platform/file_name.h"
#include "system_file.h"

namespace sab {

/// Finds the file that a name means and does something to it. Raises ComError, with the name and
/// the reason, where the name means no file or either step fails.
///
/// @tparam Target of the platform: made of PathOf(name). Its Find() gives 0 or the error number of
///     the system, as action(target) does.
template <class Target, class Action>
void ChangeFile(TextView name, const Action& action) {
  const std::string failure = "cannot write " + ToUtf8(name) + ": ";
  if (const char* const reason = ReasonAgainstName(name))
    throw ComError(E_INVALIDARG, failure + reason);
  Target target{PathOf(name)};
  auto error = target.Find();
  if (error == 0) error = action(target);
  if (error != 0) throw ComError(ResultOf(error), failure + Words(error));
}

}  // namespace sab
