#include "support/host_double.h"

#include "support/dynamic_library.h"

namespace sab::testing {

HostDouble::HostDouble(HostBehaviour behaviour)
    : library_(LoadLibraryBesideTests(SAB_HOST_LIBRARY)) {
  using SetBehaviour = void (*)(HostBehaviour);
  FunctionIn<SetBehaviour>(library_, "HostDoubleSetBehaviour")(behaviour);
}

HostDouble::~HostDouble() { UnloadLibrary(library_); }

int HostDouble::Created() const { return FunctionIn<int (*)()>(library_, "HostDoubleCreated")(); }

bool HostDouble::WasAsked() const {
  return FunctionIn<int (*)()>(library_, "HostDoubleAsked")() > 0;
}

}  // namespace sab::testing
