#pragma once

#include <sabxml/com.h>
#include <sabxml/result_codes.h>

#include <cstdio>
#include <span>
#include <string>

namespace sab {

/// What the codes of the component runtime say; those of the server have words of their own.
inline constexpr sabxml::ResultWords kRuntimeResultWords[] = {
    {0x80004001, "not implemented"},
    {0x80004002, "no such interface"},
    {0x80004003, "a pointer is null: pass the address of a variable for every result"},
    {0x80004005, "unspecified failure"},
    {0x8000FFFF, "unexpected failure"},
    {0x80020003, "no such member"},
    {0x80020005, "a value is of the wrong type"},
    {0x80020006, "no such name"},
    {0x8002000E, "wrong number of arguments"},
    {0x80029C4A, "the type library cannot be loaded"},
    {0x80040111, "the library does not have this class"},
    {0x80040154, "the class is not registered"},
    {0x800401F3, "not the name of a class"},
    {0x80070002, "file not found"},
    {0x80070005, "access denied"},
    {0x8007000E, "out of memory"},
    {0x80070057, "an argument is not valid"},
    {0x8007007E, "the library or one that it needs is not found"},
};

/// "0x84000C06"
inline std::string ResultDigits(HRESULT code) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(code));
  return text;
}

/// What a result code of the server or of the component runtime means; empty for an unknown one.
inline std::string ResultWords(HRESULT code) {
  using Table = std::span<const sabxml::ResultWords>;
  for (const Table table : {Table(sabxml::kResultWords), Table(kRuntimeResultWords)}) {
    for (const sabxml::ResultWords& known : table) {
      if (known.code == static_cast<std::uint32_t>(code)) return known.words;
    }
  }
  return {};
}

}  // namespace sab
