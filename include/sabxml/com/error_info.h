#pragma once

#include "unknown.h"

// Rich error information: an object a thread, set by the component that fails and taken by the
// caller.

struct IErrorInfo : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE GetGUID(GUID* guid) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetSource(BSTR* source) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDescription(BSTR* description) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* file) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD* context) = 0;

 protected:
  ~IErrorInfo() = default;
};

struct ICreateErrorInfo : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE SetGUID(REFGUID guid) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetSource(LPOLESTR source) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetDescription(LPOLESTR description) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetHelpFile(LPOLESTR file) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetHelpContext(DWORD context) = 0;

 protected:
  ~ICreateErrorInfo() = default;
};

struct ISupportErrorInfo : public IUnknown {
  /// @return S_OK when the interface's methods report error objects, else S_FALSE
  virtual HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID riid) = 0;

 protected:
  ~ISupportErrorInfo() = default;
};

inline constexpr IID IID_IErrorInfo = {
    0x1CF2B120, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
inline constexpr IID IID_ICreateErrorInfo = {
    0x22F03340, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
inline constexpr IID IID_ISupportErrorInfo = {
    0xDF0B3D60, 0x548F, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};

extern "C" {
HRESULT CreateErrorInfo(ICreateErrorInfo** info);
/// Replaces the thread's error object; null clears it.
HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* info);
/// Takes the thread's error object. @return S_FALSE when there is none
HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** info);
}
