#pragma once

#include <sabxml/com.h>

#include <string_view>
#include <utility>

namespace sab {

/// A number that is an address, and who passed it.
struct Address {
  ULONG_PTR value;
  bool is_from_script;          ///< which can know no other addresses than this server's
  std::string_view class_name;  ///< of the object that was called, ASCII
};

/// For a class with a member that takes an address as a number. A program that calls it through the
/// interface passes what it owns; a script owns no address, so that the member refuses what it does
/// not know itself when it is called through Invoke.
template <class Base>
class TakesAddresses : public Base {
 public:
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID riid, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* bad_argument) override {
    const bool outer = std::exchange(is_late_bound_, true);
    const HRESULT outcome =
        Base::Invoke(member, riid, locale, flags, parameters, result, exception, bad_argument);
    is_late_bound_ = outer;
    return outcome;
  }

 protected:
  /// An argument of the member that is running now.
  Address Given(ULONG_PTR value) const { return {value, is_late_bound_, Base::Coclass::kName}; }

 private:
  bool is_late_bound_ = false;
};

}  // namespace sab
