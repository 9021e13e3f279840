// Late binding as clients of any language use it.

#include "common/dispatch.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "dispatch_tables.h"
#include "idl/stored_help.h"
#include "server/created_object.h"

namespace sab::testing {
namespace {

class Variant {
 public:
  Variant() { VariantInit(&value); }
  explicit Variant(LONG number) : Variant() {
    value.vt = VT_I4;
    value.lVal = number;
  }
  explicit Variant(double number) : Variant() {
    value.vt = VT_R8;
    value.dblVal = number;
  }
  explicit Variant(const OLECHAR* text) : Variant() {
    value.vt = VT_BSTR;
    value.bstrVal = SysAllocString(text);
  }
  explicit Variant(IDispatch* object) : Variant() {
    value.vt = VT_DISPATCH;
    value.pdispVal = object;
    if (object) object->AddRef();
  }
  static Variant Missing() {
    Variant missing;
    missing.value.vt = VT_ERROR;
    missing.value.scode = DISP_E_PARAMNOTFOUND;
    return missing;
  }
  Variant(Variant&& other) noexcept : value(other.value) { VariantInit(&other.value); }
  ~Variant() { VariantClear(&value); }

  VARIANT value;
};

struct Outcome {
  HRESULT result;
  Variant value;
  SCODE scode = S_OK;
  std::string source;
  std::string description;
  UINT bad_argument = 99;
};

// Arguments in their order; of a put the last one is named.
Outcome Invoke(IDispatch& object, DISPID id, WORD flags, std::vector<VARIANT> arguments = {}) {
  std::reverse(arguments.begin(), arguments.end());
  DISPID put = DISPID_PROPERTYPUT;
  const bool is_put = (flags & DISPATCH_PROPERTYPUT) != 0;
  DISPPARAMS parameters{arguments.data(), is_put ? &put : nullptr,
                        static_cast<UINT>(arguments.size()), is_put ? 1U : 0U};
  EXCEPINFO exception{};
  Outcome outcome;
  outcome.result = object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                 &outcome.value.value, &exception, &outcome.bad_argument);
  outcome.scode = exception.scode;
  Bstr source;
  Bstr description;
  source.Attach(exception.bstrSource);
  description.Attach(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  outcome.source = ToUtf8(source.View());
  outcome.description = ToUtf8(description.View());
  return outcome;
}

ComPtr<IDispatch> Administration() { return Created<IDispatch>(CLSID_VeAutoUpdateAdminCfgParser); }
ComPtr<IDispatch> Collection() { return Created<IDispatch>(CLSID_VePrsAccelColl); }
ComPtr<IDispatch> Accel() { return Created<IDispatch>(CLSID_VePrsAccel); }

TEST(Dispatch, NamesAreFoundWhateverTheirCaseAndTheirNeighbours) {
  const auto object = Collection();
  const auto ids = [&](std::vector<const OLECHAR*> names) {
    std::vector<DISPID> found(names.size(), 77);
    const HRESULT result =
        object->GetIDsOfNames(IID_NULL, const_cast<LPOLESTR*>(names.data()),
                              static_cast<UINT>(names.size()), LOCALE_USER_DEFAULT, found.data());
    found.push_back(result);
    return found;
  };
  using Ids = std::vector<DISPID>;
  EXPECT_EQ(Ids({24, S_OK}), ids({OLESTR("fIND")}));
  EXPECT_EQ(Ids({24, 0, 2, S_OK}), ids({OLESTR("Find"), OLESTR("I_PITEM"), OLESTR("o_pPos")}));
  EXPECT_EQ(Ids({24, DISPID_UNKNOWN, 1, DISP_E_UNKNOWNNAME}),
            ids({OLESTR("Find"), OLESTR("nobody"), OLESTR("i_posStart")}));
  EXPECT_EQ(Ids({DISPID_UNKNOWN, DISPID_UNKNOWN, DISP_E_UNKNOWNNAME}),
            ids({OLESTR("Nothing"), OLESTR("i_pItem")}));
  LPOLESTR name = const_cast<LPOLESTR>(OLESTR("Find"));
  DISPID id = 0;
  EXPECT_EQ(DISP_E_UNKNOWNINTERFACE, object->GetIDsOfNames(IID_IDispatch, &name, 1, 0, &id));
  // Members of the base interface, far above those of the derived one.
  LPOLESTR load = const_cast<LPOLESTR>(OLESTR("LOAD"));
  EXPECT_EQ(S_OK, Administration()->GetIDsOfNames(IID_NULL, &load, 1, 0, &id));
  EXPECT_EQ(0x7FFF0002, id);
}

TEST(Dispatch, ValuesAreCoercedToTheProperty) {
  const struct {
    const char* name;
    DISPID id;
    Variant given;
    HRESULT result;
    VARTYPE type;
    LONG number;
  } rows[] = {
      {"number", 3, Variant(LONG{42}), S_OK, VT_I4, 42},
      {"text", 3, Variant(OLESTR(" -7 ")), S_OK, VT_I4, -7},
      {"half to even", 3, Variant(2.5), S_OK, VT_I4, 2},
      {"no number", 3, Variant(OLESTR("soon")), DISP_E_TYPEMISMATCH, VT_I4, -1},
      {"too large", 3, Variant(1e10), DISP_E_OVERFLOW, VT_I4, -1},
      {"truth from a number", 1, Variant(LONG{5}), S_OK, VT_BOOL, VARIANT_TRUE},
      {"truth from a text", 1, Variant(OLESTR("True")), S_OK, VT_BOOL, VARIANT_TRUE},
      {"an object is no number", 3, Variant(Accel().Get()), DISP_E_TYPEMISMATCH, VT_I4, -1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const auto object = Administration();
    const Outcome put = Invoke(*object, row.id, DISPATCH_PROPERTYPUT, {row.given.value});
    EXPECT_EQ(row.result, put.result);
    EXPECT_EQ(FAILED(row.result) ? 0U : 99U, put.bad_argument);
    const Outcome got = Invoke(*object, row.id, DISPATCH_PROPERTYGET | DISPATCH_METHOD);
    EXPECT_EQ(S_OK, got.result);
    EXPECT_EQ(row.type, got.value.value.vt);
    EXPECT_EQ(row.number, row.type == VT_BOOL ? got.value.value.boolVal : got.value.value.lVal);
  }
}

TEST(Dispatch, CallsThatDoNotFitGetTheirCode) {
  const auto collection = Collection();
  const auto accel = Accel();
  const Variant item(accel.Get());
  const Variant one(LONG{1});
  const struct {
    const char* name;
    DISPID id;
    WORD flags;
    std::vector<VARIANT> arguments;
    HRESULT result;
    UINT bad_argument;
  } rows[] = {
      {"no such member", 99, DISPATCH_METHOD, {}, DISP_E_MEMBERNOTFOUND, 99},
      {"a method is no property", 1, DISPATCH_PROPERTYGET, {}, DISP_E_MEMBERNOTFOUND, 99},
      {"nor can it be put", 1, DISPATCH_PROPERTYPUT, {one.value}, DISP_E_MEMBERNOTFOUND, 99},
      {"too few", 19, DISPATCH_METHOD, {}, DISP_E_BADPARAMCOUNT, 99},
      {"too many", 1, DISPATCH_METHOD, {one.value}, DISP_E_BADPARAMCOUNT, 99},
      {"wrong object",
       9,
       DISPATCH_METHOD,
       {Variant(collection.Get()).value},
       DISP_E_TYPEMISMATCH,
       0},
      {"no object", 24, DISPATCH_METHOD, {one.value, one.value, one.value}, DISP_E_TYPEMISMATCH, 2},
      {"missing but needed",
       19,
       DISPATCH_METHOD,
       {Variant::Missing().value},
       DISP_E_PARAMNOTOPTIONAL,
       0},
      {"optional left out", 13, DISPATCH_METHOD, {item.value}, S_OK, 99},
      {"optional said to be missing",
       13,
       DISPATCH_METHOD,
       {item.value, Variant::Missing().value},
       S_OK,
       99},
  };
  for (const auto& row : rows) {
    const Outcome outcome = Invoke(*collection, row.id, row.flags, row.arguments);
    EXPECT_EQ(row.result, outcome.result) << row.name;
    EXPECT_EQ(row.bad_argument, outcome.bad_argument) << row.name;
  }
  DISPPARAMS none{};
  EXPECT_EQ(DISP_E_UNKNOWNINTERFACE, collection->Invoke(1, IID_IDispatch, 0, DISPATCH_METHOD, &none,
                                                        nullptr, nullptr, nullptr));
  VARIANT value = one.value;
  DISPPARAMS unnamed{&value, nullptr, 1, 0};
  EXPECT_EQ(DISP_E_PARAMNOTFOUND, accel->Invoke(1, IID_NULL, 0, DISPATCH_PROPERTYPUT, &unnamed,
                                                nullptr, nullptr, nullptr));
}

TEST(Dispatch, PositionsMoveOnInTheCallersVariable) {
  const auto collection = Collection();
  for (const OLECHAR* key : {OLESTR("a"), OLESTR("b")}) {
    const auto accel = Accel();
    const Variant text(key);
    EXPECT_EQ(S_OK, Invoke(*accel, 2, DISPATCH_PROPERTYPUT, {text.value}).result);
    EXPECT_EQ(S_OK, Invoke(*collection, 13, DISPATCH_METHOD, {Variant(accel.Get()).value}).result);
  }
  Outcome head = Invoke(*collection, 15, DISPATCH_METHOD);
  // As a script has it: a variable that holds anything.
  VARIANT variable = head.value.value;
  VARIANT reference{};
  reference.vt = VT_BYREF | VT_VARIANT;
  reference.pvarVal = &variable;
  std::string keys;
  for (int i = 0; i < 2; ++i) {
    const Outcome next = Invoke(*collection, 17, DISPATCH_METHOD, {reference});
    ASSERT_EQ(S_OK, next.result);
    const Outcome key = Invoke(*next.value.value.pdispVal, 2, DISPATCH_PROPERTYGET);
    keys += ToUtf8(Bstr::ViewOf(key.value.value.bstrVal));
  }
  EXPECT_EQ("ab", keys);
  EXPECT_EQ(VT_I4, variable.vt);
  EXPECT_EQ(0, variable.lVal);
  // As a compiled client has it: a variable of the very type.
  LONGLONG place = 0;
  VARIANT typed{};
  typed.vt = VT_BYREF | VT_I8;
  typed.pllVal = &place;
  const Variant added(Accel().Get());
  EXPECT_EQ(S_OK, Invoke(*collection, 13, DISPATCH_METHOD, {added.value, typed}).result);
  EXPECT_NE(0, place);
}

TEST(Dispatch, AFailingMemberTellsWhy) {
  const auto object = Administration();
  const Variant text(OLESTR("x.xml"));
  const Outcome save = Invoke(*object, 0x7FFF0001, DISPATCH_METHOD, {text.value, text.value});
  EXPECT_EQ(DISP_E_EXCEPTION, save.result);
  EXPECT_EQ(E_NOTIMPL, save.scode);
  EXPECT_EQ("SabXmlParser.VeAutoUpdateAdminCfgParser", save.source);
  EXPECT_EQ("The administration of the automatic update is read-only.", save.description);
  EXPECT_EQ("", TakeErrorDescription());  // it was handed over, not left behind
}

TEST(Dispatch, TypeInformationSaysWhatTheTablesSay) {
  const auto object = Administration();
  UINT count = 0;
  EXPECT_EQ(S_OK, object->GetTypeInfoCount(&count));
  EXPECT_EQ(1U, count);
  ComPtr<ITypeInfo> info;
  EXPECT_EQ(DISP_E_BADINDEX, object->GetTypeInfo(1, 0, info.Put()));
  ASSERT_EQ(S_OK, object->GetTypeInfo(0, 0, info.Put()));
  ComPtr<ITypeLib> library;
  ASSERT_EQ(S_OK, info->GetContainingTypeLib(library.Put(), nullptr));
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(S_OK, library->GetLibAttr(&attributes));
  EXPECT_EQ(LIBID_SabXmlParserLib, attributes->guid);
  EXPECT_EQ(0x0804U, attributes->lcid);
  library->ReleaseTLibAttr(attributes);

  for (const InterfaceInfo* interface_ : TheLibrary().interfaces) {
    SCOPED_TRACE(ToUtf8(interface_->name));
    ComPtr<ITypeInfo> type;
    ASSERT_EQ(S_OK, library->GetTypeInfoOfGuid(*interface_->iid, type.Put()));
    // The interface's own members are the last of those that type information lists.
    TYPEATTR* type_attributes = nullptr;
    ASSERT_EQ(S_OK, type->GetTypeAttr(&type_attributes));
    const UINT functions = type_attributes->cFuncs;
    EXPECT_NE(0, type_attributes->wTypeFlags & TYPEFLAG_FDUAL);
    type->ReleaseTypeAttr(type_attributes);
    ASSERT_GE(functions, interface_->members.size());
    UINT index = functions - static_cast<UINT>(interface_->members.size());
    for (const MemberInfo& member : interface_->members) {
      FUNCDESC* function = nullptr;
      ASSERT_EQ(S_OK, type->GetFuncDesc(index++, &function));
      EXPECT_EQ(member.id, function->memid);
      EXPECT_EQ(member.kind == MemberKind::kMethod        ? INVOKE_FUNC
                : member.kind == MemberKind::kPropertyGet ? INVOKE_PROPERTYGET
                                                          : INVOKE_PROPERTYPUT,
                function->invkind);
      Bstr names[9];
      BSTR raw[9] = {};
      UINT named = 0;
      ASSERT_EQ(S_OK, type->GetNames(member.id, raw, 9, &named));
      for (UINT i = 0; i < named; ++i) names[i].Attach(raw[i]);
      EXPECT_EQ(ToUtf8(member.name), ToUtf8(names[0].View()));
      std::size_t given = member.parameters.size();
      if (given > 0 && member.parameters.back().IsRetval()) --given;
      EXPECT_EQ(given, static_cast<std::size_t>(function->cParams));
      for (std::size_t i = 0; member.kind == MemberKind::kMethod && i < given; ++i) {
        EXPECT_EQ(ToUtf8(member.parameters[i].name), ToUtf8(names[i + 1].View()));
        const USHORT flags = function->lprgelemdescParam[i].paramdesc.wParamFlags;
        EXPECT_EQ(member.parameters[i].IsIn(), (flags & PARAMFLAG_FIN) != 0);
        EXPECT_EQ(member.parameters[i].IsOut(), (flags & PARAMFLAG_FOUT) != 0);
      }
      type->ReleaseFuncDesc(function);
      Bstr help;
      ASSERT_EQ(S_OK, type->GetDocumentation(member.id, nullptr, help.Put(), nullptr, nullptr));
      EXPECT_EQ(FromUtf8(member.help), HelpAsStored(help.View()));
    }
  }
  for (const CoclassInfo& coclass : TheLibrary().coclasses) {
    ComPtr<ITypeInfo> type;
    EXPECT_EQ(S_OK, library->GetTypeInfoOfGuid(*coclass.clsid, type.Put()));
  }
}

}  // namespace
}  // namespace sab::testing
