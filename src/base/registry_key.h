#pragma once

#include "base/text.h"

namespace sab {

/// A key of the registry that was opened, closed at the end.
class OpenKey {
 public:
  OpenKey(HKEY parent, const Text& path, REGSAM access)
      : status_(RegOpenKeyExW(parent, path.c_str(), 0, access, &key_)) {}
  OpenKey(const OpenKey&) = delete;
  OpenKey& operator=(const OpenKey&) = delete;
  ~OpenKey() {
    if (status_ == ERROR_SUCCESS) RegCloseKey(key_);
  }

  LSTATUS Status() const { return status_; }
  explicit operator bool() const { return status_ == ERROR_SUCCESS; }
  HKEY Get() const { return key_; }

 private:
  HKEY key_ = nullptr;
  LSTATUS status_;
};

}  // namespace sab
