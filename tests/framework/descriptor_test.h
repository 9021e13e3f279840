#pragma once

#include <gtest/gtest.h>

#include "config/temporary_folder.h"
#include "support/elements.h"
#include "support/late_object.h"

namespace sab::testing {

/// Reads descriptors of all kinds.
class DescriptorTest : public ::testing::Test {
 protected:
  /// An object of the class, put to a file of this content.
  LateObject Put(const std::string& class_name, const std::string& document) const {
    folder_.Write("descriptor.xml", document);
    LateObject object(class_name);
    EXPECT_EQ(S_OK, object.Put("ConfigurationPath", ToUtf8(folder_.Name("descriptor.xml"))));
    return object;
  }
  /// Reads the file of an object: "GenerateApp" of a VeAppParser.
  static HRESULT Generate(const LateObject& object, const std::string& class_name,
                          std::string* failure = nullptr) {
    const std::size_t length = class_name.size() - std::string("VeParser").size();
    return object.Call("Generate" + class_name.substr(2, length), {}, failure);
  }

  TemporaryFolder folder_;
};

}  // namespace sab::testing
