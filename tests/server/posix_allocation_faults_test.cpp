// Every allocation failing in turn, of operator new and of the component runtime, while objects are
// made and files are read. A call succeeds as ever or says that there is no memory; what it has
// read until then is complete, and nothing stays alive.

#include <algorithm>
#include <functional>
#include <iostream>

#include "automation/dispatch_arguments.h"
#include "generated/dispatch_tables.h"
#include "server/created_object.h"
#include "support/allocation_faults.h"
#include "support/late_object.h"
#include "support/server_library.h"

namespace sab::testing {
namespace {

// A late-bound call whose arguments are there before memory runs out.
HRESULT Invoked(IDispatch& object, DISPID member, const InvokeParameters& given,
                VARIANT* result = nullptr) {
  DISPPARAMS parameters = given.parameters;
  EXCEPINFO exception{};
  const HRESULT code = object.Invoke(member, IID_NULL, 0, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                                     &parameters, result, &exception, nullptr);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  return code == DISP_E_EXCEPTION ? exception.scode : code;
}

// The members that hand out a sub-object or a list, which exist from the beginning; those of a list
// hand out its elements.
std::vector<DISPID> OwnedObjectsOf(const InterfaceInfo& info) {
  std::vector<DISPID> members;
  for (const MemberInfo& member : info.members) {
    if (TextView(member.name) == OLESTR("GetHead")) return {};
    if (member.parameters.size() != 1 || !member.parameters[0].IsRetval()) continue;
    if (member.parameters[0].type.interface_) members.push_back(member.id);
  }
  return members;
}

TEST(AllocationFaults, AnObjectIsCreatedWithItsPartsOrThereIsNoMemory) {
  const InvokeParameters none({}, false);
  int registered = 0;
  long failures = 0;
  for (const CoclassInfo& coclass : TheLibrary().coclasses) {
    const std::string name = ToUtf8(coclass.name);
    SCOPED_TRACE(name);
    const CLSID clsid = RegisteredClassId(name);
    const std::vector<DISPID> members = OwnedObjectsOf(*coclass.default_interface);
    ComPtr<IDispatch> object;
    const auto create = [&] {
      return CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                              object.PutVoid());
    };
    // The others are created by their owners only.
    const auto create_by_factory = [&] {
      ComPtr<IClassFactory> factory;
      const HRESULT found = Server().GetClassObject(clsid, IID_IClassFactory, factory.PutVoid());
      if (FAILED(found)) return found;
      return factory->CreateInstance(nullptr, IID_IDispatch, object.PutVoid());
    };
    const bool is_registered = create() == S_OK;
    registered += is_registered;
    object.Reset();
    std::vector<VARIANT> parts(members.size());
    std::vector<HRESULT> results(members.size());
    HRESULT created = S_OK;
    failures += WithEachAllocationFailing(
        [&] {
          created = is_registered ? create() : create_by_factory();
          for (std::size_t i = 0; object && i < members.size(); ++i) {
            results[i] = Invoked(*object, members[i], none, &parts[i]);
          }
        },
        [&](bool has_failed) {
          EXPECT_EQ(has_failed && !object ? E_OUTOFMEMORY : S_OK, created);
          for (std::size_t i = 0; object && i < members.size(); ++i) {
            const bool is_there = parts[i].vt == VT_DISPATCH && parts[i].pdispVal;
            EXPECT_EQ(is_there ? S_OK : E_OUTOFMEMORY, results[i]) << members[i];
            VariantClear(&parts[i]);
          }
          object.Reset();
          EXPECT_EQ(S_OK, Server().CanUnloadNow());
        });
  }
  EXPECT_LT(50, registered);
  std::cout << "counted: " << failures << " failing allocations of creating\n";
}

// The texts between blanks that are in no bracket.
std::vector<std::string> Items(const std::string& told) {
  std::vector<std::string> items(1);
  int depth = 0;
  for (const char c : told) {
    if (c == '{' || c == '[') ++depth;
    if (c == '}' || c == ']') --depth;
    if (c == ' ' && depth == 0) {
      items.emplace_back();
    } else {
      items.back() += c;
    }
  }
  return items;
}

// Every value is that of the whole, and every list has its first elements.
void ExpectPartOf(const std::string& whole, const std::string& part) {
  const std::vector<std::string> all = Items(whole);
  for (const std::string& item : Items(part)) {
    // The texts of an environment fail while they are empty.
    if (item.empty() || item.ends_with("=(0x80004005)") ||
        std::find(all.begin(), all.end(), item) != all.end()) {
      continue;
    }
    const std::size_t value = item.find('=') + 1;
    const auto same = std::find_if(all.begin(), all.end(), [&](const std::string& candidate) {
      return candidate.starts_with(item.substr(0, value + 1));
    });
    ASSERT_NE(all.end(), same) << item;
    const std::string inner = item.substr(value + 1, item.size() - value - 2);
    const std::string outer = same->substr(value + 1, same->size() - value - 2);
    if (item[value] == '[') {
      EXPECT_TRUE((outer + " ").starts_with(inner + " ")) << item << "\n" << *same;
    } else {
      ASSERT_EQ('{', item[value]) << item << "\n" << *same;
      ExpectPartOf(outer, inner);
    }
  }
}

TEST(AllocationFaults, AFileIsReadWholeOrInPartAndSaidSo) {
  const struct {
    const char* class_name;
    const char* method;
    const char* file;
  } rows[] = {
      {"VeAppParser", "GenerateApp", "application.xml"},
      {"VeTmplParser", "GenerateTmpl", "templates/part.xml"},
      {"VeModuleParser", "GenerateModule", "modules/drawing.xml"},
      {"VeEnvParser", "GenerateEnv", "environments/drawing.xml"},
      {"VeCmdParser", "GenerateCmd", "commands/draw.xml"},
      {"VeUiParser", "GenerateUI", "ui/sheet_metal.xml"},
      {"VeStandardCfgParser", "Load", "standards/catalogue.xml"},
      {"VeTxtTemplateFileParser", "Load", "text_templates/title_block.txt"},
  };
  long failures = 0;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.file);
    const std::string file = SAB_SAMPLES "/" + std::string(row.file);
    const bool is_generated = std::string(row.method) != "Load";
    std::vector<LateValue> arguments;
    if (!is_generated) arguments.emplace_back(file);
    const InvokeParameters given(arguments, false);
    HRESULT result = S_OK;
    ComPtr<IDispatch> object;
    DISPID member = DISPID_UNKNOWN;
    const auto make = [&] {
      const LateObject late(row.class_name);
      EXPECT_EQ(is_generated ? S_OK : DISP_E_UNKNOWNNAME, late.Put("ConfigurationPath", file));
      object = late.As<IDispatch>();
      Text wide = FromUtf8(row.method);
      LPOLESTR name = wide.data();
      EXPECT_EQ(S_OK, object->GetIDsOfNames(IID_NULL, &name, 1, 0, &member));
    };
    make();
    ASSERT_EQ(S_OK, Invoked(*object, member, given));
    const std::string whole = LateObject(object).Told();
    make();
    const auto check = [&](bool has_failed) {
      const std::string part = LateObject(object).Told();
      if (SUCCEEDED(result)) {
        EXPECT_EQ(whole, part);
      } else {
        EXPECT_TRUE(has_failed && result == E_OUTOFMEMORY) << result;
        ExpectPartOf(whole, part);
      }
      object.Reset();
      EXPECT_EQ(S_OK, Server().CanUnloadNow());
      make();
    };
    failures += WithEachAllocationFailing([&] { result = Invoked(*object, member, given); }, check);
  }
  std::cout << "counted: " << failures << " failing allocations of reading\n";
}

