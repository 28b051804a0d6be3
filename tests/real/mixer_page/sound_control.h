#pragma once

#include <string>

namespace tavlo::test {

/// What somebody else does to the sound server, and what it says then: the tool `pactl`.
/// Each returns what the tool printed.
std::string Pactl(const std::string& arguments);

/// A microphone that hears nothing, under the name "mic". Returns its module.
std::string PlugInMicrophone();
/// A second silent output; returns its module.
std::string PlugInOutput(const std::string& name);
void PullOut(const std::string& module);

/// Volumes in hundredths of the full one: "50% 50%" for left and right.
std::string VolumeOf(const std::string& kind, const std::string& name);
bool IsMute(const std::string& kind, const std::string& name);

/// A server that is there and does not answer, for as long as this lives.
class FrozenServer {
 public:
  FrozenServer();
  ~FrozenServer();
  FrozenServer(const FrozenServer&) = delete;

 private:
  int process_;
};

}  // namespace tavlo::test
