#include <gtest/gtest.h>

#include "generated/dispatch_tables.h"
#include "server/class_entry.h"
#include "server/created_object.h"
#include "support/server_library.h"

namespace sab::testing {
namespace {

// An outer object that counts what reaches it.
class CountingOuter final : public IUnknown {
 public:
  virtual ~CountingOuter() = default;
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    *object = nullptr;
    if (riid == IID_IUnknown) {
      *object = static_cast<IUnknown*>(this);
      AddRef();
      return S_OK;
    }
    return inner ? inner->QueryInterface(riid, object) : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }

  ComPtr<IUnknown> inner;
  ULONG references = 1;
};

ComPtr<IClassFactory> FactoryOf(REFCLSID clsid) {
  ComPtr<IClassFactory> factory;
  EXPECT_EQ(S_OK, Server().GetClassObject(clsid, IID_IClassFactory, factory.PutVoid()));
  return factory;
}

TEST(EntryPoints, RefuseWhatTheyCannotGive) {
  void* object = &object;
  EXPECT_EQ(E_POINTER, Server().GetClassObject(CLSID_VeAppParser, IID_IClassFactory, nullptr));
  EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE,
            Server().GetClassObject(IID_IUnknown, IID_IClassFactory, &object));
  EXPECT_EQ(nullptr, object);
  object = &object;
  EXPECT_EQ(E_NOINTERFACE, Server().GetClassObject(CLSID_VeAppParser, IID_IDispatch, &object));
  EXPECT_EQ(nullptr, object);
}

TEST(EntryPoints, TheLibraryStaysWhileAnythingIsHeld) {
  ASSERT_EQ(S_OK, Server().CanUnloadNow());
  {
    const ComPtr<IVeAppParser> app = Created<IVeAppParser>(CLSID_VeAppParser);
    EXPECT_EQ(S_FALSE, Server().CanUnloadNow());
  }
  EXPECT_EQ(S_OK, Server().CanUnloadNow());
  {
    const ComPtr<IClassFactory> factory = FactoryOf(CLSID_VePrsAccel);
    EXPECT_EQ(S_FALSE, Server().CanUnloadNow());
    EXPECT_EQ(S_OK, factory->LockServer(TRUE));
  }
  EXPECT_EQ(S_FALSE, Server().CanUnloadNow());
  EXPECT_EQ(S_OK, FactoryOf(CLSID_VeAppParser)->LockServer(FALSE));
  EXPECT_EQ(S_OK, Server().CanUnloadNow());
}

// Whatever is asked of an object leads to one identity, its own or the outer object's.
void CheckIdentity(const IUnknown* expected, IDispatch& dispatch) {
  ComPtr<IUnknown> identity;
  EXPECT_EQ(S_OK, dispatch.QueryInterface(IID_IUnknown, identity.PutVoid()));
  EXPECT_EQ(expected, identity.Get());
  ComPtr<ISupportErrorInfo> support;
  ASSERT_EQ(S_OK, dispatch.QueryInterface(IID_ISupportErrorInfo, support.PutVoid()));
  EXPECT_EQ(expected, support.As<IUnknown>().Get());
  for (const InterfaceInfo* info : TheLibrary().interfaces) {
    const bool is_own =
        SUCCEEDED(dispatch.QueryInterface(*info->iid, ComPtr<IUnknown>().PutVoid()));
    EXPECT_EQ(is_own ? S_OK : S_FALSE, support->InterfaceSupportsErrorInfo(*info->iid));
  }
  EXPECT_EQ(S_FALSE, support->InterfaceSupportsErrorInfo(IID_IDispatch));
}

TEST(EntryPoints, EveryClassIsCreatedAloneAndAsPartOfAnOuterObject) {
  for (const ClassEntry& entry : ClassTable()) {
    SCOPED_TRACE(entry.name);
    const ComPtr<IClassFactory> factory = FactoryOf(*entry.clsid);
    EXPECT_EQ(factory, FactoryOf(*entry.clsid));
    void* none = &none;
    EXPECT_EQ(E_NOINTERFACE, factory->CreateInstance(nullptr, IID_IClassFactory, &none));
    EXPECT_EQ(nullptr, none);
    EXPECT_EQ(E_POINTER, factory->CreateInstance(nullptr, IID_IUnknown, nullptr));
    ComPtr<IDispatch> alone;
    ASSERT_EQ(S_OK, factory->CreateInstance(nullptr, IID_IDispatch, alone.PutVoid()));
    CheckIdentity(alone.As<IUnknown>().Get(), *alone);
    EXPECT_EQ(E_POINTER, alone->QueryInterface(IID_IUnknown, nullptr));

    CountingOuter outer;
    none = &none;
    SetErrorInfo(0, nullptr);
    EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(&outer, IID_IDispatch, &none));
    EXPECT_EQ(nullptr, none);
    EXPECT_NE("", TakeErrorDescription());
    ASSERT_EQ(S_OK, factory->CreateInstance(&outer, IID_IUnknown, outer.inner.PutVoid()));
    {
      ComPtr<IDispatch> part;
      ASSERT_EQ(S_OK, outer.inner->QueryInterface(IID_IDispatch, part.PutVoid()));
      EXPECT_EQ(2U, outer.references);
      CheckIdentity(&outer, *part);
    }
    EXPECT_EQ(1U, outer.references);
    outer.inner.Reset();
  }
}

}  // namespace
}  // namespace sab::testing
