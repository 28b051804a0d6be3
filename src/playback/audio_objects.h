#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "store/folder_walk.h"

/// The three objects through which all sound of a document passes, and the one that plays prompts.
/// A *sample* is one moment of all channels (a frame); sample counts and positions are 64 bits
/// wide, so that a document of any length fits. Arrays are 32-bit floats from -1 to 1, channels
/// interleaved. Everything here is called, and every event arrives, on the loop's thread.
namespace tavlo::playback {

using SampleCount = std::int64_t;

/// Gains of the equalizer in dB: twelve bands, and a last element that is always 0.
using EqualizerGains = std::array<float, 13>;

/// Which channel of a split pair an array holds.
enum class Side { Whole, Left, Right };

/// A block of a document on its way from the file to the ear.
struct SampleArray {
  std::vector<float> values;  ///< Interleaved; values.size() is samples times channels.
  int channels = 1;
  Side side = Side::Whole;
  /// The part of the document, in its own samples, that the block plays. Stretching changes the
  /// values and leaves the range as it is, so that the player can tell where the ear is.
  double sourceBegin = 0;
  double sourceEnd = 0;
  /// Nothing comes after this block: what holds samples back must let them go.
  bool last = false;
  /// The file has not given the block yet; it is empty and may be asked for again.
  bool late = false;

  SampleCount Samples() const { return static_cast<SampleCount>(values.size()) / channels; }
};

/// What became of the opening of a sound file.
enum class OpenResult {
  Opened,
  Unplayable,  ///< The file is there and holds no sound that can be played.
  OutOfReach,  ///< The file is gone or no plain file any more, or its folder cannot be reached.
};

/// Decodes one sound file at a time.
class AudioFile {
 public:
  virtual ~AudioFile() = default;

  /// Opens the file for decoding. Closes what was open before; anything but Opened leaves nothing
  /// open. Reads nothing but this file.
  [[nodiscard]] virtual OpenResult OpenFile(const std::string& path) = 0;
  /// The same for the file at which a walk stands, measured by the walk's handle. What is read of
  /// it later is opened by its path.
  [[nodiscard]] virtual OpenResult OpenHeldFile(const store::HeldFile& held) = 0;
  virtual void CloseFile() = 0;
  /// Negative when the last open failed because the process itself is in trouble (no handles, no
  /// memory), whatever it returned; 0 or more otherwise.
  virtual int OpenStatus() const = 0;

  virtual SampleCount TotalSamples() const = 0;
  virtual std::int64_t LengthMilliseconds() const = 0;
  virtual int ChannelCount() const = 0;
  virtual int SampleRate() const = 0;

  /// Up to `samples` samples from the read position, which moves behind them. Empty when the file
  /// is exhausted or cannot be read on. `last` marks the block that reaches the end of the file.
  /// `late` marks one that must be waited for: the read position stays, and OnReady comes.
  virtual SampleArray ReadArray(SampleCount samples) = 0;
  /// Whether the last ReadArray came back short or empty because the file could not be read on: the
  /// disk failed, or the file is shorter now than it was when it was opened. False at the end of
  /// the sound.
  virtual bool ReadFailed() const = 0;
  /// Moves the read position and returns the position reached: exact to the sample for wave files,
  /// to a packet otherwise. A target outside the file is cut to it. Never reaches behind the target
  /// because the file cannot be read there. A file that is read by another thread is not waited
  /// for: then the target is returned, and the range of the next block tells where it really
  /// begins.
  virtual SampleCount SeekSample(SampleCount target) = 0;

  /// A block that was late can be read now, or is known not to come. Never called from within a
  /// call of this object, nor while the loop only breathes: whoever needs the block even then asks
  /// again.
  std::function<void()> OnReady;
};

/// Stretches blocks in time, pitch kept. It remembers the end of the block before, so that joins
/// are seamless; a seek and a new start must forget it.
class AudioTransform {
 public:
  virtual ~AudioTransform() = default;

  /// Forgets what is held back. The next block begins a new run.
  virtual void Reset(int sampleRate) = 0;
  /// Stretches the block in place so that it plays at `speedPercent` (50 to 150). At 100 the
  /// samples pass unchanged to the bit. A pair from SplitLeft and SplitRight is stretched as one
  /// (left first, then right), so that both come out equally long and the image does not wander.
  virtual void ChangeSpeed(SampleArray& block, float speedPercent) = 0;

  virtual SampleArray SplitLeft(const SampleArray& interleaved) = 0;
  virtual SampleArray SplitRight(const SampleArray& interleaved) = 0;
  virtual SampleArray JoinChannels(const SampleArray& left, const SampleArray& right) = 0;
};

/// Plays arrays on a sound device.
class AudioPlayer {
 public:
  virtual ~AudioPlayer() = default;

