#include "support/simulated_prompts.h"

namespace tavlo::test {

void SimulatedPromptControl::SetDeviceType(std::string_view type) {
  Told.push_back("type " + std::string(type));
  type_ = type;
}

void SimulatedPromptControl::SetFileName(const std::string& path) {
  Told.push_back("file " + path);
  path_ = path;
}

void SimulatedPromptControl::SetFrom(std::int64_t milliseconds) {
  Told.push_back("from " + std::to_string(milliseconds));
  from_ = milliseconds;
}

void SimulatedPromptControl::SetTo(std::int64_t milliseconds) {
  Told.push_back("to " + std::to_string(milliseconds));
  to_ = milliseconds;
}

bool SimulatedPromptControl::Open() {
  Told.emplace_back("Open");
  Sounds = false;
  from_ = 0;
  to_ = kWhole;
  open_ = type_ == "WaveAudio" && !path_.empty() && !Missing.contains(path_);
  return open_;
}

bool SimulatedPromptControl::Play() {
  Told.emplace_back("Play");
  const bool somethingToHear = to_ == kWhole || to_ > from_;
  Sounds = open_ && HasDevice && somethingToHear && !Late.contains(path_);
  if (!Sounds) return open_ && Late.contains(path_);
  const std::string points = std::to_string(from_) + "-" + std::to_string(to_);
  Sounded.push_back(to_ == kWhole ? path_ : path_ + " " + points);
  return true;
}

void SimulatedPromptControl::Stop() {
  Told.emplace_back("Stop");
  Sounds = false;
}

void SimulatedPromptControl::Close() {
  Told.emplace_back("Close");
  Sounds = false;
  open_ = false;
}

}  // namespace tavlo::test
