#include "support/sound_recorder.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "support/plain_loop.h"

namespace tavlo::test {
namespace {

using base::operator""ms;

constexpr int kManyTries = 2400;

}  // namespace

SoundRecorder::~SoundRecorder() {
  recorder_.Kill();
  if (reader_.joinable()) reader_.join();
  if (pipe_ >= 0) close(pipe_);
}

bool SoundRecorder::Start() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return false;
  pipe_ = ends[0];
  const bool started =
      recorder_.Start({"parec", "--device=deck.monitor", "--format=float32le", "--rate=48000",
                       "--channels=1", "--channel-map=front-left", "--latency-msec=10", "--raw"},
                      ends[1]);
  close(ends[1]);
  if (!started) return false;
  reader_ = std::thread([this] { Read(); });
  // Whatever the device had rendered before it had a reader runs out in this time.
  return Pass(0.4);
}

bool SoundRecorder::Pass(double seconds) const {
  const double end = Seconds() + seconds;
  double before = Seconds();
  for (int tries = 0; tries < kManyTries && Seconds() < end; ++tries) {
    Sleep(10ms);
    const double now = Seconds();
    if (now > before) tries = 0;
    before = now;
  }
  return Seconds() >= end;
}

double SoundRecorder::Seconds() const {
  const std::lock_guard hold(lock_);
  return sound_.Seconds();
}

Sound SoundRecorder::Since(double seconds) const {
  const std::lock_guard hold(lock_);
  return sound_.Between(seconds, sound_.Seconds());
}

void SoundRecorder::Read() {
  std::array<float, 1024> piece;
  std::size_t held = 0;  // Bytes, since the pipe may cut a sample in two.
  auto* const bytes = reinterpret_cast<char*>(piece.data());
  while (true) {
    const ssize_t got = read(pipe_, bytes + held, sizeof piece - held);
    if (got <= 0) return;
    held += static_cast<std::size_t>(got);
    const std::size_t whole = held / sizeof(float);
    {
      const std::lock_guard hold(lock_);
      sound_.samples.insert(sound_.samples.end(), piece.begin(),
                            piece.begin() + static_cast<std::ptrdiff_t>(whole));
    }
    const std::size_t rest = held % sizeof(float);
    std::copy_n(bytes + whole * sizeof(float), rest, bytes);
    held = rest;
  }
}

}  // namespace tavlo::test
