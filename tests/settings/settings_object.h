#pragma once

#include <SabXmlParser.h>

#include <string>
#include <vector>

#include "base/bstr.h"
#include "base/com_ptr.h"

namespace sab::testing {

/// A settings parser as a host that binds late knows it. All texts are UTF-8.
class SettingsObject {
 public:
  /// A new object of a class of the type library by its name; fails the test if there is none.
  explicit SettingsObject(const std::string& class_name);

  HRESULT Load(const Text& file, const std::string& node_path) {
    return Run("Load", file, node_path);
  }
  HRESULT Save(const Text& file, const std::string& node_path) {
    return Run("Save", file, node_path);
  }

  /// Sets a property, or calls a method, with texts that are converted to what it wants.
  HRESULT Put(const std::string& property, const std::string& value);
  HRESULT Call(const std::string& method, const std::vector<std::string>& arguments);
  /// A property, or what a method without arguments returns: truth values as the number they are,
  /// doubles with six decimals, and scripts get a double where a number does not fit into 32 bits
  /// with a sign; "(0x…)" for a failure.
  std::string Get(const std::string& member);
  /// The same with an argument.
  std::string Get(const std::string& member, const std::string& argument);

  template <class Interface>
  ComPtr<Interface> As() const {
    return object_.As<Interface>();
  }

 private:
  HRESULT Run(const std::string& method, const Text& file, const std::string& node_path);
  HRESULT Invoke(const std::string& name, WORD flags, const std::vector<Bstr>& arguments,
                 VARIANT* result);
  std::string TextOfCall(const std::string& member, const std::vector<Bstr>& arguments);

  ComPtr<IDispatch> object_;
};

/// The class identifier by which a class of the type library is created.
CLSID RegisteredClassId(const std::string& class_name);

/// The elements under a node of a file: "Key=text" each, "Key{…}" where there are elements inside,
/// with a blank between them; "(no file)" if it cannot be read.
std::string ElementsOf(const Text& file, const std::string& node_path);

}  // namespace sab::testing
