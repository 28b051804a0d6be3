#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace tavlo::bench {

/// One of the libraries that stretch speech, fed as the pump feeds: block after block of one run.
/// Frames are moments of all channels, interleaved.
class Engine {
 public:
  virtual ~Engine() = default;

  /// Takes a block in and returns all frames that are ready; all that are left for the last block.
  virtual std::vector<float> Process(std::span<const float> block, bool last) = 0;
  /// Forgets the run, as a seek asks. What comes next is the beginning of another.
  virtual void Reset() = 0;
};

struct Format {
  int rate = 0;
  int channels = 0;
  double speed = 1;  ///< 0.5 plays half as fast.
};

/// The engine of that name, or none:
///
///     soundtouch       what the player uses
///     apart            the same, each block a run of its own: what a click at each join looks like
///     rubberband_r2, rubberband_r3, rubberband_r3_short
///     sonic
///
/// and, for reference, with the whole sound studied before: rubberband_r2_offline,
/// rubberband_r3_offline. These take one block only.
std::unique_ptr<Engine> MakeEngine(std::string_view name, const Format& format);

}  // namespace tavlo::bench
