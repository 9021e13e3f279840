#include "object/class_facts.h"

#include "base/own_object.h"
#include "object/members.h"
#include "object/provide_class_info.h"
#include "object/support_error_info.h"

namespace sab {

HRESULT CreateWith(const ObjectMaker& maker, const ErrorOrigin& origin, IUnknown* outer,
                   REFIID riid, void** object) noexcept {
  if (!object) return ReportCode(origin, E_POINTER);
  *object = nullptr;
  if (outer && riid != IID_IUnknown) {
    return ReportError(origin, CLASS_E_NOAGGREGATION,
                       "An outer object has to ask for IUnknown when it creates its part.");
  }
  return Guard(origin, [&]() -> HRESULT {
    if (outer) {
      *object = maker.make_part(outer);
      return S_OK;
    }
    IUnknown* const created = maker.make();
    const HRESULT result = created->QueryInterface(riid, object);
    created->Release();
    return result;
  });
}

HRESULT QueryCommonInterface(const ClassFacts& facts, IDispatch* self, REFIID riid,
                             void** object) noexcept {
  // What is asked for most comes first.
  bool is_own = false;
  for (const InterfaceInfo* info = &facts.interface_info(); info && !is_own; info = info->base) {
    is_own = riid == *info->iid;
  }
  if (is_own || riid == IID_IUnknown || riid == IID_IDispatch || riid == kOwnObjectId) {
    *object = self;
    self->AddRef();
    return S_OK;
  }
  if (riid == IID_ISupportErrorInfo) {
    return SupportErrorInfo::Create(self, facts.interface_info(), object);
  }
  if (riid == IID_IProvideClassInfo) return ProvideClassInfo::Create(self, *facts.clsid, object);
  return E_NOINTERFACE;
}

HRESULT CountTypeInfos(const ClassFacts& facts, UINT* count) noexcept {
  if (!count) return ReportCode(facts.origin, E_POINTER);
  *count = 1;
  return S_OK;
}

HRESULT HandOutTypeInfo(const ClassFacts& facts, UINT index, ITypeInfo** info) noexcept {
  if (!info) return ReportCode(facts.origin, E_POINTER);
  *info = nullptr;
  return Reported(facts.origin, [&] {
    return index == 0 ? GetTypeInfo(facts.interface_info(), info) : DISP_E_BADINDEX;
  });
}

}  // namespace sab
