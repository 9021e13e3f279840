#include <sabxml/com.h>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace {

// An array's memory: its type, which the descriptor has no member for, and then the descriptor.
struct Block {
  ULONGLONG type;
  SAFEARRAY array;
};

Block* BlockOf(SAFEARRAY* array) {
  return reinterpret_cast<Block*>(reinterpret_cast<char*>(array) - offsetof(Block, array));
}

ULONG SizeOf(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      return 8;
    case VT_BSTR:
    case VT_UNKNOWN:
    case VT_DISPATCH:
      return sizeof(void*);
    case VT_VARIANT:
      return sizeof(VARIANT);
    case VT_DECIMAL:
      return sizeof(DECIMAL);
    default:
      return 0;
  }
}

USHORT FeaturesOf(VARTYPE type) {
  switch (type) {
    case VT_BSTR:
      return FADF_HAVEVARTYPE | FADF_BSTR;
    case VT_UNKNOWN:
      return FADF_HAVEIID | FADF_UNKNOWN;
    case VT_DISPATCH:
      return FADF_HAVEIID | FADF_DISPATCH;
    case VT_VARIANT:
      return FADF_HAVEVARTYPE | FADF_VARIANT;
    default:
      return FADF_HAVEVARTYPE;
  }
}

VARTYPE TypeOf(SAFEARRAY* array) { return static_cast<VARTYPE>(BlockOf(array)->type); }

char* ElementAt(SAFEARRAY* array, ULONG index) {
  return static_cast<char*>(array->pvData) + std::size_t{index} * array->cbElements;
}

void FreeElement(VARTYPE type, void* element) {
  if (type == VT_BSTR) {
    SysFreeString(*static_cast<BSTR*>(element));
  } else if (type == VT_UNKNOWN || type == VT_DISPATCH) {
    if (IUnknown* const object = *static_cast<IUnknown**>(element)) object->Release();
  } else if (type == VT_VARIANT) {
    VariantClear(static_cast<VARIANT*>(element));
  }
}

// Writes an independent copy to a place that holds nothing.
HRESULT CopyElement(VARTYPE type, ULONG size, const void* from, void* to) {
  if (type == VT_BSTR) {
    const BSTR text = *static_cast<const BSTR*>(from);
    const BSTR copy =
        text ? SysAllocStringByteLen(reinterpret_cast<const char*>(text), SysStringByteLen(text))
             : nullptr;
    if (text && !copy) return E_OUTOFMEMORY;
    *static_cast<BSTR*>(to) = copy;
  } else if (type == VT_VARIANT) {
    VARIANT copy;
    VariantInit(&copy);
    const HRESULT result = VariantCopy(&copy, static_cast<const VARIANT*>(from));
    if (FAILED(result)) return result;
    *static_cast<VARIANT*>(to) = copy;
  } else {
    std::memcpy(to, from, size);
    if (type == VT_UNKNOWN || type == VT_DISPATCH) {
      if (IUnknown* const object = *static_cast<IUnknown**>(to)) object->AddRef();
    }
  }
  return S_OK;
}

void FreeElements(SAFEARRAY* array, ULONG from) {
  for (ULONG i = from; i < array->rgsabound[0].cElements; ++i) {
    FreeElement(TypeOf(array), ElementAt(array, i));
  }
}

HRESULT Locate(SAFEARRAY* array, const LONG* indices, void** element) {
  if (!array || !indices || !element) return E_INVALIDARG;
  const LONGLONG index = LONGLONG{indices[0]} - array->rgsabound[0].lLbound;
  if (index < 0 || index >= array->rgsabound[0].cElements) return DISP_E_BADINDEX;
  *element = ElementAt(array, static_cast<ULONG>(index));
  return S_OK;
}

}  // namespace

SAFEARRAY* SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds) {
  if (dimensions != 1 || !bounds) return nullptr;
  return SafeArrayCreateVector(type, bounds[0].lLbound, bounds[0].cElements);
}

SAFEARRAY* SafeArrayCreateVector(VARTYPE type, LONG lower_bound, ULONG count) {
  const ULONG size = SizeOf(type);
  if (size == 0 || count > std::numeric_limits<ULONG>::max() / size) return nullptr;
  auto* const block = static_cast<Block*>(std::calloc(1, sizeof(Block)));
  // An empty array has data too, so that locking it gives an address.
  void* const data = std::calloc(count ? count : 1, size);
  if (!block || !data) {
    std::free(block);
    std::free(data);
    return nullptr;
  }
  block->type = type;
  block->array.cDims = 1;
  block->array.fFeatures = FeaturesOf(type);
  block->array.cbElements = size;
  block->array.pvData = data;
  block->array.rgsabound[0] = {count, lower_bound};
  return &block->array;
}

HRESULT SafeArrayDestroyData(SAFEARRAY* array) {
  if (!array) return E_INVALIDARG;
  if (array->cLocks > 0) return DISP_E_ARRAYISLOCKED;
  if (array->pvData) {
    FreeElements(array, 0);
    std::free(std::exchange(array->pvData, nullptr));
  }
  return S_OK;
}

