#pragma once

#include "dispatch.h"

// Type information: what a component says of its classes, interfaces and members.

struct ITypeInfo;
struct ITypeLib;
struct ITypeComp;

enum SYSKIND : int { SYS_WIN16 = 0, SYS_WIN32 = 1, SYS_MAC = 2, SYS_WIN64 = 3 };

enum TYPEKIND : int {
  TKIND_ENUM,
  TKIND_RECORD,
  TKIND_MODULE,
  TKIND_INTERFACE,
  TKIND_DISPATCH,
  TKIND_COCLASS,
  TKIND_ALIAS,
  TKIND_UNION,
  TKIND_MAX
};
enum FUNCKIND : int { FUNC_VIRTUAL, FUNC_PUREVIRTUAL, FUNC_NONVIRTUAL, FUNC_STATIC, FUNC_DISPATCH };
enum INVOKEKIND : int {
  INVOKE_FUNC = 1,
  INVOKE_PROPERTYGET = 2,
  INVOKE_PROPERTYPUT = 4,
  INVOKE_PROPERTYPUTREF = 8
};
enum CALLCONV : int { CC_FASTCALL = 0, CC_CDECL = 1, CC_STDCALL = 4 };
enum VARKIND : int { VAR_PERINSTANCE, VAR_STATIC, VAR_CONST, VAR_DISPATCH };
enum DESCKIND : int {
  DESCKIND_NONE,
  DESCKIND_FUNCDESC,
  DESCKIND_VARDESC,
  DESCKIND_TYPECOMP,
  DESCKIND_IMPLICITAPPOBJ
};

inline constexpr USHORT PARAMFLAG_NONE = 0;
inline constexpr USHORT PARAMFLAG_FIN = 0x1;
inline constexpr USHORT PARAMFLAG_FOUT = 0x2;
inline constexpr USHORT PARAMFLAG_FLCID = 0x4;
inline constexpr USHORT PARAMFLAG_FRETVAL = 0x8;
inline constexpr USHORT PARAMFLAG_FOPT = 0x10;

inline constexpr WORD TYPEFLAG_FAPPOBJECT = 0x1;
inline constexpr WORD TYPEFLAG_FCANCREATE = 0x2;
inline constexpr WORD TYPEFLAG_FLICENSED = 0x4;
inline constexpr WORD TYPEFLAG_FHIDDEN = 0x10;
inline constexpr WORD TYPEFLAG_FDUAL = 0x40;
inline constexpr WORD TYPEFLAG_FNONEXTENSIBLE = 0x80;
inline constexpr WORD TYPEFLAG_FOLEAUTOMATION = 0x100;
inline constexpr WORD TYPEFLAG_FDISPATCHABLE = 0x1000;

inline constexpr WORD FUNCFLAG_FRESTRICTED = 0x1;

inline constexpr WORD LIBFLAG_FHASDISKIMAGE = 0x8;

inline constexpr INT IMPLTYPEFLAG_FDEFAULT = 0x1;
inline constexpr INT IMPLTYPEFLAG_FSOURCE = 0x2;

struct TYPEDESC {
  __extension__ union {
    TYPEDESC* lptdesc;
    void* lpadesc;
    HREFTYPE hreftype;
  };
  VARTYPE vt;
};

struct PARAMDESCEX {
  ULONG cBytes;
  VARIANTARG varDefaultValue;
};
struct PARAMDESC {
  PARAMDESCEX* pparamdescex;
  USHORT wParamFlags;
};
struct IDLDESC {
  ULONG_PTR dwReserved;
  USHORT wIDLFlags;
};

struct ELEMDESC {
  TYPEDESC tdesc;
  __extension__ union {
    IDLDESC idldesc;
    PARAMDESC paramdesc;
  };
};

struct FUNCDESC {
  MEMBERID memid;
  SCODE* lprgscode;
  ELEMDESC* lprgelemdescParam;
  FUNCKIND funckind;
  INVOKEKIND invkind;
  CALLCONV callconv;
  SHORT cParams;
  SHORT cParamsOpt;
  SHORT oVft;
  SHORT cScodes;
  ELEMDESC elemdescFunc;
  WORD wFuncFlags;
};

struct VARDESC {
  MEMBERID memid;
  LPOLESTR lpstrSchema;
  __extension__ union {
    ULONG oInst;
    VARIANT* lpvarValue;
  };
  ELEMDESC elemdescVar;
  WORD wVarFlags;
  VARKIND varkind;
};

