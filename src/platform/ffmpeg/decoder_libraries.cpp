#include "platform/ffmpeg/decoder_libraries.h"

#include <new>

#include "platform/ffmpeg/libav_calls.h"

namespace tavlo::platform {

void DecoderLibraries::LoadBeside() {
  thread_ = std::jthread([] {
    try {
      Libav();
    } catch (const std::bad_alloc&) {
      // The first document that needs them tries again.
    }
  });
}

}  // namespace tavlo::platform
