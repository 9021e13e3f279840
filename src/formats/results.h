#pragma once

#include <cstdint>

namespace sab::formats {

/// Result codes of the server's own family: what a document lacks.
inline constexpr std::uint32_t kInvalidApplication = 0x84000C00;
inline constexpr std::uint32_t kInvalidTemplate = 0x84000C01;
inline constexpr std::uint32_t kInvalidEnvironment = 0x84000C02;
inline constexpr std::uint32_t kInvalidModule = 0x84000C03;
inline constexpr std::uint32_t kInvalidCommand = 0x84000C04;
inline constexpr std::uint32_t kInvalidUserInterface = 0x84000C05;
inline constexpr std::uint32_t kDocumentNotLoaded = 0x84000C06;

}  // namespace sab::formats
