#include <sabxml/com.h>
#include <sabxml/variant_size.h>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <utility>
#include <vector>

namespace {

// An array's memory: what the descriptor has no member for, and then the descriptor.
struct Block {
  ULONGLONG type;
  SAFEARRAY* next;  // of those that are being destroyed
  SAFEARRAY array;
};

Block* BlockOf(SAFEARRAY* array) {
  return reinterpret_cast<Block*>(reinterpret_cast<char*>(array) - offsetof(Block, array));
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

// The array that an element is or null; such an element owns what may be nested to any depth.
SAFEARRAY* NestedArray(VARTYPE type, const void* element) {
  if (type != VT_VARIANT) return nullptr;
  const auto& variant = *static_cast<const VARIANT*>(element);
  return (variant.vt & (VT_ARRAY | VT_BYREF)) == VT_ARRAY ? variant.parray : nullptr;
}

// The place is empty before what it held is released, which may run foreign code.
void FreeElement(VARTYPE type, void* element) {
  if (type == VT_BSTR) {
    SysFreeString(std::exchange(*static_cast<BSTR*>(element), nullptr));
  } else if (type == VT_UNKNOWN || type == VT_DISPATCH) {
    IUnknown* const object = std::exchange(*static_cast<IUnknown**>(element), nullptr);
    if (object) object->Release();
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

// Frees elements and adds the arrays among them to those that are being destroyed. One that is
// locked remains with who locked it.
void FreeElements(SAFEARRAY* array, ULONG from, SAFEARRAY*& dying) {
  const VARTYPE type = TypeOf(array);
  for (ULONG i = from; i < array->rgsabound[0].cElements; ++i) {
    void* const element = ElementAt(array, i);
    SAFEARRAY* const nested = NestedArray(type, element);
    if (!nested) {
      FreeElement(type, element);
      continue;
    }
    VariantInit(static_cast<VARIANT*>(element));
    if (nested->cLocks > 0) continue;
    BlockOf(nested)->next = std::exchange(dying, nested);
  }
}

// Without recursion: arrays of arrays may be nested deeper than the stack is.
void Destroy(SAFEARRAY* dying) {
  while (SAFEARRAY* const array = dying) {
    dying = BlockOf(array)->next;
    if (array->pvData) {
      FreeElements(array, 0, dying);
      std::free(array->pvData);
    }
    std::free(BlockOf(array));
  }
}

// Whether every index is a LONG.
bool AreValid(LONG lower_bound, ULONG count) {
  const LONGLONG upper_bound = LONGLONG{lower_bound} + count - 1;
  return std::in_range<LONG>(upper_bound);
}

HRESULT Locate(SAFEARRAY* array, const LONG* indices, void** element) {
  if (!array || !indices || !element || !array->pvData) return E_INVALIDARG;
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
  const auto size = static_cast<ULONG>(sabxml::SizeOfValue(type));
  if (size == 0 || count > std::numeric_limits<ULONG>::max() / size ||
      !AreValid(lower_bound, count)) {
    return nullptr;
  }
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
    SAFEARRAY* nested = nullptr;
    FreeElements(array, 0, nested);
    std::free(std::exchange(array->pvData, nullptr));
    Destroy(nested);
  }
  return S_OK;
}

HRESULT SafeArrayDestroy(SAFEARRAY* array) {
  if (!array) return S_OK;
  if (array->cLocks > 0) return DISP_E_ARRAYISLOCKED;
  BlockOf(array)->next = nullptr;
  Destroy(array);
  return S_OK;
}

HRESULT SafeArrayCopy(SAFEARRAY* source, SAFEARRAY** copy) try {
  if (!copy) return E_INVALIDARG;
  *copy = nullptr;
  if (!source) return S_OK;
  // Arrays that are still to be copied, and where each copy goes. Without recursion, as above.
  struct Task {
    SAFEARRAY* source;
    SAFEARRAY** place;
  };
  SAFEARRAY* root = nullptr;
  std::vector<Task> tasks{{source, &root}};
  HRESULT result = S_OK;
  try {
    while (!tasks.empty() && SUCCEEDED(result)) {
      const Task task = tasks.back();
      tasks.pop_back();
      const VARTYPE type = TypeOf(task.source);
      const SAFEARRAYBOUND bound = task.source->rgsabound[0];
      SAFEARRAY* const made = SafeArrayCreateVector(type, bound.lLbound, bound.cElements);
      if (!made) result = E_OUTOFMEMORY;
      *task.place = made;
      if (!task.source->pvData) continue;
      for (ULONG i = 0; i < bound.cElements && SUCCEEDED(result); ++i) {
        const void* const from = ElementAt(task.source, i);
        void* const to = ElementAt(made, i);
        if (SAFEARRAY* const nested = NestedArray(type, from)) {
          auto& variant = *static_cast<VARIANT*>(to);
          variant.vt = static_cast<const VARIANT*>(from)->vt;
          tasks.push_back({nested, &variant.parray});
        } else {
          result = CopyElement(type, task.source->cbElements, from, to);
        }
      }
    }
  } catch (const std::bad_alloc&) {
    result = E_OUTOFMEMORY;
  }
  if (FAILED(result)) {
    SafeArrayDestroy(root);
    return result;
  }
  *copy = root;
  return S_OK;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

HRESULT SafeArrayRedim(SAFEARRAY* array, SAFEARRAYBOUND* bound) {
  if (!array || !bound) return E_INVALIDARG;
  if (array->cLocks > 0) return DISP_E_ARRAYISLOCKED;
  if (!array->pvData || !AreValid(bound->lLbound, bound->cElements)) return E_INVALIDARG;
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
    SAFEARRAY* nested = nullptr;
    FreeElements(array, wanted, nested);
    Destroy(nested);
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
  void* const target = sabxml::PlaceOfValue(copy, type);
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
