// Stretches the beginning of a document with one engine, in half-second blocks as the pump feeds,
// and prints one line of figures and one of the frames at which the output of each block ends:
//
//     bench_stretch ENGINE PERCENT SECONDS DOCUMENT OUTPUT [OFFLINE]
//
// OUTPUT takes the first channel as raw 32-bit floats, and OUTPUT.in the document's. With anything
// for OFFLINE the document is one block. The figures, with processor time alone:
//
//     cpu      seconds for all blocks          slowest  milliseconds of the dearest block
//     start    milliseconds of a reset and the two blocks that a start needs
//     held     milliseconds of the document that are in and not out, at the utmost
//     owed     frames that the output should have    frames  those that it has
//     reset    largest difference between the first blocks and the same ones after a reset

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

#include "engines.h"
#include "platform/ffmpeg/ffmpeg_audio_file.h"

namespace {

using tavlo::bench::Engine;
using tavlo::bench::Format;
using Values = std::vector<float>;

constexpr std::size_t kStartBlocks = 2;
constexpr std::size_t kComparedBlocks = 4;

double ProcessorSeconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

std::vector<Values> ReadBlocks(tavlo::playback::AudioFile& file, int seconds, bool whole) {
  const int length = whole ? seconds * file.SampleRate() : file.SampleRate() / 2;
  std::vector<Values> blocks;
  for (int count = whole ? 1 : 2 * seconds; count > 0; --count) {
    Values values = file.ReadArray(length).values;
    if (values.empty()) break;
    blocks.push_back(std::move(values));
  }
  return blocks;
}

void WriteFirstChannel(const std::string& path, const std::vector<Values>& blocks, int channels) {
  std::ofstream file(path, std::ios::binary);
  for (const Values& block : blocks) {
    for (std::size_t i = 0; i < block.size(); i += static_cast<std::size_t>(channels)) {
      file.write(reinterpret_cast<const char*>(&block[i]), sizeof(float));
    }
  }
}

struct Run {
  std::vector<Values> out;
  double cpu = 0;
  double slowest = 0;
  double start = 0;
  double held = 0;  ///< In frames of the document.
  double owed = 0;
  double frames = 0;
};

Run Stretch(Engine& engine, const std::vector<Values>& blocks, const Format& format) {
  Run run;
  double in = 0;
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    const bool last = i + 1 == blocks.size();
    const double begin = ProcessorSeconds();
    run.out.push_back(engine.Process(blocks[i], last));
    const double used = ProcessorSeconds() - begin;
    run.cpu += used;
    run.slowest = std::max(run.slowest, used);
    if (i < kStartBlocks) run.start += used;
    in += static_cast<double>(blocks[i].size()) / format.channels;
    run.frames += static_cast<double>(run.out.back().size()) / format.channels;
    if (!last) run.held = std::max(run.held, in - run.frames * format.speed);
  }
  run.owed = std::round(in / format.speed);
  // What a library adds at the end is silence, and the player would cut it.
  if (const double surplus = run.frames - run.owed; surplus > 0) {
    Values& end = run.out.back();
    const auto cut = static_cast<std::size_t>(surplus) * static_cast<std::size_t>(format.channels);
    end.resize(end.size() - std::min(cut, end.size()));
    run.frames = run.owed;
  }
  return run;
}

/// The largest difference between two runs' first blocks; 1 when they are not equally long.
double Difference(const Run& one, const Run& other, std::size_t blocks) {
  double most = 0;
  for (std::size_t i = 0; i < blocks; ++i) {
    if (one.out[i].size() != other.out[i].size()) return 1;
    for (std::size_t k = 0; k < one.out[i].size(); ++k) {
      most = std::max(most, std::abs(static_cast<double>(one.out[i][k]) - other.out[i][k]));
    }
  }
  return most;
}

void Print(const Run& run, const Format& format, double reset, double difference) {
  std::printf("rate=%d seconds=%f cpu=%f slowest=%f start=%f held=%f owed=%f frames=%f reset=%g\n",
              format.rate, run.owed * format.speed / format.rate, run.cpu, run.slowest * 1000,
              (run.start + reset) * 1000, run.held * 1000 / format.rate, run.owed, run.frames,
              difference);
  std::printf("borders");
  std::size_t frame = 0;
  for (const Values& block : run.out) {
    frame += block.size() / static_cast<std::size_t>(format.channels);
    std::printf(" %zu", frame);
  }
  std::printf("\n");
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 6) {
    std::fprintf(stderr, "usage: %s ENGINE PERCENT SECONDS DOCUMENT OUTPUT [OFFLINE]\n",
                 arguments[0]);
    return 2;
  }
  tavlo::platform::FfmpegAudioFile file;
  if (file.OpenFile(arguments[4]) != tavlo::playback::OpenResult::Opened) {
    std::fprintf(stderr, "%s cannot be played\n", arguments[4]);
    return 1;
  }
  const bool offline = count > 6;
  const Format format{file.SampleRate(), file.ChannelCount(), std::atof(arguments[2]) / 100};
  const std::vector<Values> blocks = ReadBlocks(file, std::atoi(arguments[3]), offline);
  const double begin = ProcessorSeconds();
  const std::unique_ptr<Engine> engine = tavlo::bench::MakeEngine(arguments[1], format);
  const double made = ProcessorSeconds() - begin;
  if (!engine || blocks.empty()) {
    std::fprintf(stderr, "%s: no such engine, or no sound\n", arguments[1]);
    return 1;
  }
  Run run = Stretch(*engine, blocks, format);
  const std::string output = arguments[5];
  WriteFirstChannel(output, run.out, format.channels);
  WriteFirstChannel(output + ".in", blocks, format.channels);
  double reset = made;
  double difference = 0;
  if (!offline && blocks.size() > kComparedBlocks) {
    const double before = ProcessorSeconds();
    engine->Reset();
    reset = ProcessorSeconds() - before;
    // One block more than is compared, since the last one ends the run.
    const std::vector<Values> again(blocks.begin(), blocks.begin() + kComparedBlocks + 1);
    difference = Difference(run, Stretch(*engine, again, format), kComparedBlocks);
  }
  Print(run, format, reset, difference);
  return 0;
}