struct TYPEATTR {
  GUID guid;
  LCID lcid;
  DWORD dwReserved;
  MEMBERID memidConstructor;
  MEMBERID memidDestructor;
  LPOLESTR lpstrSchema;
  ULONG cbSizeInstance;
  TYPEKIND typekind;
  WORD cFuncs;
  WORD cVars;
  WORD cImplTypes;
  WORD cbSizeVft;
  WORD cbAlignment;
  WORD wTypeFlags;
  WORD wMajorVerNum;
  WORD wMinorVerNum;
  TYPEDESC tdescAlias;
  IDLDESC idldescType;
};

struct TLIBATTR {
  GUID guid;
  LCID lcid;
  SYSKIND syskind;
  WORD wMajorVerNum;
  WORD wMinorVerNum;
  WORD wLibFlags;
};

union BINDPTR {
  FUNCDESC* lpfuncdesc;
  VARDESC* lpvardesc;
  ITypeComp* lptcomp;
};

struct ITypeComp : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Bind(LPOLESTR name, ULONG hash, WORD flags, ITypeInfo** info,
                                         DESCKIND* kind, BINDPTR* bound) = 0;
  virtual HRESULT STDMETHODCALLTYPE BindType(LPOLESTR name, ULONG hash, ITypeInfo** info,
                                             ITypeComp** comp) = 0;

 protected:
  ~ITypeComp() = default;
};

struct ITypeInfo : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE GetTypeAttr(TYPEATTR** attributes) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetTypeComp(ITypeComp** comp) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetFuncDesc(UINT index, FUNCDESC** description) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetVarDesc(UINT index, VARDESC** description) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetNames(MEMBERID member, BSTR* names, UINT capacity,
                                             UINT* count) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetRefTypeOfImplType(UINT index, HREFTYPE* reference) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetImplTypeFlags(UINT index, INT* flags) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* ids) = 0;
  virtual HRESULT STDMETHODCALLTYPE Invoke(PVOID instance, MEMBERID member, WORD flags,
                                           DISPPARAMS* parameters, VARIANT* result,
                                           EXCEPINFO* exception, UINT* bad_argument) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDocumentation(MEMBERID member, BSTR* name, BSTR* help,
                                                     DWORD* help_context, BSTR* help_file) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDllEntry(MEMBERID member, INVOKEKIND kind, BSTR* library,
                                                BSTR* name, WORD* ordinal) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetRefTypeInfo(HREFTYPE reference, ITypeInfo** info) = 0;
  virtual HRESULT STDMETHODCALLTYPE AddressOfMember(MEMBERID member, INVOKEKIND kind,
                                                    PVOID* address) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, PVOID* object) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetMops(MEMBERID member, BSTR* mops) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetContainingTypeLib(ITypeLib** library, UINT* index) = 0;
  virtual void STDMETHODCALLTYPE ReleaseTypeAttr(TYPEATTR* attributes) = 0;
  virtual void STDMETHODCALLTYPE ReleaseFuncDesc(FUNCDESC* description) = 0;
  virtual void STDMETHODCALLTYPE ReleaseVarDesc(VARDESC* description) = 0;

 protected:
  ~ITypeInfo() = default;
};

struct ITypeLib : public IUnknown {
  virtual UINT STDMETHODCALLTYPE GetTypeInfoCount() = 0;
  virtual HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, ITypeInfo** info) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetTypeInfoType(UINT index, TYPEKIND* kind) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetTypeInfoOfGuid(REFGUID guid, ITypeInfo** info) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetLibAttr(TLIBATTR** attributes) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetTypeComp(ITypeComp** comp) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDocumentation(INT index, BSTR* name, BSTR* help,
                                                     DWORD* help_context, BSTR* help_file) = 0;
  virtual HRESULT STDMETHODCALLTYPE IsName(LPOLESTR name, ULONG hash, BOOL* is_name) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindName(LPOLESTR name, ULONG hash, ITypeInfo** infos,
                                             MEMBERID* members, USHORT* count) = 0;
  virtual void STDMETHODCALLTYPE ReleaseTLibAttr(TLIBATTR* attributes) = 0;

 protected:
  ~ITypeLib() = default;
};

struct IProvideClassInfo : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) = 0;

 protected:
  ~IProvideClassInfo() = default;
};

inline constexpr IID IID_ITypeInfo = {0x00020401, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_ITypeLib = {0x00020402, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_ITypeComp = {0x00020403, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IProvideClassInfo = {
    0xB196B283, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}};
