// What a document's whole way to the ear does, without a device:
//
//     bench_sound play DOCUMENT PERCENT    stretch, resampling to 48 kHz, the curve "Lo", limiter,
//                                          meters; prints the seconds that came out and the loudest
//                                          meter
//     bench_sound miss RATE                by how many dB the response of the sounding equalizer
//                                          misses each curve at the centres, at the worst of them
#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <string>
#include <string_view>
#include <vector>

#include "forms/configuration_form.h"
#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "platform/sound/queue_player.h"
#include "platform/sound/rt_equalizer.h"
#include "platform/sound/soundtouch_transform.h"
#include "playback/equalizer.h"

namespace {

using namespace tavlo;

constexpr int kDeviceRate = 48000;
constexpr platform::FrameCount kTickFrames = kDeviceRate / 100;
constexpr base::Duration kTick = std::chrono::milliseconds(10);

/// A loop whose time goes by as fast as the machine can play.
class FastLoop : public base::Loop {
 public:
  base::MonotonicTime Now() const override { return {now_}; }
  base::CalendarTime WallClock() const override { return {}; }
  void Yield() override { RunPass(); }
  void Wait(base::Duration length) override {
    now_ += length;
    RunPass();
  }
  void Breathe() override { RunFeeds(); }
  bool BreatheUntil(const std::function<bool()>& done, base::MonotonicTime limit) override {
    while (!done() && now_ < limit.sinceStart) {
      now_ += kTick;
      RunFeeds();
    }
    return done();
  }
  bool TurnUntil(const std::function<bool()>& done, base::MonotonicTime limit) override {
    while (!done() && now_ < limit.sinceStart) Wait(kTick);
    return done();
  }

 protected:
  base::Reply ShowBox(const base::MessageBox& /*box*/) override { return base::Reply::Ok; }

 private:
  base::Duration now_{0};
};

/// A device that renders when it is told to.
class DeafDevice : public platform::OutputDevice {
 public:
  std::vector<std::string> FindDevices() override { return {"none"}; }
  std::vector<std::string> LearnDevices(const std::vector<std::string>&) override {
    return {"none"};
  }
  int PreferredRate() override { return kDeviceRate; }
  bool Open(int /*index*/, int /*framesPerSecond*/, platform::RtMixer& mixer) override {
    mixer_ = &mixer;
    rendered_ = 0;
    return true;
  }
  void Close() override { mixer_ = nullptr; }
  bool IsOpen() const override { return mixer_ != nullptr; }
  bool HasFailed() const override { return false; }
  bool TakeRanDry() override { return false; }
  platform::FrameCount HeardFrames() override { return rendered_; }
  void LetRender() override { Render(); }

  void Render() {
    mixer_->RtRender(frames_.data(), kTickFrames);
    rendered_ += kTickFrames;
  }

 private:
  platform::RtMixer* mixer_ = nullptr;
  platform::FrameCount rendered_ = 0;
  std::vector<float> frames_ = std::vector<float>(2 * kTickFrames);
};

/// Brings a curve into the player as its page does and returns the gains.
platform::BandGains Choose(base::Loop& loop, playback::AudioPlayer& player,
                           std::string_view choice) {
  forms::ConfigurationForm config(loop);
  playback::Equalizer page(loop, config, player);
  config.txtEqEnable.Value = "Y";
  config.txtEqChoice.Value = std::string(choice);
  page.ApplyStored();
  platform::BandGains gains{};
  for (std::size_t band = 0; band < gains.size(); ++band) gains[band] = -config.sldEQ[band].Value;
  return gains;
}

int Play(const std::string& document, float percent) {
  platform::FfmpegAudioFile file;
  if (file.OpenFile(document) != playback::OpenResult::Opened) {
    std::fprintf(stderr, "%s cannot be played\n", document.c_str());
    return 1;
  }
  FastLoop loop;
  DeafDevice device;
  platform::QueuePlayer player(loop, device);
  platform::SoundTouchTransform transform;
  Choose(loop, player, "Lo");
  player.SetEqualizerEnabled(true);
  player.SetOutputFormat(file.SampleRate(), file.ChannelCount());
  transform.Reset(file.SampleRate());

  const auto load = [&] {
    playback::SampleArray block = file.ReadArray(file.SampleRate() / 2);
    if (block.values.empty()) return;
    transform.ChangeSpeed(block, percent);
    player.QueueArray(std::move(block));
  };
  bool ended = false;
  double loudest = 0;
  player.OnEndArrayPlay = load;
  player.OnRequestOnLoadArray = load;
  player.OnEndPlay = [&] { ended = true; };
  player.OnTimer = [&](playback::SampleCount, double left, double right) {
    loudest = std::max({loudest, left, right});
  };
  if (!player.StartOutput()) return 1;
  load();
  load();
  while (!ended) {
    device.Render();
    loop.Wait(kTick);
  }
  std::printf("seconds=%f loudest=%f heard=%f\n",
              static_cast<double>(device.HeardFrames()) / kDeviceRate, loudest,
              static_cast<double>(player.PlayedSamples()) / file.SampleRate());
  return 0;
}

/// What comes out of the equalizer for one sample of sound, soft enough for the limiter.
std::vector<double> ImpulseResponse(const platform::BandGains& gains, int rate) {
  constexpr float kSoft = 0.001F;
  platform::RtEqualizer equalizer;
  equalizer.SetRate(rate);
  equalizer.SetCurve(gains);
  equalizer.SetEnabled(true);
  std::vector<float> settle(static_cast<std::size_t>(rate));
  equalizer.RtShape(settle.data(), rate / 2, false);
  std::vector<float> frames(static_cast<std::size_t>(4 * rate));
  frames[0] = frames[1] = kSoft;
  equalizer.RtShape(frames.data(), 2 * rate, false);
  std::vector<double> response;
  for (std::size_t i = 0; i < frames.size(); i += 2) response.push_back(frames[i] / kSoft);
  return response;
}

double Miss(const platform::BandGains& gains, int rate) {
  const std::vector<double> response = ImpulseResponse(gains, rate);
  double worst = 0;
  for (std::size_t band = 0; band < gains.size(); ++band) {
    if (2 * platform::kEqualizerCentres[band] >= rate) continue;
    const double angle = -2 * std::numbers::pi * platform::kEqualizerCentres[band] / rate;
    std::complex<double> sum;
    for (std::size_t i = 0; i < response.size(); ++i) {
      sum += response[i] * std::polar(1.0, angle * static_cast<double>(i));
    }
    worst = std::max(worst, std::abs(20 * std::log10(std::abs(sum)) - gains[band]));
  }
  return worst;
}

int PrintMisses(int rate) {
  FastLoop loop;
  DeafDevice device;
  platform::QueuePlayer player(loop, device);
  for (const char* choice : {"Flat", "Lo", "Mid", "Hi"}) {
    std::printf("%s=%f ", choice, Miss(Choose(loop, player, choice), rate));
  }
  std::printf("\n");
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  const std::string_view what = count > 1 ? arguments[1] : "";
  if (what == "play" && count == 4) {
    return Play(arguments[2], static_cast<float>(std::atof(arguments[3])));
  }
  if (what == "miss" && count == 3) return PrintMisses(std::atoi(arguments[2]));
  std::fprintf(stderr, "usage: %s play DOCUMENT PERCENT | miss RATE\n", arguments[0]);
  return 2;
}
