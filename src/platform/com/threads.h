#pragma once

namespace sabcom {

/// Whether this thread has entered the runtime.
bool IsThreadInitialized();

}  // namespace sabcom
