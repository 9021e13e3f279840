#include <sabxml/com.h>

#include <atomic>
#include <new>
#include <utility>

namespace {

// The error object of a component that makes none of its own.
class ErrorInfo final : public ICreateErrorInfo, public IErrorInfo {
 public:
  virtual ~ErrorInfo() {
    SysFreeString(source_);
    SysFreeString(description_);
    SysFreeString(help_file_);
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (riid == IID_IUnknown || riid == IID_ICreateErrorInfo) {
      *object = static_cast<ICreateErrorInfo*>(this);
    } else if (riid == IID_IErrorInfo) {
      *object = static_cast<IErrorInfo*>(this);
    } else {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE SetGUID(REFGUID guid) override {
    guid_ = guid;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SetSource(LPOLESTR source) override { return Set(source_, source); }
  HRESULT STDMETHODCALLTYPE SetDescription(LPOLESTR text) override {
    return Set(description_, text);
  }
  HRESULT STDMETHODCALLTYPE SetHelpFile(LPOLESTR file) override { return Set(help_file_, file); }
  HRESULT STDMETHODCALLTYPE SetHelpContext(DWORD context) override {
    help_context_ = context;
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE GetGUID(GUID* guid) override {
    if (!guid) return E_INVALIDARG;
    *guid = guid_;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetSource(BSTR* source) override { return Get(source_, source); }
  HRESULT STDMETHODCALLTYPE GetDescription(BSTR* text) override { return Get(description_, text); }
  HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* file) override { return Get(help_file_, file); }
  HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD* context) override {
    if (!context) return E_INVALIDARG;
    *context = help_context_;
    return S_OK;
  }

 private:
  static HRESULT Set(BSTR& member, LPOLESTR value) {
    const BSTR copy = SysAllocString(value);
    if (value && !copy) return E_OUTOFMEMORY;
    SysFreeString(std::exchange(member, copy));
    return S_OK;
  }
  static HRESULT Get(BSTR member, BSTR* value) {
    if (!value) return E_INVALIDARG;
    *value = member ? SysAllocStringLen(member, SysStringLen(member)) : nullptr;
    return member && !*value ? E_OUTOFMEMORY : S_OK;
  }

  std::atomic<ULONG> references_{1};
  GUID guid_{};
  BSTR source_ = nullptr;
  BSTR description_ = nullptr;
  BSTR help_file_ = nullptr;
  DWORD help_context_ = 0;
};

// The thread's error object. It is plain, since every call of a component clears it; what lets it
// go when the thread ends is made with the first one that is set.
[[gnu::tls_model("initial-exec")]] constinit thread_local IErrorInfo* current_error = nullptr;

struct LastError {
  LastError() = default;
  LastError(const LastError&) = delete;
  LastError& operator=(const LastError&) = delete;
  ~LastError() {
    if (IErrorInfo* const last = std::exchange(current_error, nullptr)) last->Release();
  }
};

void ReleaseAtTheEndOfTheThread() { static thread_local const LastError last; }

}  // namespace

HRESULT CreateErrorInfo(ICreateErrorInfo** info) {
  if (!info) return E_INVALIDARG;
  *info = new (std::nothrow) ErrorInfo;
  return *info ? S_OK : E_OUTOFMEMORY;
}

HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* info) {
  if (reserved != 0) return E_INVALIDARG;
  if (info) {
    ReleaseAtTheEndOfTheThread();
    info->AddRef();
  }
  if (IErrorInfo* const old = std::exchange(current_error, info)) old->Release();
  return S_OK;
}

HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** info) {
  if (reserved != 0 || !info) return E_INVALIDARG;
  *info = std::exchange(current_error, nullptr);
  return *info ? S_OK : S_FALSE;
}
