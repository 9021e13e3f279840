#include "node_handle.h"

#include "base/com_error.h"

namespace sab::backend {
namespace {

constexpr DWORD kExecutable =
    PAGE_EXECUTE | PAGE_EXECUTE_READ | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
constexpr DWORD kReadable = PAGE_READONLY | PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READ |
                            PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;

// Whether a pointer lies there in memory with one of the protections.
bool IsIn(DWORD protections, ULONG_PTR address) {
  MEMORY_BASIC_INFORMATION memory;
  return address % alignof(void*) == 0 &&
         VirtualQuery(reinterpret_cast<void*>(address), &memory, sizeof memory) != 0 &&
         memory.State == MEM_COMMIT && (memory.Protect & PAGE_GUARD) == 0 &&
         (memory.Protect & protections) != 0;
}

// Whether there is a table of functions at the start, as every object of the component runtime has.
bool LooksLikeObject(ULONG_PTR address) {
  if (!IsIn(kReadable, address)) return false;
  const ULONG_PTR table = *reinterpret_cast<const ULONG_PTR*>(address);
  if (!IsIn(kReadable, table)) return false;
  constexpr ULONG_PTR kAligned = ~static_cast<ULONG_PTR>(alignof(void*) - 1);
  return IsIn(kExecutable, *reinterpret_cast<const ULONG_PTR*>(table) & kAligned);
}

}  // namespace

Element ElementOfHandle(ULONG_PTR handle) {
  ComPtr<IXMLDOMNode> node;
  if (!LiveHandle::IsLive(handle) && !LooksLikeObject(handle)) {
    throw ComError(E_INVALIDARG, "The handle of a node is the address of no object.");
  }
  auto* const object = reinterpret_cast<IUnknown*>(handle);
  if (FAILED(object->QueryInterface(IID_IXMLDOMNode, node.PutVoid()))) {
    throw ComError(E_INVALIDARG, "The handle of a node is the address of no IXMLDOMNode.");
  }
  return {nullptr, std::move(node)};
}

}  // namespace sab::backend
