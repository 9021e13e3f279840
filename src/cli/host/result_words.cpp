#include "cli/host/result_words.h"

#include <sabxml/result_codes.h>

#include <cstdio>
#include <span>

namespace sabxml::cli {
namespace {

// Of the system; those of the server have words of their own.
constexpr sabxml::ResultWords kWords[] = {
    {0x80004001, "not implemented"},
    {0x80004002, "no such interface"},
    {0x80004003, "a pointer is missing"},
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

}  // namespace

std::string ResultDigits(HRESULT code) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(code));
  return text;
}

std::string ResultWords(HRESULT code) {
  for (const std::span<const sabxml::ResultWords> words :
       {std::span<const sabxml::ResultWords>(kResultWords),
        std::span<const sabxml::ResultWords>(kWords)}) {
    for (const sabxml::ResultWords& known : words) {
      if (known.code == static_cast<std::uint32_t>(code)) return known.words;
    }
  }
  return {};
}

}  // namespace sabxml::cli
