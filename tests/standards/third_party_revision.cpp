// A revision parser as somebody else would write it, with the public headers alone.

#include "third_party_revision.h"

#include <SabXmlParser.h>
#include <sabxml/node.h>

#include <string>

namespace {

using Text = std::basic_string<OLECHAR>;

// The text of an automation string, which is freed.
Text Taken(HRESULT result, BSTR string) {
  Text text = FAILED(result) ? OLESTR("?") : Text(string ? string : OLESTR(""));
  SysFreeString(string);
  return text;
}

Text LocalNameOf(const sabxml::Node& node) {
  BSTR name = nullptr;
  const HRESULT result = node.GetLocalName(&name);
  return Taken(result, name);
}

Text Describe(const sabxml::Node& node) {
  Text inner;
  for (auto child = node.FirstChild(); child; child = child.NextSibling()) {
    inner += (inner.empty() ? OLESTR("") : OLESTR(" ")) + Describe(child);
  }
  if (!inner.empty()) return LocalNameOf(node) + OLESTR("{") + inner + OLESTR("}");
  BSTR text = nullptr;
  const HRESULT result = node.GetText(&text);
  return LocalNameOf(node) + OLESTR("=") + Taken(result, text);
}

class Revision final : public IVeStdSymRevParser {
 public:
  virtual ~Revision() = default;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    const bool is_known =
        riid == IID_IUnknown || riid == IID_IDispatch || riid == IID_IVeStdSymRevParser;
    *object = is_known ? this : nullptr;
    if (is_known) AddRef();
    return is_known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
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

  HRESULT STDMETHODCALLTYPE Load(ULONG_PTR i_ulPrsNode) override {
    const sabxml::Node node(i_ulPrsNode);
    const auto first = node.FirstChild();
    if (first && LocalNameOf(first) == OLESTR("Refuse")) return E_ACCESSDENIED;
    if (first && LocalNameOf(first) == OLESTR("Forward")) return Forward(first);
    revision_ = standard_ + OLESTR(" ") + Describe(node);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Revision(BSTR* pVal) override {
    *pVal = SysAllocString(revision_.c_str());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE put_Revision(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetAttachSymStdInfo(IVeStdSymbolParser* i_pStdSymParser) override {
    BSTR name = nullptr;
    const HRESULT result = i_pStdSymParser->GetAttachStdName(&name);
    standard_ = Taken(result, name);
    return E_NOTIMPL;  // which is nobody's business
  }
  HRESULT STDMETHODCALLTYPE GetAttachStdName(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetAttachSymStdID(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_RevID(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_RevID(LONG) override { return E_NOTIMPL; }

 private:
  // Lets a parser of the server read the element.
  HRESULT Forward(const sabxml::Node& node) {
    IVeStdSymRevParser* parser = nullptr;
    HRESULT result = CoCreateInstance(CLSID_VeStdBomRevParser, nullptr, CLSCTX_INPROC_SERVER,
                                      IID_IVeStdSymRevParser, reinterpret_cast<void**>(&parser));
    if (FAILED(result)) return result;
    const ULONG_PTR handle = node.Handle();
    result = parser->Load(handle);
    BSTR revision = nullptr;
    if (SUCCEEDED(result)) result = parser->get_Revision(&revision);
    revision_ = Taken(result, revision) + OLESTR(" ");
    for (const char digit : std::to_string(handle)) revision_ += static_cast<OLECHAR>(digit);
    parser->Release();
    return result;
  }

  ULONG references_ = 1;
  Text standard_;
  Text revision_;
};

class Factory final : public IClassFactory {
 public:
  virtual ~Factory() = default;
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    const bool is_known = riid == IID_IUnknown || riid == IID_IClassFactory;
    *object = is_known ? this : nullptr;
    return is_known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, void** object) override {
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    auto* const revision = new Revision;
    const HRESULT result = revision->QueryInterface(riid, object);
    revision->Release();
    return result;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

}  // namespace

STDAPI DllCanUnloadNow() { return S_FALSE; }

STDAPI DllGetClassObject(REFCLSID rclsid, REFIID riid, LPVOID* ppv) {
  static Factory factory;
  *ppv = nullptr;
  if (rclsid != sab::testing::kThirdPartyRevision) return CLASS_E_CLASSNOTAVAILABLE;
  return factory.QueryInterface(riid, ppv);
}
