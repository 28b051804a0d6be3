// Measures what a list scan costs in the audio library: opens every file of a folder and reads its
// length, as often as is asked, and prints the seconds of each pass. The first pass measures, the
// others find the figures remembered.
//
//     bench_scan_files FOLDER [PASSES]

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/ffmpeg/ffmpeg_audio_file.h"

namespace {

struct Pass {
  double seconds = 0;
  int playable = 0;
  std::int64_t milliseconds = 0;
};

Pass Measure(tavlo::playback::AudioFile& file, const std::vector<std::string>& paths) {
  Pass pass;
  const auto begin = std::chrono::steady_clock::now();
  for (const std::string& path : paths) {
    if (file.OpenFile(path) != tavlo::playback::OpenResult::Opened) continue;
    ++pass.playable;
    pass.milliseconds += file.LengthMilliseconds();
  }
  file.CloseFile();
  const std::chrono::duration<double> length = std::chrono::steady_clock::now() - begin;
  pass.seconds = length.count();
  return pass;
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) {
    std::fprintf(stderr, "usage: %s FOLDER [PASSES]\n", arguments[0]);
    return 2;
  }
  std::error_code failure;
  std::vector<std::string> paths;
  for (const auto& entry : std::filesystem::directory_iterator(arguments[1], failure))
    paths.push_back(entry.path().string());
  if (failure) {
    std::fprintf(stderr, "%s: %s\n", arguments[1], failure.message().c_str());
    return 1;
  }
  const int passes = count > 2 ? std::atoi(arguments[2]) : 2;
  tavlo::platform::FfmpegAudioFile file;
  for (int i = 0; i < passes; ++i) {
    const Pass pass = Measure(file, paths);
    std::printf("%s: %.6f s, %zu files, %d playable, %lld ms of sound\n",
                i == 0 ? "first" : "again", pass.seconds, paths.size(), pass.playable,
                static_cast<long long>(pass.milliseconds));
  }
  return 0;
}
