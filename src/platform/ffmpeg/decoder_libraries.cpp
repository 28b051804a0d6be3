#include "platform/ffmpeg/decoder_libraries.h"

#include "platform/ffmpeg/libav_calls.h"

namespace tavlo::platform {

void DecoderLibraries::LoadBeside() { thread_ = std::jthread(Libav); }

}  // namespace tavlo::platform
