#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "platform/ffmpeg/plain_file.h"

/// Numbers and marks out of untrusted bytes. The caller has made sure that they are there.
namespace tavlo::platform {

inline std::uint16_t LittleEndian16(const std::uint8_t* at) {
  return static_cast<std::uint16_t>(at[0] | at[1] << 8);
}

inline std::uint32_t LittleEndian32(const std::uint8_t* at) {
  return LittleEndian16(at) | static_cast<std::uint32_t>(LittleEndian16(at + 2)) << 16;
}

inline std::uint64_t LittleEndian64(const std::uint8_t* at) {
  return LittleEndian32(at) | static_cast<std::uint64_t>(LittleEndian32(at + 4)) << 32;
}

inline std::uint32_t BigEndian32(const std::uint8_t* at) {
  return static_cast<std::uint32_t>(at[0]) << 24 | static_cast<std::uint32_t>(at[1]) << 16 |
         static_cast<std::uint32_t>(at[2]) << 8 | at[3];
}

/// Whether `mark` stands at `offset`; false when the bytes end before.
inline bool HasMark(Bytes bytes, std::size_t offset, std::string_view mark) {
  return bytes.size() >= offset + mark.size() &&
         std::memcmp(bytes.data() + offset, mark.data(), mark.size()) == 0;
}

}  // namespace tavlo::platform
