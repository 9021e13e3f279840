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

}  // namespace sabxml
