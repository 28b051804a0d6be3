#pragma once

#include <cstdint>

/// Makes waves of telephone recordings: mu-law, one channel, 8000 Hz, without a header.
extern "C" {

/// Puts a wave header of format 7 in front of the bytes of a source and writes the wave; both paths
/// end with a zero. 0 when the wave stands at the destination; 5 when the source had a wave header
/// already (RIFF, RIFX or RF64) and stands there as it was. A source without a byte gives a wave
/// without sound. What had the destination's name before is replaced, so who wants it kept moves it
/// away first. The source is never changed. Any other result is a failure, a ConversionCode, and
/// leaves things as that header says. Any thread; it returns when the work is done, and no call
/// knows of another.
[[gnu::visibility("default")]] std::uint8_t AddHdr(const char* source, const char* destination);
}
