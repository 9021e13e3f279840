#include "automation/script_list.h"

#include <algorithm>
#include <memory>
#include <new>
#include <vector>

#include "base/com_ptr.h"
#include "base/counted.h"
#include "base/module_lock.h"
#include "base/text.h"

namespace sab {
namespace {

using Elements = std::vector<ComPtr<IDispatch>>;

/// Walks the elements that a list had when the walk began, whatever becomes of the list meanwhile.
class Enumerator final : public Counted<IEnumVARIANT>, private LiveObject {
 public:
  Enumerator(std::shared_ptr<const Elements> elements, std::size_t next)
      : elements_(std::move(elements)), next_(next) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    return AnswerFor(IID_IEnumVARIANT, riid, object);
  }

  HRESULT STDMETHODCALLTYPE Next(ULONG wanted, VARIANT* values, ULONG* fetched) override {
    if (fetched) *fetched = 0;
    if ((!values && wanted > 0) || (!fetched && wanted > 1)) return E_INVALIDARG;
    const auto count = static_cast<ULONG>(std::min<std::size_t>(wanted, Left()));
    for (ULONG i = 0; i < count; ++i) {
      VariantInit(&values[i]);
      values[i].vt = VT_DISPATCH;
      (*elements_)[next_++].CopyTo(&values[i].pdispVal);
    }
    if (fetched) *fetched = count;
    return count == wanted ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG wanted) override {
    const std::size_t count = std::min<std::size_t>(wanted, Left());
    next_ += count;
    return count == wanted ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    next_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** clone) override {
    if (!clone) return E_POINTER;
    *clone = new (std::nothrow) Enumerator(elements_, next_);
    return *clone ? S_OK : E_OUTOFMEMORY;
  }

 private:
  std::size_t Left() const { return elements_->size() - next_; }

  std::shared_ptr<const Elements> elements_;
  std::size_t next_;
};

HRESULT Enumerate(const ScriptList& list, VARIANT* result) noexcept try {
  auto elements = std::make_shared<Elements>();
  elements->reserve(list.ItemCount());
  for (std::size_t i = 0; i < list.ItemCount(); ++i) elements->emplace_back(list.ItemAt(i));
  result->punkVal = new Enumerator(std::move(elements), 0);
  result->vt = VT_UNKNOWN;
  return S_OK;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

}  // namespace

DISPID ScriptList::IdOf(LPCOLESTR name) noexcept {
  static constexpr struct {
    TextView name;
    DISPID id;
  } kMembers[] = {{OLESTR("count"), kCount},
                  {OLESTR("item"), DISPID_VALUE},
                  {OLESTR("_newenum"), DISPID_NEWENUM}};
  if (!name) return DISPID_UNKNOWN;
  for (const auto& member : kMembers) {
    if (EqualsIgnoringAsciiCase(member.name, TextView(name))) return member.id;
  }
  return DISPID_UNKNOWN;
}

HRESULT ScriptList::InvokeMember(DISPID member, REFIID riid, WORD flags,
                                 const DISPPARAMS* parameters, VARIANT* result,
                                 UINT* bad_argument) const noexcept {
  if (riid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!parameters) return E_INVALIDARG;
  if ((flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) == 0) return DISP_E_MEMBERNOTFOUND;
  if (parameters->cNamedArgs != 0) return DISP_E_NONAMEDARGS;
  if (parameters->cArgs != (member == DISPID_VALUE ? 1U : 0U)) return DISP_E_BADPARAMCOUNT;
  VARIANT unwanted;
  VariantInit(&unwanted);
  VARIANT* const out = result ? result : &unwanted;
  VariantInit(out);
  HRESULT outcome = S_OK;
  if (member == kCount) {
    out->vt = VT_I4;
    out->lVal = static_cast<LONG>(ItemCount());
  } else if (member == DISPID_VALUE) {
    outcome = GetItem(parameters->rgvarg[0], out, bad_argument);
  } else {
    outcome = Enumerate(*this, out);
  }
  VariantClear(&unwanted);
  return outcome;
}

HRESULT ScriptList::GetItem(const VARIANTARG& index, VARIANT* result,
                            UINT* bad_argument) const noexcept {
  VARIANT number;
  VariantInit(&number);
  const HRESULT converted = VariantChangeType(&number, const_cast<VARIANTARG*>(&index), 0, VT_I4);
  if (FAILED(converted)) {
    if (bad_argument) *bad_argument = 0;
    return converted;
  }
  if (number.lVal < 0 || static_cast<std::size_t>(number.lVal) >= ItemCount()) {
    return kSubscriptOutOfRange;
  }
  result->pdispVal = ItemAt(static_cast<std::size_t>(number.lVal));
  result->pdispVal->AddRef();
  result->vt = VT_DISPATCH;
  return S_OK;
}

}  // namespace sab
