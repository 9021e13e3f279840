#include "automation/function_description.h"

#include <memory>
#include <vector>

#include "automation/described_type.h"

namespace sab {
namespace {

// Structures of the system that only its own interfaces pass, numbered as no value is.
constexpr VARTYPE kDispParams = VT_RECORD;
constexpr VARTYPE kExcepInfo = VT_RECORD + 1;

constexpr ValueType Plain(VARTYPE type) { return {type, false, nullptr, nullptr}; }

constexpr ParameterInfo kCount[] = {{OLESTR("return"), Plain(VT_UI4), 1, kOut | kRetval}};
constexpr ParameterInfo kQueryInterface[] = {
    {OLESTR("riid"), Plain(VT_USERDEFINED), 1, kIn},
    {OLESTR("ppvObj"), Plain(VT_VOID), 2, kOut},
};
constexpr ParameterInfo kGetTypeInfoCount[] = {{OLESTR("pctinfo"), Plain(VT_UINT), 1, kOut}};
constexpr ParameterInfo kGetTypeInfo[] = {
    {OLESTR("itinfo"), Plain(VT_UINT), 0, kIn},
    {OLESTR("lcid"), Plain(VT_UI4), 0, kIn},
    {OLESTR("pptinfo"), Plain(VT_VOID), 2, kOut},
};
constexpr ParameterInfo kGetIDsOfNames[] = {
    {OLESTR("riid"), Plain(VT_USERDEFINED), 1, kIn}, {OLESTR("rgszNames"), Plain(VT_I1), 2, kIn},
    {OLESTR("cNames"), Plain(VT_UINT), 0, kIn},      {OLESTR("lcid"), Plain(VT_UI4), 0, kIn},
    {OLESTR("rgdispid"), Plain(VT_I4), 1, kOut},
};
constexpr ParameterInfo kInvoke[] = {
    {OLESTR("dispidMember"), Plain(VT_I4), 0, kIn},
    {OLESTR("riid"), Plain(VT_USERDEFINED), 1, kIn},
    {OLESTR("lcid"), Plain(VT_UI4), 0, kIn},
    {OLESTR("wFlags"), Plain(VT_UI2), 0, kIn},
    {OLESTR("pdispparams"), Plain(kDispParams), 1, kIn},
    {OLESTR("pvarResult"), Plain(VT_VARIANT), 1, kOut},
    {OLESTR("pexcepinfo"), Plain(kExcepInfo), 1, kOut},
    {OLESTR("puArgErr"), Plain(VT_UINT), 1, kOut},
};
constexpr DISPID kUnknownBase = 0x60000000;
constexpr DISPID kDispatchBase = 0x60010000;
constexpr MemberInfo kInherited[] = {
    {OLESTR("QueryInterface"), kUnknownBase, MemberKind::kMethod, kQueryInterface, ""},
    {OLESTR("AddRef"), kUnknownBase + 1, MemberKind::kMethod, kCount, ""},
    {OLESTR("Release"), kUnknownBase + 2, MemberKind::kMethod, kCount, ""},
    {OLESTR("GetTypeInfoCount"), kDispatchBase, MemberKind::kMethod, kGetTypeInfoCount, ""},
    {OLESTR("GetTypeInfo"), kDispatchBase + 1, MemberKind::kMethod, kGetTypeInfo, ""},
    {OLESTR("GetIDsOfNames"), kDispatchBase + 2, MemberKind::kMethod, kGetIDsOfNames, ""},
    {OLESTR("Invoke"), kDispatchBase + 3, MemberKind::kMethod, kInvoke, ""},
};

// A parameter's type as type information nests it: a pointer to …, an array of …
struct ElementTypes {
  ELEMDESC element{};
  std::vector<std::unique_ptr<TYPEDESC>> inner;

