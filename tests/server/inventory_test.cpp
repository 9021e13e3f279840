// Every class of the server: what it says of itself and of its failures, its place in the registry.

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <vector>

#include "automation/dispatch_arguments.h"
#include "generated/dispatch_tables.h"
#include "object/error_edge.h"
#include "server/class_entry.h"
#include "server/created_object.h"
#include "server/nullable_calls.h"
#include "server/registry_text.h"
#include "support/late_object.h"
#include "support/server_library.h"

namespace sab::testing {
namespace {

const CoclassInfo* CoclassOf(const ClassEntry& entry) {
  for (const CoclassInfo& coclass : TheLibrary().coclasses) {
    if (EqualsAscii(coclass.name, entry.name)) return &coclass;
  }
  return nullptr;
}

ComPtr<IDispatch> New(const ClassEntry& entry) {
  ComPtr<IClassFactory> factory;
  ComPtr<IDispatch> object;
  EXPECT_EQ(S_OK, Server().GetClassObject(*entry.clsid, IID_IClassFactory, factory.PutVoid()));
  EXPECT_EQ(S_OK, factory->CreateInstance(nullptr, IID_IDispatch, object.PutVoid()));
  return object;
}

TEST(Inventory, EveryClassOfTheTypeLibraryIsInTheTableOnce) {
  std::set<std::string_view> names;
  for (const ClassEntry& entry : ClassTable()) {
    EXPECT_TRUE(CoclassOf(entry)) << entry.name;
    EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
  }
  EXPECT_EQ(TheLibrary().coclasses.size(), names.size());
  EXPECT_EQ(86U, TheLibrary().interfaces.size());
  const auto registered = [](Registration how) {
    return std::count_if(ClassTable().begin(), ClassTable().end(),
                         [how](const ClassEntry& entry) { return entry.registration == how; });
  };
  EXPECT_EQ(59, registered(Registration::kWithProgIds));
  EXPECT_EQ(22, registered(Registration::kClassIdOnly));
  EXPECT_EQ(3, registered(Registration::kNone));
}

std::string InBraces(REFGUID guid) {
  OLECHAR text[39];
  StringFromGUID2(guid, text, 39);
  return ToUtf8(text);
}

GUID GuidOf(ITypeInfo& info, TYPEKIND kind) {
  TYPEATTR* attributes = nullptr;
  EXPECT_EQ(S_OK, info.GetTypeAttr(&attributes));
  const GUID guid = attributes->guid;
  EXPECT_EQ(kind, attributes->typekind);
  info.ReleaseTypeAttr(attributes);
  return guid;
}

// What tools ask that show an object without knowing it.
TEST(Inventory, EveryObjectLeadsToItsInterfaceAndItsClass) {
  for (const ClassEntry& entry : ClassTable()) {
    SCOPED_TRACE(entry.name);
    const CoclassInfo& coclass = *CoclassOf(entry);
    const IID& iid = *coclass.default_interface->iid;
    const auto object = New(entry);
    EXPECT_TRUE(SUCCEEDED(object->QueryInterface(iid, ComPtr<IUnknown>().PutVoid())));
    ComPtr<IProvideClassInfo> provider;
    ASSERT_EQ(S_OK, object->QueryInterface(IID_IProvideClassInfo, provider.PutVoid()));
    EXPECT_EQ(object.Get(), provider.As<IDispatch>().Get());
    EXPECT_EQ(E_POINTER, provider->GetClassInfo(nullptr));

    ComPtr<ITypeInfo> of_object;
    ComPtr<ITypeInfo> of_class;
    ComPtr<ITypeInfo> of_interface;
    INT flags = 0;
    HREFTYPE reference = 0;
    ASSERT_EQ(S_OK, object->GetTypeInfo(0, LOCALE_USER_DEFAULT, of_object.Put()));
    ASSERT_EQ(S_OK, provider->GetClassInfo(of_class.Put()));
    EXPECT_EQ(S_OK, of_class->GetImplTypeFlags(0, &flags));
    EXPECT_EQ(IMPLTYPEFLAG_FDEFAULT, flags);
    ASSERT_EQ(S_OK, of_class->GetRefTypeOfImplType(0, &reference));
    ASSERT_EQ(S_OK, of_class->GetRefTypeInfo(reference, of_interface.Put()));
    EXPECT_EQ(iid, GuidOf(*of_object.Get(), TKIND_DISPATCH));
    EXPECT_EQ(iid, GuidOf(*of_interface.Get(), TKIND_DISPATCH));
    EXPECT_EQ(*coclass.clsid, GuidOf(*of_class.Get(), TKIND_COCLASS));
  }
}

// How compilers of late-bound languages look members up.
TEST(Inventory, NamesAreBoundToMembers) {
  ComPtr<ITypeInfo> info;
  ComPtr<ITypeComp> comp;
  const auto display = Created<IDispatch>(CLSID_VeDisplayCfgParser);
  ASSERT_EQ(S_OK, display->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Put()));
  ASSERT_EQ(S_OK, info->GetTypeComp(comp.Put()));
  const struct {
    const OLECHAR* name;
    WORD flags;
    HRESULT result;
    int use;  // of the member that is found; 0 for none
  } rows[] = {
      {OLESTR("PtSize"), INVOKE_PROPERTYGET, S_OK, INVOKE_PROPERTYGET},
      {OLESTR("PtSize"), INVOKE_PROPERTYPUT, S_OK, INVOKE_PROPERTYPUT},
      {OLESTR("PTSIZE"), 0, S_OK, INVOKE_PROPERTYGET},
      {OLESTR("PtSize"), INVOKE_FUNC, TYPE_E_TYPEMISMATCH, 0},
      {OLESTR("Load"), INVOKE_FUNC, S_OK, INVOKE_FUNC},
      {OLESTR("NoSuchMember"), 0, S_OK, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(ToUtf8(row.name));
    Text name = row.name;
    ComPtr<ITypeInfo> found;
    DESCKIND kind = DESCKIND_NONE;
    BINDPTR bound{};
    EXPECT_EQ(row.result, comp->Bind(name.data(), 0, row.flags, found.Put(), &kind, &bound));
    EXPECT_EQ(row.use ? DESCKIND_FUNCDESC : DESCKIND_NONE, kind);
    if (kind != DESCKIND_FUNCDESC || !found) continue;
    EXPECT_EQ(row.use, bound.lpfuncdesc->invkind);
    found->ReleaseFuncDesc(bound.lpfuncdesc);
  }
}

// Arguments that no member can do much with.
struct Misuse {
  LONG number;
  const OLECHAR* text;
};
constexpr Misuse kMisuses[] = {{0, nullptr}, {9999, OLESTR("no folder/no.xml")}, {-1, OLESTR("")}};

// The thread's error object, which is taken, as clients read it: they ask the object first whether
// its interface supports it.
std::string ErrorAfter(IUnknown& object, REFIID iid) {
  ComPtr<ISupportErrorInfo> support;
  EXPECT_EQ(S_OK, object.QueryInterface(IID_ISupportErrorInfo, support.PutVoid()));
  EXPECT_EQ(S_OK, support->InterfaceSupportsErrorInfo(iid));
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Put()) != S_OK) return "(none)";
  Bstr source;
  Bstr description;
  info->GetSource(source.Put());
  info->GetDescription(description.Put());
  return ToUtf8(source.View()) + ": " + ToUtf8(description.View());
}

