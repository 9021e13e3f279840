#include "cli/host/result_words.h"

#include <cstdio>

namespace sabxml::cli {
namespace {

constexpr struct {
  unsigned code;
  const char* words;
} kWords[] = {
    {0x84000C00, "a required value of the application descriptor is missing or empty"},
    {0x84000C01, "a required value or list of the template descriptor is missing or empty"},
    {0x84000C02, "a required value or list of the environment descriptor is missing or empty"},
    {0x84000C03, "a required value or list of the module descriptor is missing or empty"},
    {0x84000C04, "a required value of the command descriptor is missing or empty"},
    {0x84000C05, "the user-interface descriptor or standards catalogue lacks what it must have"},
    {0x84000C06, "the document could not be loaded"},
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
  for (const auto& known : kWords) {
    if (known.code == static_cast<unsigned>(code)) return known.words;
  }
  return {};
}

}  // namespace sabxml::cli
