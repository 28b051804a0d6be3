#pragma once

#include <cstdint>

/// Key symbols of the display's keyboard. A key that writes a letter has that letter for its
/// symbol.
namespace tavlo::test::keys {

inline constexpr std::uint32_t kBackspace = 0xFF08;
inline constexpr std::uint32_t kTab = 0xFF09;
inline constexpr std::uint32_t kReturn = 0xFF0D;
inline constexpr std::uint32_t kEscape = 0xFF1B;
inline constexpr std::uint32_t kHome = 0xFF50;
inline constexpr std::uint32_t kLeft = 0xFF51;
inline constexpr std::uint32_t kUp = 0xFF52;
inline constexpr std::uint32_t kRight = 0xFF53;
inline constexpr std::uint32_t kDown = 0xFF54;
inline constexpr std::uint32_t kPageUp = 0xFF55;
inline constexpr std::uint32_t kEnd = 0xFF57;
inline constexpr std::uint32_t kMenu = 0xFF67;
inline constexpr std::uint32_t kF4 = 0xFFC1;
inline constexpr std::uint32_t kF5 = 0xFFC2;
inline constexpr std::uint32_t kShift = 0xFFE1;
inline constexpr std::uint32_t kControl = 0xFFE3;
inline constexpr std::uint32_t kAlt = 0xFFE9;

}  // namespace tavlo::test::keys
