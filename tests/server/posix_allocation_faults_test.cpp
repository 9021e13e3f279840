// Every allocation failing in turn, of operator new and of the component runtime, while objects are
// made and files are read. A call succeeds as ever or says that there is no memory; what it has
// read until then is complete, and nothing stays alive.

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "automation/dispatch_arguments.h"
#include "dispatch_tables.h"
#include "server/created_object.h"
#include "support/allocation_faults.h"
#include "support/late_object.h"
#include "support/server_library.h"

namespace sab::testing {
namespace {

/// @param run runs with the number of allocations that succeed; returns whether one has failed
template <class Run>
void WithEachAllocationFailing(const char* what, const Run& run) {
  const bool is_torture = std::getenv("SAB_TORTURE") != nullptr;
  long failures = 0;
  bool has_struck = true;
  for (long successes = 0; has_struck; successes += is_torture ? 1 : 1 + successes / 8) {
    SCOPED_TRACE(std::string(what) + " " + std::to_string(successes));
    has_struck = run(successes);
    if (has_struck) ++failures;
    ASSERT_EQ(S_OK, Server().CanUnloadNow());
  }
  std::cout << "counted: " << failures << " failing allocations of " << what << '\n';
}

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
  for (const CoclassInfo& coclass : TheLibrary().coclasses) {
    const std::string name = ToUtf8(coclass.name);
    const CLSID clsid = RegisteredClassId(name);
    const std::vector<DISPID> members = OwnedObjectsOf(*coclass.default_interface);
    const auto create = [&](ComPtr<IDispatch>& out) {
      return CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, out.PutVoid());
    };
    ComPtr<IDispatch> first;
    const bool is_registered = create(first) == S_OK;
    registered += is_registered;
    first.Reset();
    WithEachAllocationFailing(name.c_str(), [&](long successes) {
      std::vector<VARIANT> parts(members.size());
      std::vector<HRESULT> results(members.size(), S_OK);
      ComPtr<IClassFactory> factory;
      ComPtr<IDispatch> object;
      EXPECT_EQ(S_OK, Server().GetClassObject(clsid, IID_IClassFactory, factory.PutVoid()));
      HRESULT created = S_OK;
      bool has_struck = false;
      {
        const AllocationFaults faults(successes);
        created = is_registered ? create(object)
                                : factory->CreateInstance(nullptr, IID_IDispatch, object.PutVoid());
        for (std::size_t i = 0; object && i < members.size(); ++i) {
          results[i] = Invoked(*object, members[i], none, &parts[i]);
        }
        has_struck = faults.HasStruck();
      }
      EXPECT_TRUE(object ? created == S_OK : created == E_OUTOFMEMORY) << created;
      for (std::size_t i = 0; object && i < members.size(); ++i) {
        const bool is_there = parts[i].vt == VT_DISPATCH && parts[i].pdispVal;
        EXPECT_TRUE(is_there ? results[i] == S_OK : results[i] == E_OUTOFMEMORY)
            << members[i] << ": " << results[i];
        VariantClear(&parts[i]);
      }
      return has_struck;
    });
  }
  EXPECT_LT(50, registered);  // the others are created by their owners only
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
  for (const auto& row : rows) {
    const std::string file = SAB_SAMPLES "/" + std::string(row.file);
    const bool is_generated = std::string(row.method) != "Load";
    std::vector<LateValue> arguments;
    if (!is_generated) arguments.emplace_back(file);
    const InvokeParameters given(arguments, false);
    // Reads with the faults of an allocation, and tells what is there.
    const auto read = [&](long successes, HRESULT& result, bool& has_struck) {
      const LateObject object(row.class_name);
      EXPECT_EQ(is_generated ? S_OK : DISP_E_UNKNOWNNAME, object.Put("ConfigurationPath", file));
      Text wide = FromUtf8(row.method);
      LPOLESTR name = wide.data();
      DISPID member = DISPID_UNKNOWN;
      const auto bound = object.As<IDispatch>();
      EXPECT_EQ(S_OK, bound->GetIDsOfNames(IID_NULL, &name, 1, 0, &member));
      {
        const AllocationFaults faults(successes);
        result = Invoked(*bound, member, given);
        has_struck = faults.HasStruck();
      }
      return object.Told();
    };
    HRESULT result = S_OK;
    bool has_struck = false;
    const std::string whole = read(1'000'000'000, result, has_struck);
    ASSERT_EQ(S_OK, result) << file;
    WithEachAllocationFailing(row.class_name, [&](long successes) {
      const std::string part = read(successes, result, has_struck);
      if (SUCCEEDED(result)) {
        EXPECT_EQ(whole, part);
      } else {
        EXPECT_EQ(E_OUTOFMEMORY, result);
        ExpectPartOf(whole, part);
      }
      return has_struck;
    });
  }
}

TEST(AllocationFaults, TheNameOfTheStandardIsToldOrThereIsNoMemory) {
  const LateObject whole("VeStandardCfgParser");
  ASSERT_EQ(S_OK, whole.Call("Load", {SAB_SAMPLES "/standards/catalogue.xml"}));
  const LateObject standard = whole.Follow("GetStandardParserColl [0]");
  const auto symbol = standard.Follow("GetSymbolParserColl [0]").As<IVeStdSymbolParser>();
  Bstr name;
  const AllocationFaults faults(0);
  EXPECT_EQ(E_OUTOFMEMORY, symbol->GetAttachStdName(name.Put()));
}

TEST(AllocationFaults, NoNameIsLeftWhereItsHelpCannotBeCopied) {
  ComPtr<ITypeInfo> info;
  ASSERT_EQ(S_OK, Created<IDispatch>(CLSID_VeAppParser)->GetTypeInfo(0, 0, info.Put()));
  long successes = -1;
  HRESULT result = S_OK;
  do {
    Bstr texts[2];
    const AllocationFaults faults(++successes);
    result = info->GetDocumentation(MEMBERID_NIL, texts[0].Put(), texts[1].Put(), nullptr, nullptr);
    EXPECT_EQ(FAILED(result), texts[0].IsNull() && texts[1].IsNull()) << successes;
  } while (result == E_OUTOFMEMORY);
  EXPECT_EQ(S_OK, result);
  EXPECT_LE(2, successes);
}

}  // namespace
}  // namespace sab::testing
