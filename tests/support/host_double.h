#pragma once

#include <sabxml/com.h>

namespace sab::testing {

/// What the test's VeKit library does when the server asks it.
enum class HostBehaviour {
  kHasNoList,            ///< GetCCFL answers FALSE
  kSubstitutes,          ///< creates objects of a class of its own for VePrsConfig
  kFailsToCreate,        ///< knows VePrsConfig, and fails
  kCreatesForeignObject  ///< creates something that is no VePrsConfig
};

/// The host's support library as the tests know it: loaded while an instance lives, so that the
/// server finds it in the process, and unloaded afterwards.
class HostDouble {
 public:
  explicit HostDouble(HostBehaviour behaviour);
  HostDouble(const HostDouble&) = delete;
  HostDouble& operator=(const HostDouble&) = delete;
  ~HostDouble();

  int Created() const;    ///< objects of the host's own classes made so far
  bool WasAsked() const;  ///< whether the list's creation operation was called

 private:
  void* library_;
};

}  // namespace sab::testing
