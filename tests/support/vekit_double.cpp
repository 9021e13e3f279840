// The host's support library as the tests know it. It is built as a library named VeKit, which is
// how the server finds it.

#include <SabXmlParser.h>
#include <sabxml/host.h>

#include "base/bstr.h"
#include "base/com_ptr.h"
#include "base/counted.h"
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

// The host's own configuration page. It answers as the server's does, and is counted.
class HostsPage final : public Counted<IVePrsConfig> {
 public:
  HostsPage() { ++created; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    return AnswerFor(IID_IVePrsConfig, riid == IID_IDispatch ? IID_IVePrsConfig : riid, object);
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }

  HRESULT STDMETHODCALLTYPE get_CLSID(BSTR* pVal) override { return Get(0, pVal); }
  HRESULT STDMETHODCALLTYPE put_CLSID(BSTR newVal) override { return Put(0, newVal); }
  HRESULT STDMETHODCALLTYPE get_Path(BSTR* pVal) override { return Get(1, pVal); }
  HRESULT STDMETHODCALLTYPE put_Path(BSTR newVal) override { return Put(1, newVal); }
  HRESULT STDMETHODCALLTYPE get_PropertyPageCLSID(BSTR* pVal) override { return Get(2, pVal); }
  HRESULT STDMETHODCALLTYPE put_PropertyPageCLSID(BSTR newVal) override { return Put(2, newVal); }
  HRESULT STDMETHODCALLTYPE get_LocalName(BSTR* pVal) override { return Get(3, pVal); }
  HRESULT STDMETHODCALLTYPE put_LocalName(BSTR newVal) override { return Put(3, newVal); }

 private:
  HRESULT Get(int which, BSTR* value) const {
    *value = texts_[which].Copy();
    return S_OK;
  }
  HRESULT Put(int which, BSTR value) {
    texts_[which] = sab::Bstr::CopyOf(value);
    return S_OK;
  }

  ULONG references_ = 1;
  sab::Bstr texts_[4];
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
DOUBLE_EXPORT int HostDoubleCreated() { return created; }
DOUBLE_EXPORT int HostDoubleAsked() { return asked; }
}
