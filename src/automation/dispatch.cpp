#include "automation/dispatch.h"

#include <algorithm>

#include "automation/dispatch_arguments.h"
#include "base/com_ptr.h"
#include "base/text.h"

namespace sab {
namespace {

const MemberInfo* FindByName(const InterfaceInfo& info, TextView name) {
  for (const InterfaceInfo* level = &info; level; level = level->base) {
    for (const MemberInfo& member : level->members) {
      if (EqualsIgnoringAsciiCase(TextView(member.name), name)) return &member;
    }
  }
  return nullptr;
}

DISPID ParameterId(const MemberInfo& member, TextView name) {
  for (std::size_t i = 0; i < member.parameters.size(); ++i) {
    if (EqualsIgnoringAsciiCase(TextView(member.parameters[i].name), name))
      return static_cast<DISPID>(i);
  }
  return DISPID_UNKNOWN;
}

bool Wants(WORD flags, MemberKind kind) {
  switch (kind) {
    case MemberKind::kMethod:
      return (flags & DISPATCH_METHOD) != 0;
    case MemberKind::kPropertyGet:
      return (flags & DISPATCH_PROPERTYGET) != 0;
    case MemberKind::kPropertyPut:
      return (flags & DISPATCH_PROPERTYPUT) != 0;
  }
  return false;
}

struct FoundMember {
  const InterfaceInfo* owner = nullptr;
  std::size_t index = 0;

  const MemberInfo& Info() const { return owner->members[index]; }
};

FoundMember FindById(const InterfaceInfo& info, DISPID id, WORD flags) {
  for (const InterfaceInfo* level = &info; level; level = level->base) {
    for (std::size_t i = 0; i < level->members.size(); ++i) {
      const MemberInfo& member = level->members[i];
      if (member.id == id && Wants(flags, member.kind)) return {level, i};
    }
  }
  return {};
}

}  // namespace

HRESULT RaiseFromInvoke(HRESULT code, EXCEPINFO* exception) noexcept {
  if (exception) {
    *exception = {};
    exception->scode = code;
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.Put()) == S_OK) {
      info->GetSource(&exception->bstrSource);
      info->GetDescription(&exception->bstrDescription);
      info->GetHelpFile(&exception->bstrHelpFile);
      info->GetHelpContext(&exception->dwHelpContext);
    }
  }
  return DISP_E_EXCEPTION;
}

HRESULT GetIDsOfNames(const InterfaceInfo& info, REFIID riid, LPOLESTR* names, UINT count, LCID,
                      DISPID* ids) noexcept {
  SetErrorInfo(0, nullptr);
  if (riid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!names || !ids || count == 0) return E_INVALIDARG;
  const MemberInfo* const member = names[0] ? FindByName(info, names[0]) : nullptr;
  ids[0] = member ? member->id : DISPID_UNKNOWN;
  for (UINT i = 1; i < count; ++i) {
    ids[i] = member && names[i] ? ParameterId(*member, names[i]) : DISPID_UNKNOWN;
  }
  const bool all_known = std::find(ids, ids + count, DISPID_UNKNOWN) == ids + count;
  return all_known ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT Invoke(const InterfaceInfo& info, void* self, DISPID id, REFIID riid, LCID, WORD flags,
               DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
               UINT* bad_argument) noexcept {
  SetErrorInfo(0, nullptr);
  if (riid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!parameters) return E_INVALIDARG;
  const FoundMember found = FindById(info, id, flags);
  if (!found.owner) return DISP_E_MEMBERNOTFOUND;
  const MemberInfo& member = found.Info();
  if (member.kind == MemberKind::kPropertyPut &&
      (parameters->cNamedArgs == 0 || parameters->rgdispidNamedArgs[0] != DISPID_PROPERTYPUT)) {
    return DISP_E_PARAMNOTFOUND;
  }
  if (member.parameters.size() > DispatchArguments::kMaxParameters) return E_UNEXPECTED;

  DispatchArguments arguments(member, *parameters);
  HRESULT outcome = arguments.Prepare(bad_argument);
  if (FAILED(outcome)) return outcome;
  outcome = found.owner->call(self, found.index, arguments.Slots());
  if (FAILED(outcome)) return RaiseFromInvoke(outcome, exception);
  return arguments.Deliver(result, bad_argument);
}

}  // namespace sab
