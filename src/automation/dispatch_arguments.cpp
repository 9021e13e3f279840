#include "automation/dispatch_arguments.h"

#include <sabxml/variant_size.h>

#include <cstring>

#include "automation/result_place.h"

namespace sab {
namespace {

// Some headers of the platform take the source as if they changed it.
HRESULT Convert(VARIANT& converted, const VARIANTARG& value, VARTYPE type) {
  return VariantChangeType(&converted, const_cast<VARIANTARG*>(&value), 0, type);
}

bool IsMissing(const VARIANTARG& argument) {
  return argument.vt == VT_ERROR && argument.scode == DISP_E_PARAMNOTFOUND;
}

HRESULT Refuse(HRESULT code, UINT* bad_argument, int argument) {
  if (bad_argument && argument >= 0) *bad_argument = static_cast<UINT>(argument);
  return code;
}

// The type of the variant in which a parameter's value leaves a call.
VARTYPE DeliveredType(const ValueType& type) {
  if (type.is_array) return static_cast<VARTYPE>(VT_ARRAY | type.type);
  return type.type == VT_USERDEFINED ? static_cast<VARTYPE>(VT_BSTR) : type.type;
}

}  // namespace

DispatchArguments::~DispatchArguments() {
  for (std::size_t i = 0; i < member_.parameters.size(); ++i) {
    if (!is_owned_[i]) continue;
    VARIANT left_over;
    TakeResult(member_.parameters[i], i, left_over);
    VariantClear(&left_over);
  }
}

HRESULT DispatchArguments::Prepare(UINT* bad_argument) noexcept {
  const HRESULT assigned = Assign(bad_argument);
  if (FAILED(assigned)) return assigned;
  for (std::size_t i = 0; i < member_.parameters.size(); ++i) {
    const ParameterInfo& parameter = member_.parameters[i];
    const int index = argument_of_[i];
    VARIANTARG* const argument = index >= 0 ? &given_.rgvarg[index] : nullptr;
    if (!argument || IsMissing(*argument)) {
      if (argument && !parameter.IsOptional()) {
        return Refuse(DISP_E_PARAMNOTOPTIONAL, bad_argument, index);
      }
      slots_[i].is_missing = true;
    } else {
      HRESULT result = parameter.IsIn() ? Read(parameter, *argument, i) : S_OK;
      if (SUCCEEDED(result) && parameter.IsOut()) {
        result = CheckPlace(*argument, DeliveredType(parameter.type));
      }
      if (FAILED(result)) return Refuse(result, bad_argument, index);
    }
    // Whatever a method hands out is freed unless it reaches the caller.
    if (parameter.IsOut()) is_owned_[i] = true;
  }
  return S_OK;
}

// Positions count from the end of the caller's list, names are at its start.
HRESULT DispatchArguments::Assign(UINT* bad_argument) {
  argument_of_.fill(kNoArgument);
  const std::size_t settable =
      member_.parameters.size() -
      (!member_.parameters.empty() && member_.parameters.back().IsRetval() ? 1 : 0);
  if (given_.cArgs > settable) return DISP_E_BADPARAMCOUNT;
  if (given_.cNamedArgs > given_.cArgs) return E_INVALIDARG;
  for (UINT named = 0; named < given_.cNamedArgs; ++named) {
    DISPID id = given_.rgdispidNamedArgs[named];
    if (id == DISPID_PROPERTYPUT && member_.kind == MemberKind::kPropertyPut) {
      id = static_cast<DISPID>(settable) - 1;
    }
    if (id < 0 || static_cast<std::size_t>(id) >= settable) {
      return Refuse(DISP_E_PARAMNOTFOUND, bad_argument, static_cast<int>(named));
    }
    argument_of_[static_cast<std::size_t>(id)] = static_cast<int>(named);
  }
  for (UINT position = 0; position < given_.cArgs - given_.cNamedArgs; ++position) {
    if (argument_of_[position] != kNoArgument) return DISP_E_BADPARAMCOUNT;  // given twice
    argument_of_[position] = static_cast<int>(given_.cArgs - 1 - position);
  }
  for (std::size_t i = 0; i < settable; ++i) {
    if (argument_of_[i] == kNoArgument && !member_.parameters[i].IsOptional()) {
      return DISP_E_BADPARAMCOUNT;
    }
  }
  return S_OK;
}

HRESULT DispatchArguments::Read(const ParameterInfo& parameter, VARIANTARG& argument,
                                std::size_t index) {
  const VARIANTARG* const variable = Dereferenced(argument);
  if (!variable) return DISP_E_TYPEMISMATCH;
  const VARIANTARG& value = *variable;
  // An [in, out] place that still holds nothing starts as zero.
  if (parameter.IsOut() && (value.vt == VT_EMPTY || parameter.type.is_array)) return S_OK;
  if (parameter.type.is_array) {
    const int wanted = VT_ARRAY | parameter.type.type;
    if (value.vt == wanted) {
      slots_[index].array = value.parray;
    } else if (value.vt == (wanted | VT_BYREF)) {
      slots_[index].array = *value.pparray;
    } else {
      return DISP_E_TYPEMISMATCH;
    }
    return S_OK;
  }
  if (parameter.type.interface_) return ReadObject(*parameter.type.interface_, value, index);
  if (parameter.type.type != VT_USERDEFINED) {
    return ReadNumberOrText(parameter.type.type, value, index);
  }
  // An identifier travels as its text.
  VARIANT text{};
  const HRESULT result = Convert(text, value, VT_BSTR);
  if (FAILED(result)) return result;
  const bool parsed = text.bstrVal && SUCCEEDED(IIDFromString(text.bstrVal, &slots_[index].guid));
  VariantClear(&text);
  return parsed ? S_OK : DISP_E_TYPEMISMATCH;
}

HRESULT DispatchArguments::ReadNumberOrText(VARTYPE type, const VARIANTARG& value,
                                            std::size_t index) {
  Slot& slot = slots_[index];
  if (type == VT_BSTR && value.vt == VT_BSTR && !member_.parameters[index].IsOut()) {
    slot.text = value.bstrVal;  // the caller's own; the method copies what it keeps
    return S_OK;
  }
  VARIANT converted{};
  const HRESULT result = Convert(converted, value, type);
  if (FAILED(result)) return result;
  std::memcpy(slot.Place(), sabxml::PlaceOfValue(converted, type), sabxml::SizeOfValue(type));
  is_owned_[index] = type == VT_BSTR;
  return S_OK;
}

HRESULT DispatchArguments::ReadObject(const InterfaceInfo& wanted, const VARIANTARG& value,
                                      std::size_t index) {
  const auto type = static_cast<VARTYPE>(value.vt & ~VT_BYREF);
  if (type != VT_DISPATCH && type != VT_UNKNOWN) return DISP_E_TYPEMISMATCH;
  IUnknown* const object = (value.vt & VT_BYREF) != 0 ? *value.ppunkVal : value.punkVal;
  if (!object) return S_OK;
  if (FAILED(object->QueryInterface(*wanted.iid, &slots_[index].object))) {
    return DISP_E_TYPEMISMATCH;
  }
  is_owned_[index] = true;
  return S_OK;
}

HRESULT DispatchArguments::TakeResult(const ParameterInfo& parameter, std::size_t index,
                                      VARIANT& value) {
  is_owned_[index] = false;
  Slot& slot = slots_[index];
  value = {};
  const ValueType& type = parameter.type;
  if (type.is_array) {
    value.vt = static_cast<VARTYPE>(VT_ARRAY | type.type);
    value.parray = slot.array;
    if (!slot.array) value.vt = VT_EMPTY;
  } else if (type.interface_) {
    value.vt = VT_DISPATCH;  // every interface of the tables derives from it
    value.pdispVal = static_cast<IDispatch*>(slot.object);
  } else if (type.type == VT_USERDEFINED) {
    OLECHAR text[40];
    StringFromGUID2(slot.guid, text, 40);
    value.bstrVal = SysAllocString(text);
    value.vt = VT_BSTR;
    if (!value.bstrVal) return E_OUTOFMEMORY;
  } else {
    std::memcpy(sabxml::PlaceOfValue(value, type.type), slot.Place(),
                sabxml::SizeOfValue(type.type));
    value.vt = type.type;
  }
  return S_OK;
}

HRESULT DispatchArguments::Deliver(VARIANT* result, UINT* bad_argument) noexcept {
  for (std::size_t i = 0; i < member_.parameters.size(); ++i) {
    const ParameterInfo& parameter = member_.parameters[i];
    if (!parameter.IsOut()) continue;
    if (parameter.IsRetval()) {
      if (!result) continue;
      VariantInit(result);
      const HRESULT taken = TakeResult(parameter, i, *result);
      if (FAILED(taken)) return taken;
      MakeScriptable(*result);
    } else if (argument_of_[i] != kNoArgument && !slots_[i].is_missing) {
      VARIANTARG& argument = given_.rgvarg[argument_of_[i]];
      if ((argument.vt & VT_BYREF) == 0) continue;  // by value: the caller does not want it
      VARIANT value;
      HRESULT stored = TakeResult(parameter, i, value);
      if (SUCCEEDED(stored)) stored = StoreThrough(argument, value);
      VariantClear(&value);
      if (FAILED(stored)) return Refuse(stored, bad_argument, argument_of_[i]);
    }
  }
  return S_OK;
}

}  // namespace sab
