#include "automation/table_type_lib.h"

#include <new>
#include <utility>

#include "automation/described_type.h"
#include "automation/table_type_comp.h"
#include "automation/table_type_info.h"

namespace sab {

HRESULT TableTypeLib::GetTypeInfo(UINT index, ITypeInfo** info) {
  if (!info) return E_INVALIDARG;
  *info = nullptr;
  if (index >= DescribedType::Count()) return TYPE_E_ELEMENTNOTFOUND;
  *info = new (std::nothrow) TableTypeInfo(index);
  return *info ? S_OK : E_OUTOFMEMORY;
}

HRESULT TableTypeLib::GetTypeInfoType(UINT index, TYPEKIND* kind) {
  if (!kind) return E_INVALIDARG;
  if (index >= DescribedType::Count()) return TYPE_E_ELEMENTNOTFOUND;
  *kind = DescribedType::At(index).Kind();
  return S_OK;
}

HRESULT TableTypeLib::GetTypeInfoOfGuid(REFGUID guid, ITypeInfo** info) {
  if (!info) return E_INVALIDARG;
  *info = nullptr;
  for (UINT i = 0; i < DescribedType::Count(); ++i) {
    if (DescribedType::At(i).Guid() == guid) return GetTypeInfo(i, info);
  }
  return TYPE_E_ELEMENTNOTFOUND;
}

HRESULT TableTypeLib::GetLibAttr(TLIBATTR** attributes) {
  if (!attributes) return E_INVALIDARG;
  const LibraryInfo& library = TheLibrary();
  *attributes = new (std::nothrow) TLIBATTR{};
  if (!*attributes) return E_OUTOFMEMORY;
  (*attributes)->guid = *library.guid;
  (*attributes)->lcid = library.locale;
  (*attributes)->syskind = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
  (*attributes)->wMajorVerNum = library.major_version;
  (*attributes)->wMinorVerNum = library.minor_version;
  (*attributes)->wLibFlags = LIBFLAG_FHASDISKIMAGE;
  return S_OK;
}

HRESULT TableTypeLib::GetTypeComp(ITypeComp** comp) { return CreateTypeComp({}, comp); }

HRESULT TableTypeLib::GetDocumentation(INT index, BSTR* name, BSTR* help, DWORD* context,
                                       BSTR* file) {
  if (index == -1) {
    return CopyDocumentation(TheLibrary().name, TheLibrary().help, name, help, context, file);
  }
  if (index < 0 || static_cast<UINT>(index) >= DescribedType::Count())
    return TYPE_E_ELEMENTNOTFOUND;
  const DescribedType type = DescribedType::At(static_cast<UINT>(index));
  return CopyDocumentation(type.Name(), type.Help(), name, help, context, file);
}

HRESULT TableTypeLib::IsName(LPOLESTR name, ULONG, BOOL* is_name) {
  if (!name || !is_name) return E_INVALIDARG;
  *is_name = FALSE;
  for (UINT i = 0; i < DescribedType::Count(); ++i) {
    if (IsSameName(DescribedType::At(i).Name(), name)) *is_name = TRUE;
  }
  return S_OK;
}

HRESULT TableTypeLib::FindName(LPOLESTR name, ULONG, ITypeInfo** infos, MEMBERID* members,
                               USHORT* count) {
  if (!name || !infos || !members || !count) return E_INVALIDARG;
  USHORT found = 0;
  for (UINT i = 0; i < DescribedType::Count() && found < *count; ++i) {
    if (!IsSameName(DescribedType::At(i).Name(), name)) continue;
    const HRESULT result = GetTypeInfo(i, &infos[found]);
    if (FAILED(result)) {
      while (found > 0) std::exchange(infos[--found], nullptr)->Release();
      return result;
    }
    members[found++] = MEMBERID_NIL;
  }
  *count = found;
  return S_OK;
}

}  // namespace sab