// An error of an earlier call, which no caller may read as that of a later one.
void LeaveEarlierError() { ReportError({"Earlier", &IID_IUnknown}, E_FAIL, "earlier failure"); }
constexpr char kEarlier[] = "Earlier: earlier failure";

LateValue TextOrNull(const OLECHAR* text) {
  LateValue value;
  value.Put()->vt = VT_BSTR;
  value.Put()->bstrVal = SysAllocString(text);
  return value;
}

std::vector<LateValue> WrongArguments(const MemberInfo& member, const Misuse& misuse) {
  std::vector<LateValue> arguments;
  for (const ParameterInfo& parameter : member.parameters) {
    if (parameter.IsRetval()) break;
    const VARTYPE type = parameter.type.type;
    const bool is_unsigned = type == VT_UI1 || type == VT_UI2 || type == VT_UI4;
    LateValue value(is_unsigned ? std::max(misuse.number, LONG{0}) : misuse.number);
    // A handle is an address: only null can be wrong and harmless.
    if (type == kUnsignedPointer) value = LateValue(LONG{0});
    if (type == VT_BSTR) value = TextOrNull(misuse.text);
    if (type == VT_USERDEFINED) value = LateValue(InBraces(IID_NULL));
    if (parameter.type.interface_) {
      value = LateValue();
      value.Put()->vt = VT_DISPATCH;
    }
    arguments.push_back(std::move(value));
  }
  return arguments;
}