HRESULT SafeArrayDestroy(SAFEARRAY* array) {
  if (!array) return S_OK;
  const HRESULT result = SafeArrayDestroyData(array);
  if (SUCCEEDED(result)) std::free(BlockOf(array));
  return result;
}

HRESULT SafeArrayCopy(SAFEARRAY* source, SAFEARRAY** copy) {
  if (!copy) return E_INVALIDARG;
  *copy = nullptr;
  if (!source) return S_OK;
  const SAFEARRAYBOUND& bound = source->rgsabound[0];
  SAFEARRAY* const made = SafeArrayCreateVector(TypeOf(source), bound.lLbound, bound.cElements);
  if (!made) return E_OUTOFMEMORY;
  for (ULONG i = 0; i < bound.cElements; ++i) {
    const HRESULT result =
        CopyElement(TypeOf(source), source->cbElements, ElementAt(source, i), ElementAt(made, i));
    if (FAILED(result)) {
      SafeArrayDestroy(made);
      return result;
    }
  }
  *copy = made;
  return S_OK;
}

HRESULT SafeArrayRedim(SAFEARRAY* array, SAFEARRAYBOUND* bound) {
  if (!array || !bound) return E_INVALIDARG;
  if (array->cLocks > 0) return DISP_E_ARRAYISLOCKED;
  const ULONG had = array->rgsabound[0].cElements;
  const ULONG wanted = bound->cElements;
  if (wanted > std::numeric_limits<ULONG>::max() / array->cbElements) return E_OUTOFMEMORY;
  const std::size_t size = array->cbElements;
  if (wanted > had) {
    void* const data = std::realloc(array->pvData, wanted * size);
    if (!data) return E_OUTOFMEMORY;
    std::memset(static_cast<char*>(data) + had * size, 0, (wanted - had) * size);
    array->pvData = data;
  } else {
    FreeElements(array, wanted);
    if (void* const data = std::realloc(array->pvData, (wanted ? wanted : 1) * size)) {
      array->pvData = data;
    }
  }
  array->rgsabound[0] = *bound;
  return S_OK;
}

HRESULT SafeArrayLock(SAFEARRAY* array) {
  if (!array) return E_INVALIDARG;
  if (array->cLocks == std::numeric_limits<USHORT>::max()) return E_UNEXPECTED;
  ++array->cLocks;
  return S_OK;
}

HRESULT SafeArrayUnlock(SAFEARRAY* array) {
  if (!array) return E_INVALIDARG;
  if (array->cLocks == 0) return E_UNEXPECTED;
  --array->cLocks;
  return S_OK;
}

HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data) {
  if (!array || !data) return E_INVALIDARG;
  const HRESULT result = SafeArrayLock(array);
  *data = SUCCEEDED(result) ? array->pvData : nullptr;
  return result;
}

HRESULT SafeArrayUnaccessData(SAFEARRAY* array) { return SafeArrayUnlock(array); }

UINT SafeArrayGetDim(SAFEARRAY* array) { return array ? array->cDims : 0; }

UINT SafeArrayGetElemsize(SAFEARRAY* array) { return array ? array->cbElements : 0; }

HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
  if (!array || !bound) return E_INVALIDARG;
  if (dimension != 1) return DISP_E_BADINDEX;
  *bound = array->rgsabound[0].lLbound;
  return S_OK;
}

HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
  if (!array || !bound) return E_INVALIDARG;
  if (dimension != 1) return DISP_E_BADINDEX;
  const SAFEARRAYBOUND& own = array->rgsabound[0];
  *bound = static_cast<LONG>(LONGLONG{own.lLbound} + own.cElements - 1);
  return S_OK;
}

HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* type) {
  if (!array || !type) return E_INVALIDARG;
  *type = TypeOf(array);
  return S_OK;
}

HRESULT SafeArrayGetElement(SAFEARRAY* array, LONG* indices, void* element) {
  void* place = nullptr;
  const HRESULT result = Locate(array, indices, &place);
  if (FAILED(result)) return result;
  if (!element) return E_INVALIDARG;
  return CopyElement(TypeOf(array), array->cbElements, place, element);
}

HRESULT SafeArrayPutElement(SAFEARRAY* array, LONG* indices, void* element) {
  void* place = nullptr;
  const HRESULT located = Locate(array, indices, &place);
  if (FAILED(located)) return located;
  const VARTYPE type = TypeOf(array);
  const bool is_pointer = type == VT_BSTR || type == VT_UNKNOWN || type == VT_DISPATCH;
  if (!element && !is_pointer) return E_INVALIDARG;
  // The copy comes first: it may be the element itself that is put.
  VARIANT copy{};
  void* const fresh = type == VT_VARIANT ? static_cast<void*>(&copy) : &copy.byref;
  DECIMAL decimal{};
  void* const target = type == VT_DECIMAL ? static_cast<void*>(&decimal) : fresh;
  const HRESULT result = CopyElement(type, array->cbElements,
                                     is_pointer ? static_cast<void*>(&element) : element, target);
  if (FAILED(result)) return result;
  FreeElement(type, place);
  std::memcpy(place, target, array->cbElements);
  return S_OK;
}

HRESULT SafeArrayPtrOfIndex(SAFEARRAY* array, LONG* indices, void** element) {
  return Locate(array, indices, element);
}