  /// The format of the arrays to come.
  virtual void SetOutputFormat(int samplesPerSecond, int channels) = 0;
  /// Begins to play what is queued from now on. False (a fault) when the device cannot be had for
  /// the format, so that another may be chosen. On a machine without any device there is none to
  /// choose: it returns true, and OpenStatus is negative.
  [[nodiscard]] virtual bool StartOutput() = 0;
  /// Silence within a few milliseconds, without a click; drops the queue. Raises OnTimer once more,
  /// so that the position is where the ear was, before it returns.
  virtual void StopOutput() = 0;
  /// Silence within a few milliseconds, without a click; the queue and the position stay as they
  /// are, and no event tells of it. Start, stop and ClearQueue end it.
  virtual void Silence() = 0;
  virtual void QueueArray(SampleArray block) = 0;
  /// While a request is held open its block comes later than the handler returns, and a queue that
  /// has run dry is a gap: no OnEndPlay comes. Start, stop and ClearQueue close it.
  virtual void HoldRequestOpen(bool open) = 0;
  /// Drops everything queued and goes on playing what comes.
  virtual void ClearQueue() = 0;
  /// After StartOutput: negative on failure.
  virtual int OpenStatus() const = 0;

  virtual SampleCount MillisecondsToSamples(std::int64_t milliseconds) const = 0;
  virtual std::int64_t SamplesToMilliseconds(double samples) const = 0;
  /// Document samples heard since StartOutput or the last ClearQueue. Silence of an empty queue
  /// does not count.
  virtual SampleCount PlayedSamples() const = 0;

  virtual int DeviceCount() const = 0;
  /// The names of all devices, by their index.
  virtual std::vector<std::string> DeviceNames() const = 0;
  /// Of `present`, the devices that are there now, those that have come since the list was made
  /// stand behind all others from now on. What is listed keeps its index, also when it has gone.
  virtual void AddDevices(const std::vector<std::string>& present) = 0;
  virtual std::string DeviceName() const = 0;
  virtual int CurrentDevice() const = 0;
  /// An index outside the list selects nothing and leaves the device as it was.
  virtual void SelectDevice(int index) = 0;
  /// Whether the selected device can be listed for selection; false after SelectDevice was given an
  /// index that does not exist.
  virtual bool DeviceHasMixer() const = 0;

  /// Master volume, 0 to 65535; reaches the ear ramped.
  virtual void SetVolume(int volume) = 0;

  /// The curve to be met at the centres of the bands; reaches the ear ramped. It is kept while the
  /// equalizer is off.
  virtual void SetEqualizerGains(const EqualizerGains& gains) = 0;
  /// Off, as it is at first, the document is played unchanged.
  virtual bool EqualizerEnabled() const = 0;
  virtual void SetEqualizerEnabled(bool enabled) = 0;

  // Exactly one OnEndArrayPlay or OnRequestOnLoadArray for each block that has been played.
  // OnEndPlay comes once, when the queue is dry and every such request has been answered without a
  // new block. A loop that was busy and a request that is held open make a gap, never a false end.
  // Nothing arrives after StopOutput.
  std::function<void()> OnEndArrayPlay;
  std::function<void()> OnRequestOnLoadArray;
  std::function<void()> OnEndPlay;
  /// Every 50 ms while playing. Levels are 100 + dBFS of the loudest sample since the last event,
  /// from 0 to 100.
  std::function<void(SampleCount currentSamples, double levelLeft, double levelRight)> OnTimer;
};

/// The three that make a document sound.
struct AudioObjects {
  AudioFile& file;
  AudioTransform& transform;
  AudioPlayer& player;
};

/// Plays one short sound file at a time beside the document and under the player's master volume. A
/// stop of the document does not touch it. Failures are told and disturb nothing.
class PromptMediaControl {
 public:
  virtual ~PromptMediaControl() = default;

  /// The kind of device that the next Open asks for; "WaveAudio" is the one there is.
  virtual void SetDeviceType(std::string_view type) = 0;
  /// Full path of the file that the next Open opens.
  virtual void SetFileName(const std::string& path) = 0;
  /// The stretch of the open file that Play sounds, in milliseconds from its beginning. Open sets
  /// them to the whole file.
  virtual void SetFrom(std::int64_t milliseconds) = 0;
  virtual void SetTo(std::int64_t milliseconds) = 0;

  /// False when it is known already that the file cannot be played; then nothing is open.
  [[nodiscard]] virtual bool Open() = 0;
  /// Returns at once; sounds as soon as the file is read. A file that cannot be had in time is a
  /// silence. False when it is known already that nothing will sound: nothing is open, the file
  /// cannot be played, or no device can be had.
  [[nodiscard]] virtual bool Play() = 0;
  /// Silence within a few milliseconds, without a click, also of what is still being read. The file
  /// stays open.
  virtual void Stop() = 0;
  /// Stops and lets go of the file. A control that holds none stays as it is.
  virtual void Close() = 0;
};

}  // namespace tavlo::playback
