#pragma once

#include <cstdint>

namespace sabxml {

// Result codes of the server's own family: what a document lacks. A host compares them with the
// HRESULT of a Generate or Load call.

inline constexpr std::uint32_t kInvalidApplication = 0x84000C00;
inline constexpr std::uint32_t kInvalidTemplate = 0x84000C01;
inline constexpr std::uint32_t kInvalidEnvironment = 0x84000C02;
inline constexpr std::uint32_t kInvalidModule = 0x84000C03;
inline constexpr std::uint32_t kInvalidCommand = 0x84000C04;
inline constexpr std::uint32_t kInvalidUserInterface = 0x84000C05;
inline constexpr std::uint32_t kInvalidCatalogue = kInvalidUserInterface;
inline constexpr std::uint32_t kDocumentNotLoaded = 0x84000C06;

/// What a code says, in English.
struct ResultWords {
  std::uint32_t code;
  const char* words;
};
inline constexpr ResultWords kResultWords[] = {
    {kInvalidApplication, "a required value of the application descriptor is missing or empty"},
    {kInvalidTemplate, "a required value or list of the template descriptor is missing or empty"},
    {kInvalidEnvironment,
     "a required value or list of the environment descriptor is missing or empty"},
    {kInvalidModule, "a required value or list of the module descriptor is missing or empty"},
    {kInvalidCommand, "a required value of the command descriptor is missing or empty"},
    {kInvalidUserInterface,
     "the user-interface descriptor or standards catalogue lacks what it must have"},
    {kDocumentNotLoaded, "the document could not be loaded"},
};
/// The same for codes of the component runtime that a caller may meet.
inline constexpr ResultWords kRuntimeResultWords[] = {
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

/// What a result code means, in English; an empty text for one that is not known here.
constexpr const char* WordsOf(std::uint32_t code) {
  for (const ResultWords& known : kResultWords) {
    if (known.code == code) return known.words;
  }
  for (const ResultWords& known : kRuntimeResultWords) {
    if (known.code == code) return known.words;
  }
  return "";
}

}  // namespace sabxml
