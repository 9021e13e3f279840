#include <sabxml/com.h>

#include <cstring>
#include <limits>
#include <utility>

#include "sabcom/allocation_filter.h"
#include "sabcom/small_blocks.h"

namespace {

// A string's memory: the allocated size, the length in bytes, the text, a NUL. The text is
// aligned for 8 bytes. Clients have been seen to cut a string by changing its length, so that says
// nothing of the memory.
constexpr std::size_t kPrefix = 2 * sizeof(UINT);
constexpr UINT kMaxBytes = std::numeric_limits<UINT>::max() - 64;

char* MemoryOf(BSTR string) { return reinterpret_cast<char*>(string) - kPrefix; }

BSTR Allocate(UINT bytes) {
  if (bytes > kMaxBytes || !sabcom::MayAllocate(bytes)) return nullptr;
  const UINT size = static_cast<UINT>(kPrefix + sizeof(OLECHAR)) + bytes;
  auto* const memory = static_cast<char*>(sabcom::AllocateBlock(size));
  if (!memory) return nullptr;
  std::memcpy(memory, &size, sizeof size);
  std::memcpy(memory + sizeof size, &bytes, sizeof bytes);
  char* const text = memory + kPrefix;
  std::memset(text + bytes, 0, sizeof(OLECHAR));
  return reinterpret_cast<BSTR>(text);
}

UINT LengthOf(const OLECHAR* text) {
  const OLECHAR* end = text;
  while (*end) ++end;
  return static_cast<UINT>(end - text);
}

}  // namespace

BSTR SysAllocString(const OLECHAR* text) {
  return text ? SysAllocStringLen(text, LengthOf(text)) : nullptr;
}

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) {
  if (length > kMaxBytes / sizeof(OLECHAR)) return nullptr;
  const BSTR string = Allocate(length * static_cast<UINT>(sizeof(OLECHAR)));
  if (string && text) std::memcpy(string, text, length * sizeof(OLECHAR));
  return string;
}

BSTR SysAllocStringByteLen(const char* bytes, UINT length) {
  const BSTR string = Allocate(length);
  if (string && bytes) std::memcpy(string, bytes, length);
  return string;
}

INT SysReAllocString(BSTR* string, const OLECHAR* text) {
  return SysReAllocStringLen(string, text, text ? LengthOf(text) : 0);
}

INT SysReAllocStringLen(BSTR* string, const OLECHAR* text, UINT length) {
  if (!string) return FALSE;
  const BSTR replacement = SysAllocStringLen(text, length);
  if (!replacement) return FALSE;
  SysFreeString(std::exchange(*string, replacement));
  return TRUE;
}

void SysFreeString(BSTR string) {
  if (!string) return;
  char* const memory = MemoryOf(string);
  UINT size = 0;
  std::memcpy(&size, memory, sizeof size);
  sabcom::FreeBlock(memory, size);
}

UINT SysStringByteLen(BSTR string) {
  UINT bytes = 0;
  if (string) std::memcpy(&bytes, reinterpret_cast<char*>(string) - sizeof(UINT), sizeof bytes);
  return bytes;
}

UINT SysStringLen(BSTR string) {
  return SysStringByteLen(string) / static_cast<UINT>(sizeof(OLECHAR));
}
