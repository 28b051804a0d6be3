#pragma once

#include <cstdint>

/// Makes waves of DSS dictations, standard play and long play. The library is built once for each
/// rate in samples per second: DssCodec8 (8000), DssCodec11 (11025), DssCodec12 (12000), DssCodec16
/// (16000), DssCodec22 (22050) and DssCodec44 (44100).
extern "C" {

/// Decodes the source and writes a wave of 16 bits and one channel; both paths end with a zero. 0
/// when the wave stands at the destination. What had that name before is replaced, so who wants it
/// kept moves it away first. The source is never changed. Any other result is a failure, a
/// ConversionCode, and leaves things as that header says. A recording of which a part is missing is
/// a failure, too, since whoever called deletes the source after a success.
///
/// Any thread; it returns when the work is done.
[[gnu::visibility("default")]] std::int32_t _WriteFile(const char* source, const char* destination);

/// The source is likely to be converted soon: where it is short, its wave is made in memory
/// meanwhile. It is read before this returns, and not kept open. Nothing follows but that
/// `_WriteFile` has less to do: it takes such a wave, once it is made, if the source still holds
/// the same bytes. What can not be read, or is no recording, is told by `_WriteFile` alone. Any
/// thread.
[[gnu::visibility("default")]] void _Prepare(const char* source);
}