// What is in the place of a result before a call.
constexpr LONGLONG kMark = 0x5A5A5A5A5A5A5A5A;

bool IsResult(const ParameterInfo& parameter) { return parameter.IsOut() && !parameter.IsIn(); }

// Members that leave the places of their results alone when they fail.
constexpr std::string_view kLeavesPlaces =
    " get_MatchRuleAt GetAutoLayerPair GetVisualStylePair get_DCHistoryAt GetUiPath GetDefaultCmd ";

/// @param without which place of a result is null; one past the last parameter for all of them
HRESULT CallThroughTable(IUnknown& object, const InterfaceInfo& owner, std::size_t index,
                         const std::vector<LateValue>& values, std::size_t without) {
  const MemberInfo& member = owner.members[index];
  const InvokeParameters given(values, member.kind == MemberKind::kPropertyPut);
  DispatchArguments arguments(member, given.parameters);
  EXPECT_EQ(S_OK, arguments.Prepare(nullptr));
  const std::size_t count = member.parameters.size();
  for (std::size_t i = 0; i < count; ++i) {
    arguments.Slots()[i].is_missing = without == i || without == count;
    if (IsResult(member.parameters[i])) arguments.Slots()[i].int64 = kMark;
  }
  const HRESULT result = CallNullable(owner, &object, index, arguments.Slots());
  for (std::size_t i = 0; i < count; ++i) {
    if (!IsResult(member.parameters[i])) continue;
    Slot& slot = arguments.Slots()[i];
    if (FAILED(result) && without > count) {
      const bool is_left =
          kLeavesPlaces.find(" " + ToUtf8(member.name) + " ") != kLeavesPlaces.npos;
      EXPECT_EQ(is_left ? static_cast<SHORT>(kMark) : 0, slot.int16);
    }
    if (slot.int64 == kMark) slot.int64 = 0;
  }
  return result;
}