TEST(AllocationFaults, TextsAreToldWholeOrThereIsNoMemory) {
  const LateObject catalogue("VeStandardCfgParser");
  ASSERT_EQ(S_OK, catalogue.Call("Load", {SAB_SAMPLES "/standards/catalogue.xml"}));
  const auto symbol = catalogue.Follow("GetStandardParserColl [0] GetSymbolParserColl [0]")
                          .As<IVeStdSymbolParser>();
  ComPtr<ITypeInfo> info;
  ASSERT_EQ(S_OK, symbol->GetTypeInfo(0, 0, info.Put()));
  const std::function<HRESULT(BSTR*, BSTR*)> calls[] = {
      [&](BSTR* name, BSTR*) { return symbol->GetAttachStdName(name); },
      [&](BSTR* name, BSTR* help) {
        return info->GetDocumentation(MEMBERID_NIL, name, help, nullptr, nullptr);
      }};
  for (const auto& call : calls) {
    Bstr name;
    Bstr help;
    HRESULT result = S_OK;
    const auto check = [&](bool has_failed) {
      EXPECT_EQ(has_failed ? E_OUTOFMEMORY : S_OK, result);
      EXPECT_EQ(has_failed, name.IsNull());
      EXPECT_TRUE(!has_failed || help.IsNull());
    };
    EXPECT_LE(1, WithEachAllocationFailing([&] { result = call(name.Put(), help.Put()); }, check));
  }
}

}  // namespace
}  // namespace sab::testing
