#pragma once

#include <sabxml/com.h>

#include <cstddef>

namespace sab {

/// What scripts expect of every list beside its own members: Count, Item(index), which is the
/// default member, and _NewEnum, by which For Each walks. These are for late-bound callers only: no
/// table of operations and no type library has them.
class ScriptList {
 public:
  static constexpr DISPID kCount = 10001;  ///< far from the identifiers of the lists' own members
  /// How languages of scripts know an index outside of a list: error 9 of Visual Basic.
  static constexpr HRESULT kSubscriptOutOfRange = static_cast<HRESULT>(0x800A0009);

  virtual std::size_t ItemCount() const = 0;
  /// Not counted. @param index below ItemCount()
  virtual IDispatch* ItemAt(std::size_t index) const = 0;

  /// The identifier of one of these members in any letter case; DISPID_UNKNOWN for another name.
  static DISPID IdOf(LPCOLESTR name) noexcept;
  static bool Has(DISPID member) noexcept {
    return member == kCount || member == DISPID_VALUE || member == DISPID_NEWENUM;
  }

  /// IDispatch::Invoke for one of these members. An index counts from zero; one that is out of
  /// range is kSubscriptOutOfRange, which the list puts into words. An enumerator walks the
  /// elements that the list has at this moment.
  HRESULT InvokeMember(DISPID member, REFIID riid, WORD flags, const DISPPARAMS* parameters,
                       VARIANT* result, UINT* bad_argument) const noexcept;

 protected:
  ~ScriptList() = default;

 private:
  HRESULT GetItem(const VARIANTARG& index, VARIANT* result, UINT* bad_argument) const noexcept;
};

}  // namespace sab
