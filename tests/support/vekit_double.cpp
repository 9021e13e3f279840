// The host's support library as the tests know it. It is built as a library named VeKit, which is
// how the server finds it.

#include <SabXmlParser.h>
#include <sabxml/host.h>

#include "base/counted.h"
#include "common/collection.h"
#include "object/component.h"
#include "support/host_double.h"

#if defined(_WIN32)
#define DOUBLE_EXPORT __declspec(dllexport)
#else
#define DOUBLE_EXPORT __attribute__((visibility("default")))
#endif

namespace {

using sab::Counted;
using sab::testing::HostBehaviour;

HostBehaviour behaviour = HostBehaviour::kHasNoList;
int created = 0;
int asked = 0;

// The host's own configuration page, which is laid out differently from the server's.
struct HostsFields {
  HostsFields() { ++created; }

  sab::Bstr LocalName;
  sab::Bstr PropertyPageCLSID;
  sab::Bstr Path;
  sab::Bstr CLSID;
};
using HostsPage = sab::Component<sab::coclass::VePrsConfig, HostsFields>;

// The host's own list of buttons, which the registry may name.
class HostsList : public sab::Collection<sab::coclass::VePrsRibbonButtonColl, IVePrsRibbonButton> {
 public:
  HostsList() { ++created; }
};

class ListFactory final : public Counted<IClassFactory> {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    return AnswerFor(IID_IClassFactory, riid, object);
  }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, void** object) override {
    return sab::CreateObject<HostsList>(outer, riid, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

class ForeignObject final : public Counted<IUnknown> {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    return AnswerFor(IID_IUnknown, riid, object);
  }
};

class FactoryList final : public IVeClassFactoryList {
 public:
  virtual ~FactoryList() = default;
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(REFCLSID clsid, IUnknown*, IUnknown** object) override {
    *object = nullptr;
    if (clsid != CLSID_VePrsConfig) return CLASS_E_CLASSNOTAVAILABLE;
    ++asked;
    if (behaviour == HostBehaviour::kFailsToCreate) return E_OUTOFMEMORY;
    if (behaviour == HostBehaviour::kSubstitutes) {
      *object = new HostsPage;
    } else {
      *object = new ForeignObject;
    }
    return S_OK;
  }
};

}  // namespace

class DOUBLE_EXPORT CVeGlobalData {
 public:
  static BOOL GetCCFL(IUnknown** list);
};

BOOL CVeGlobalData::GetCCFL(IUnknown** list) {
  static FactoryList factories;
  *list = nullptr;
  if (behaviour == HostBehaviour::kHasNoList) return FALSE;
  *list = &factories;
  return TRUE;
}

extern "C" {
DOUBLE_EXPORT void HostDoubleSetBehaviour(HostBehaviour wanted) {
  behaviour = wanted;
  created = asked = 0;
}
DOUBLE_EXPORT HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID, REFIID riid, void** object) {
  auto* const factory = new ListFactory;
  const HRESULT result = factory->QueryInterface(riid, object);
  factory->Release();
  return result;
}
DOUBLE_EXPORT int HostDoubleCreated() { return created; }
DOUBLE_EXPORT int HostDoubleAsked() { return asked; }
}
