#pragma once

#include <SabXmlParser.h>

#include <string>
#include <vector>

#include "base/com_ptr.h"
#include "support/late_value.h"

namespace sab::testing {

/// The parts of a text between separators.
std::vector<std::string> Split(const std::string& text, char separator);

/// The class identifier by which a class of the type library is created.
CLSID RegisteredClassId(const std::string& class_name);

/// An object as a program knows it that binds late: everything by its name and as a text. All texts
/// are UTF-8.
class LateObject {
 public:
  /// A new object of a class of the type library; fails the test if there is none.
  explicit LateObject(const std::string& class_name);
  explicit LateObject(ComPtr<IDispatch> object) : object_(std::move(object)) {}

  /// Sets a property, or calls a method, with texts that are converted to what it wants.
  HRESULT Put(const std::string& property, const std::string& value) const;
  /// @param failure what the object says if it fails, else nothing
  HRESULT Call(const std::string& method, const std::vector<std::string>& arguments = {},
               std::string* failure = nullptr) const;
  /// All that a call gives back; the code of the object's own failure where it is one.
  LateResult Invoke(const std::string& member, WORD flags,
                    const std::vector<std::string>& arguments = {}) const;
  /// A property, or what a method returns: truth values as the number they are, doubles with six
  /// decimals, and scripts get a double where a number does not fit into 32 bits with a sign;
  /// "(null)" for a null string, "(0x…)" for a failure, lists and objects as Told says.
  std::string Get(const std::string& member, const std::vector<std::string>& arguments = {}) const;
  /// Every property, and every method without arguments whose name begins with Get, as
  /// "Member=value", without those that are unset: "", 0, no element. Objects stand in braces, the
  /// elements of lists in brackets, a blank between them.
  std::string Told() const;
  /// The elements of the list that this is.
  std::vector<LateObject> Elements() const;
  /// From property to property; "[0]" is the first element of a list.
  LateObject Follow(const std::string& path) const;

  template <class Interface>
  ComPtr<Interface> As() const {
    return object_.As<Interface>();
  }

 private:
  ComPtr<IDispatch> object_;
};

}  // namespace sab::testing