// Of every member of every class: each place of a result null, and all; no text, an index outside,
// a file that is not there. A call that fails says why, and no caller reads of an earlier failure.
TEST(Inventory, EveryFailureIsToldOnBothWays) {
  unsigned failures = 0;
  unsigned exceptions = 0;
  const auto check = [&](const ClassEntry& entry, const InterfaceInfo& owner, std::size_t index,
                         const Misuse& misuse) {
    const IID& iid = *CoclassOf(entry)->default_interface->iid;
    const auto fresh = [&] {
      auto object = New(entry);
      LateObject(object).Put("ConfigurationPath", misuse.text ? ToUtf8(misuse.text) : "");
      return object;
    };
    const MemberInfo& member = owner.members[index];
    const std::vector<LateValue> arguments = WrongArguments(member, misuse);
    const std::string source = entry.VersionIndependentProgId() + ": ";
    const std::size_t count = member.parameters.size();
    std::string told;
    for (std::size_t without = 0; without <= count + 1; ++without) {
      ComPtr<IUnknown> object;
      ASSERT_EQ(S_OK, fresh()->QueryInterface(iid, object.PutVoid()));
      LeaveEarlierError();
      const HRESULT outcome = CallThroughTable(*object, owner, index, arguments, without);
      const std::string error = ErrorAfter(*object, *owner.iid);
      if (SUCCEEDED(outcome)) {
        EXPECT_TRUE(error == "(none)" || error == kEarlier) << error;
        told.clear();
        continue;
      }
      ++failures;
      EXPECT_EQ(source, error.substr(0, source.size())) << outcome;
      EXPECT_LT(source.size() + 10, error.size()) << error;
      told = without > count ? error : "";
    }

    const auto object = fresh();
    LeaveEarlierError();
    static constexpr WORD kFlags[] = {DISPATCH_METHOD, DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT};
    const LateResult late = client::Invoke(
        *object, member.id, kFlags[static_cast<std::size_t>(member.kind)], arguments);
    if (late.code == DISP_E_EXCEPTION) {
      ++exceptions;
      EXPECT_EQ(told, late.source + ": " + late.description);
      EXPECT_TRUE(FAILED(late.scode));
    }
    EXPECT_EQ("(none)", ErrorAfter(*object, *owner.iid));
  };
  for (const ClassEntry& entry : ClassTable()) {
    for (auto* owner = CoclassOf(entry)->default_interface; owner; owner = owner->base) {
      for (std::size_t index = 0; index < owner->members.size(); ++index) {
        for (const Misuse& misuse : kMisuses) {
          SCOPED_TRACE(std::string(entry.name) + " " + ToUtf8(owner->members[index].name) + " " +
                       std::to_string(misuse.number));
          check(entry, *owner, index, misuse);
        }
      }
    }
  }
  EXPECT_LT(5000U, failures);
  EXPECT_LT(500U, exceptions);
}

// What the registry has of every class, or nothing.
void ExpectRegistered(bool is_registered) {
  const std::string app = InBraces(kServerAppId);
  const std::string library = InBraces(LIBID_SabXmlParserLib);
  for (const ClassEntry& entry : ClassTable()) {
    const bool is_there = is_registered && entry.registration != Registration::kNone;
    const bool has_prog_ids = is_registered && entry.registration == Registration::kWithProgIds;
    const std::string clsid = InBraces(*entry.clsid);
    const std::string version = entry.ProgId();
    const std::string any = entry.VersionIndependentProgId();
    const struct {
      std::string key;
      const char* value;
      std::string text;
      bool is_expected;
    } rows[] = {
        {"CLSID\\" + clsid, "", entry.Description(), is_there},
        {"CLSID\\" + clsid, "AppID", app, is_there},
        {"CLSID\\" + clsid + "\\ProgID", "", version, has_prog_ids},
        {"CLSID\\" + clsid + "\\VersionIndependentProgID", "", any, has_prog_ids},
        {"CLSID\\" + clsid + "\\Programmable", "", "(empty)", is_there},
        {"CLSID\\" + clsid + "\\TypeLib", "", library, is_there},
        {"CLSID\\" + clsid + "\\InprocServer32", "ThreadingModel", "Apartment", is_there},
        {any, "", entry.Description(), has_prog_ids},
        {any + "\\CLSID", "", clsid, has_prog_ids},
        {any + "\\CurVer", "", version, has_prog_ids},
        {version, "", entry.Description(), has_prog_ids},
        {version + "\\CLSID", "", clsid, has_prog_ids},
        {version + "\\CurVer", "", "", false},
    };
    for (const auto& row : rows) {
      EXPECT_EQ(row.is_expected ? row.text : "(none)", RegistryText(row.key, row.value))
          << entry.name << ' ' << row.key;
    }
  }
}

TEST(Inventory, EveryClassComesToTheRegistryAndGoes) {
  ExpectRegistered(true);
  // A versioned name longer than 39 characters is cut.
  EXPECT_EQ("SabXmlParser.VeAutoUpdateAdminCfgPars.1",
            RegistryText("SabXmlParser.VeAutoUpdateAdminCfgParser\\CurVer"));
  EXPECT_EQ(InBraces(kServerAppId), RegistryText("AppID\\SabXmlParser.DLL", "AppID"));
  EXPECT_EQ(S_OK, Server().Unregister());
  ExpectRegistered(false);
  EXPECT_EQ(S_OK, Server().Register());
}

}  // namespace
}  // namespace sab::testing
