#pragma once

#include <functional>

namespace sab::testing {

/// Does an action again and again while memory runs out: operator new, in the tests and in every
/// library that they have loaded, and the memory of the component runtime fail after 0, 1, 2 …
/// allocations that succeed, until none has failed. Expects each time that no descriptor is left
/// open.
/// @param check is called after the action, with memory; has_failed: whether an allocation failed
/// @return how many allocations failed
long WithEachAllocationFailing(const std::function<void()>& act,
                               const std::function<void(bool has_failed)>& check);

}  // namespace sab::testing
