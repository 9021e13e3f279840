#pragma once

#include <string_view>

#include "check/reporter.h"

namespace sab::check {

/// Whether a key is pressed together with Ctrl, by the text of its element.
bool MeansCtrl(std::string_view ctrl);

/// Keys of a user interface that two commands, tabs or items of a menu share.
void CheckKeys(Reporter& reporter, project::FileIndex file);

}  // namespace sab::check
