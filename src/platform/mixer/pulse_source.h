#pragma once

#include <pulse/introspect.h>

#include <cstdint>
#include <string>
#include <vector>

namespace tavlo::platform {

/// One thing of the sound server that has a volume: an output, a stream of this program, an input.
struct PulseSource {
  enum class Kind { Output, Stream, Input };

  Kind kind = Kind::Output;
  std::uint32_t index = PA_INVALID_INDEX;
  /// Outputs and inputs of one piece of hardware have one card; what is made of software has none.
  std::uint32_t card = PA_INVALID_INDEX;
  std::string id;           ///< What the server calls an output.
  std::string description;  ///< What the list of devices calls it.
  std::string name;         ///< What the page calls it.
  /// Something is plugged in where the server can tell.
  bool isPluggedIn = true;
  bool hasVolume = true;
  bool mute = false;
  pa_cvolume volume{};
  pa_channel_map channels{};
  /// 0 to 100. Kept beside the volumes, since those of a silent source do not tell it.
  int balance = 50;

  /// 0 to 65535.
  int Volume() const;
  /// Left and right keep their balance. Volumes beyond the range are cut to it.
  void SetVolume(int value);
  bool HasBalance() const;
  void SetBalance(int value);

  bool IsSilent() const { return pa_cvolume_is_muted(&volume) != 0; }
  bool IsSame(const PulseSource& other) const { return kind == other.kind && index == other.index; }
  /// The same, and nothing about it has changed.
  bool IsUnchanged(const PulseSource& other) const;
};

PulseSource SourceOf(const pa_sink_info& sink);
PulseSource SourceOf(const pa_sink_input_info& stream);
PulseSource SourceOf(const pa_source_info& input);

/// Everything that the sound server told at one moment.
struct PulseWorld {
  std::string defaultOutput;
  std::vector<PulseSource> sources;

  /// What the list of devices calls the outputs that can play.
  std::vector<std::string> OutputNames() const;
  const PulseSource* OutputOf(int deviceIndex, const std::string& deviceName) const;
  /// The output, this program's streams, and the inputs of the same card. Empty without an output.
  std::vector<PulseSource> SourcesOf(const PulseSource* output) const;
  PulseSource* Find(const PulseSource& source);
  /// Balances that a silent source does not tell are those it had before.
  void RememberBalances(PulseWorld& before);
  bool IsUnchanged(const PulseWorld& other) const;
};

}  // namespace tavlo::platform
