#include "mixer_page/sound_control.h"

#include <signal.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <regex>

#include "support/send_signal.h"

namespace tavlo::test {

std::string Pactl(const std::string& arguments) {
  const std::string command = "LC_ALL=C pactl " + arguments + " 2>&1";
  std::string printed;
  std::FILE* const pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return printed;
  std::array<char, 1024> part;
  while (std::fgets(part.data(), part.size(), pipe) != nullptr) printed += part.data();
  pclose(pipe);
  return printed;
}

std::string PlugInMicrophone() {
  return Pactl("load-module module-null-source source_name=mic description=Microphone");
}

std::string PlugInOutput(const std::string& name) {
  return Pactl("load-module module-null-sink sink_name=" + name +
               " rate=48000 channels=2 norewinds=1 sink_properties=device.description=" + name);
}

void PullOut(const std::string& module) { Pactl("unload-module " + module); }

std::string VolumeOf(const std::string& kind, const std::string& name) {
  const std::string printed = Pactl("get-" + kind + "-volume " + name);
  static const std::regex share("[0-9]+%");
  std::string shares;
  for (std::sregex_iterator at(printed.begin(), printed.end(), share), end; at != end; ++at) {
    shares += (shares.empty() ? "" : " ") + at->str();
  }
  return shares;
}

bool IsMute(const std::string& kind, const std::string& name) {
  return Pactl("get-" + kind + "-mute " + name).find("yes") != std::string::npos;
}

FrozenServer::FrozenServer() : process_(0) {
  std::ifstream(std::string(std::getenv("PULSE_RUNTIME_PATH")) + "/pid") >> process_;
  SendSignal(process_, SIGSTOP);
}

FrozenServer::~FrozenServer() { SendSignal(process_, SIGCONT); }

}  // namespace tavlo::test
