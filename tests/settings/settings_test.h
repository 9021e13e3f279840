#pragma once

#include <gtest/gtest.h>

#include "config/temporary_folder.h"
#include "support/late_object.h"

namespace sab::testing {

/// The elements under a node of a file: "Key=text" each, "Key{…}" where there are elements inside,
/// with a blank between them; "(no file)" if it cannot be read.
std::string ElementsOf(const Text& file, const std::string& node_path);

/// Loads settings from a file of its own and saves them there. All texts are UTF-8.
class SettingsTest : public ::testing::Test {
 protected:
  void Write(const std::string& document) const { folder_.Write("t.xml", document); }
  HRESULT Load(const LateObject& object, const std::string& node_path = "/S/G") const {
    return object.Call("Load", {ToUtf8(file_), node_path});
  }
  HRESULT Save(const LateObject& object, const std::string& node_path = "/S/G") const {
    return object.Call("Save", {ToUtf8(file_), node_path});
  }
  /// What an object saves into an empty group.
  std::string Saved(const LateObject& object) const;
  std::string Elements(const std::string& node_path = "/S/G") const {
    return ElementsOf(file_, node_path);
  }

  TemporaryFolder folder_;
  Text file_ = folder_.Name("t.xml");
};

}  // namespace sab::testing
