#pragma once

#include "base/com_error.h"
#include "common/config_document.h"
#include "config/temporary_folder.h"

namespace sab {

/// A document in a folder of its own.
class DocumentTest : public testing::Test {
 protected:
  /// Loads a document that is expected to be good.
  void Load(const std::string& bytes) {
    folder_.Write("t.xml", bytes);
    ASSERT_TRUE(document_.Load(name_)) << document_.Failure().Describe();
  }
  /// What stands in the file after a save.
  std::string Saved() {
    document_.Save(name_);
    return folder_.Read("t.xml");
  }
  std::string TextOf(const ConfigElement& element) {
    return element ? ToUtf8(element.ReadText(scratch_)) : "<none>";
  }
  std::string TextAt(std::string_view path) { return TextOf(document_.Select(path)); }

  TemporaryFolder folder_;
  Text name_ = folder_.Name("t.xml");
  ConfigDocument document_;
  Text scratch_;
};

}  // namespace sab
