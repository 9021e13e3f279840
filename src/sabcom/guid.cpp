#include <sabxml/com.h>
#include <sys/random.h>

#include <cstring>

#include "text/ascii.h"

namespace {

// Positions of the dashes in "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}".
constexpr int kTextLength = 38;
constexpr bool IsDash(int position) {
  return position == 9 || position == 14 || position == 19 || position == 24;
}

// The order of the bytes in the text: the first three fields are numbers, the rest is a sequence.
void ToBytes(REFGUID guid, BYTE (&bytes)[16]) {
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<BYTE>(guid.Data1 >> (24 - 8 * i));
  for (int i = 0; i < 2; ++i) bytes[4 + i] = static_cast<BYTE>(guid.Data2 >> (8 - 8 * i));
  for (int i = 0; i < 2; ++i) bytes[6 + i] = static_cast<BYTE>(guid.Data3 >> (8 - 8 * i));
  std::memcpy(bytes + 8, guid.Data4, 8);
}

GUID FromBytes(const BYTE (&bytes)[16]) {
  GUID guid{};
  for (int i = 0; i < 4; ++i) guid.Data1 = guid.Data1 << 8 | bytes[i];
  guid.Data2 = static_cast<WORD>(bytes[4] << 8 | bytes[5]);
  guid.Data3 = static_cast<WORD>(bytes[6] << 8 | bytes[7]);
  std::memcpy(guid.Data4, bytes + 8, 8);
  return guid;
}

bool Parse(LPCOLESTR text, GUID& guid) {
  BYTE bytes[16] = {};
  int digits = 0;
  for (int i = 0; i < kTextLength; ++i) {
    const OLECHAR expected = i == 0 ? u'{' : i == kTextLength - 1 ? u'}' : IsDash(i) ? u'-' : u'\0';
    if (expected) {
      if (text[i] != expected) return false;
      continue;
    }
    const int digit = sab::HexDigitValue(text[i]);
    if (digit < 0) return false;
    bytes[digits / 2] = static_cast<BYTE>(bytes[digits / 2] << 4 | digit);
    ++digits;
  }
  if (text[kTextLength]) return false;
  guid = FromBytes(bytes);
  return true;
}

}  // namespace

int StringFromGUID2(REFGUID guid, LPOLESTR text, int capacity) {
  if (!text || capacity < kTextLength + 1) return 0;
  BYTE bytes[16];
  ToBytes(guid, bytes);
  int digits = 0;
  for (int i = 0; i < kTextLength; ++i) {
    if (i == 0 || i == kTextLength - 1) {
      text[i] = i == 0 ? u'{' : u'}';
    } else if (IsDash(i)) {
      text[i] = u'-';
    } else {
      const int nibble = digits % 2 == 0 ? bytes[digits / 2] >> 4 : bytes[digits / 2] & 0xF;
      text[i] = u"0123456789ABCDEF"[nibble];
      ++digits;
    }
  }
  text[kTextLength] = u'\0';
  return kTextLength + 1;
}

HRESULT StringFromCLSID(REFCLSID clsid, LPOLESTR* text) {
  if (!text) return E_INVALIDARG;
  *text = static_cast<LPOLESTR>(CoTaskMemAlloc((kTextLength + 1) * sizeof(OLECHAR)));
  if (!*text) return E_OUTOFMEMORY;
  StringFromGUID2(clsid, *text, kTextLength + 1);
  return S_OK;
}

HRESULT StringFromIID(REFIID iid, LPOLESTR* text) { return StringFromCLSID(iid, text); }

HRESULT CLSIDFromString(LPCOLESTR text, LPCLSID clsid) {
  if (!clsid) return E_INVALIDARG;
  *clsid = CLSID_NULL;
  if (!text) return S_OK;
  if (Parse(text, *clsid)) return S_OK;
  return text[0] == u'{' ? CO_E_CLASSSTRING : CLSIDFromProgID(text, clsid);
}

HRESULT IIDFromString(LPCOLESTR text, LPIID iid) {
  if (!iid) return E_INVALIDARG;
  *iid = IID_NULL;
  if (!text) return S_OK;
  return Parse(text, *iid) ? S_OK : CO_E_IIDSTRING;
}

HRESULT CoCreateGuid(GUID* guid) {
  if (!guid) return E_INVALIDARG;
  BYTE bytes[16];
  if (getrandom(bytes, sizeof bytes, 0) != static_cast<ssize_t>(sizeof bytes)) return E_UNEXPECTED;
  bytes[6] = static_cast<BYTE>((bytes[6] & 0x0F) | 0x40);  // version 4, RFC 4122
  bytes[8] = static_cast<BYTE>((bytes[8] & 0x3F) | 0x80);
  *guid = FromBytes(bytes);
  return S_OK;
}
