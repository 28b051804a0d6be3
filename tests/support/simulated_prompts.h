#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "playback/audio_objects.h"

namespace tavlo::test {

/// A prompt control that sounds nothing and writes down what it was told. As strict as the real
/// one: it opens only what is there, on the one kind of device, and plays only what is open.
class SimulatedPromptControl : public playback::PromptMediaControl {
 public:
  std::set<std::string> Missing;     ///< Paths that cannot be opened.
  std::set<std::string> Late;        ///< Paths of which nothing can be read in time.
  bool HasDevice = true;             ///< False on a machine without sound.
  std::vector<std::string> Told;     ///< Every call, in order.
  std::vector<std::string> Sounded;  ///< Paths of what came to sound, with the points if any.
  bool Sounds = false;               ///< Something was begun and not ended since.

  void SetDeviceType(std::string_view type) override;
  void SetFileName(const std::string& path) override;
  void SetFrom(std::int64_t milliseconds) override;
  void SetTo(std::int64_t milliseconds) override;
  bool Open() override;
  bool Play() override;
  void Stop() override;
  void Close() override;

  bool IsOpen() const { return open_; }

 private:
  static constexpr std::int64_t kWhole = -1;

  std::string type_;
  std::string path_;
  std::int64_t from_ = 0;
  std::int64_t to_ = kWhole;
  bool open_ = false;
};

}  // namespace tavlo::test