  explicit ElementTypes(const ParameterInfo& parameter) {
    TYPEDESC type = BaseOf(parameter.type);
    if (parameter.type.is_array) Wrap(type, VT_SAFEARRAY);
    // An interface is passed by its address in any case.
    const int pointers = parameter.pointers + (parameter.type.interface_ ? 1 : 0);
    for (int i = 0; i < pointers; ++i) Wrap(type, VT_PTR);
    element.tdesc = type;
    element.paramdesc.wParamFlags = static_cast<USHORT>(
        (parameter.IsIn() ? PARAMFLAG_FIN : 0) | (parameter.IsOut() ? PARAMFLAG_FOUT : 0) |
        (parameter.IsRetval() ? PARAMFLAG_FRETVAL : 0) |
        (parameter.IsOptional() ? PARAMFLAG_FOPT : 0));
  }

 private:
  static TYPEDESC ReferenceTo(UINT index) {
    TYPEDESC type{};
    type.vt = VT_USERDEFINED;
    type.hreftype = index;
    return type;
  }
  static TYPEDESC BaseOf(const ValueType& type) {
    if (type.interface_) return ReferenceTo(DescribedType::IndexOf(type.interface_));
    if (type.enumeration) return ReferenceTo(DescribedType::IndexOf(type.enumeration));
    switch (type.type) {
      case VT_USERDEFINED:
        return ReferenceTo(DescribedType::IndexOfGuid());
      case kDispParams:
        return ReferenceTo(DescribedType::IndexOfDispParams());
      case kExcepInfo:
        return ReferenceTo(DescribedType::IndexOfExcepInfo());
      default: {
        TYPEDESC plain{};
        plain.vt = type.type;
        return plain;
      }
    }
  }
  void Wrap(TYPEDESC& type, VARTYPE outer) {
    inner.push_back(std::make_unique<TYPEDESC>(type));
    type = {};
    type.vt = outer;
    type.lptdesc = inner.back().get();
  }
};

// A function's description with all that it points to.
struct OwnedFunction {
  FUNCDESC description{};  // first, so that its address is the owner's
  std::vector<ELEMDESC> elements;
  std::vector<ElementTypes> types;
};
static_assert(offsetof(OwnedFunction, description) == 0);

}  // namespace

INVOKEKIND InvokeKindOf(const MemberInfo& member) {
  switch (member.kind) {
    case MemberKind::kPropertyGet:
      return INVOKE_PROPERTYGET;
    case MemberKind::kPropertyPut:
      return INVOKE_PROPERTYPUT;
    default:
      return INVOKE_FUNC;
  }
}

const InterfaceInfo* BaseOf(const InterfaceInfo& interface_) {
  static constexpr InterfaceInfo kDispatch = {OLESTR("IDispatch"), &IID_IDispatch, nullptr, "",
                                              kInherited,          nullptr};
  if (&interface_ == &kDispatch) return nullptr;
  return interface_.base ? interface_.base : &kDispatch;
}

FUNCDESC* NewFunctionDescription(const MemberInfo& member, std::size_t slot) {
  auto owned = std::make_unique<OwnedFunction>();
  for (const ParameterInfo& parameter : member.parameters) {
    owned->types.emplace_back(parameter);
    owned->elements.push_back(owned->types.back().element);
  }
  FUNCDESC& out = owned->description;
  out.memid = member.id;
  out.lprgelemdescParam = owned->elements.data();
  out.funckind = FUNC_DISPATCH;
  out.invkind = InvokeKindOf(member);
  out.callconv = CC_STDCALL;
  out.cParams = static_cast<SHORT>(member.parameters.size());
  out.oVft = static_cast<SHORT>(slot * sizeof(void*));
  if (slot < std::size(kInherited)) out.wFuncFlags = FUNCFLAG_FRESTRICTED;
  out.elemdescFunc.tdesc.vt = VT_VOID;
  // As a dispatch interface has it: the return value in the place of its parameter.
  if (!member.parameters.empty() && member.parameters.back().IsRetval()) {
    --out.cParams;
    const TYPEDESC& last = owned->elements.back().tdesc;
    out.elemdescFunc.tdesc = last.vt == VT_PTR ? *last.lptdesc : last;
  }
  for (SHORT i = out.cParams;
       i-- > 0 && member.parameters[static_cast<std::size_t>(i)].IsOptional();) {
    ++out.cParamsOpt;
  }
  return &owned.release()->description;
}

void DeleteFunctionDescription(FUNCDESC* description) noexcept {
  delete reinterpret_cast<OwnedFunction*>(description);
}

}  // namespace sab
