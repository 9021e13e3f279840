#pragma once

#include <functional>

namespace sab::testing {

/// Does an action again and again, each time with one of its file calls, in the tests and in every
/// library that they have loaded, going wrong in one of the ways that calls can; the next ones work
/// again. Expects each time that no descriptor is left open.
/// @param check is called after the action
/// @return how many calls went wrong
long WithEachFileCallFailing(const std::function<void()>& act, const std::function<void()>& check);

/// Does an action again and again in a child process, which kills itself at the first of its file
/// calls, then at the second and so on; of a write that it comes to, half is done.
/// @param check is called after each child that was killed
/// @return how many were
long KilledAtEachFileCall(const std::function<void()>& act, const std::function<void()>& check);

}  // namespace sab::testing
