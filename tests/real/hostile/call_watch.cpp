#include "hostile/call_watch.h"

#include <filesystem>
#include <fstream>
#include <string_view>
#include <utility>

#include "support/other_program.h"

namespace tavlo::test {
namespace {

/// What a toolkit and a sound library read for themselves, and what the deck keeps in its root.
bool IsOwnOrSystem(const std::string& path) {
  if (path.find("/../") != path.npos) return false;
  for (const std::string_view folder :
       {"/usr/", "/lib/", "/etc/", "/proc/", "/sys/", "/dev/", "/var/cache/fontconfig/"}) {
    if (path.starts_with(folder)) return true;
  }
  // One of the retrieval's passes lists the folder that the process works in.
  if (path == std::filesystem::current_path().string() + "/.") return true;
  return path.find("/Lyrane/TavloDeck") != path.npos;
}

}  // namespace

void CallWatch::Take(const SystemCall& call) {
  constexpr std::string_view kMark = "/tavlo-mark/";
  if (call.path.starts_with(kMark)) {
    before_ = std::exchange(step_, call.path.substr(kMark.size()));
    openedInScan_.clear();
  } else if (step_ != "" && step_ != "exit" && !IsAllowed(call)) {
    Offences.push_back(step_ + ": " + call.name + " " + call.path + " " + call.arguments);
  }
}

bool CallWatch::IsAllowed(const SystemCall& call) {
  if (call.name == "socket") return call.arguments.starts_with("AF_UNIX");
  if (call.name == "connect") return call.arguments.find("sa_family=AF_UNIX") != std::string::npos;
  if (!call.name.starts_with("open")) return false;
  const std::optional<std::string> name = NameBelow(call.path);
  return name ? IsAllowedInFolder(call, *name) : IsOwnOrSystem(call.path);
}

bool CallWatch::IsAllowedInFolder(const SystemCall& call, const std::string& name) {
  if (name.empty()) {
    // A scan begins with its folder.
    openedInScan_.clear();
    return step_ == "scan";
  }
  // What waits in the other import directories is counted by and by.
  if (name.ends_with('/')) return call.arguments.find("O_DIRECTORY") != name.npos;
  Opened.insert(name);
  // What is opened by its whole path behind a scan is the document that Auto Queue takes.
  const bool byItsFolder = !call.arguments.starts_with("AT_FDCWD");
  if (step_ == "scan" && byItsFolder && !openedInScan_.insert(name).second) {
    OpenedTwiceByAScan.insert(name);
  }
  // A thread reads what plays, and may only be about to open the document of the step before.
  const bool atHand = step_ == "scan" || step_ == name || before_ == name;
  return name.find('/') == name.npos && atHand;
}

std::optional<std::string> CallWatch::NameBelow(const std::string& path) const {
  for (const std::string& folder : folders_) {
    const std::string below = "/Lyrane/TavloDeck/Files/" + folder + "/";
    const std::size_t at = path.find(below);
    if (at != path.npos) return path.substr(at + below.size());
  }
  return {};
}

std::string ScriptNaming(const std::string& target) {
  return "#EXTM3U\n#EXT-X-MEDIA-SEQUENCE:0\n#EXTINF:9,\nfile://" + target +
         "\n#EXTINF:9,\nhttp://127.0.0.1:1/x.wav\n#EXT-X-ENDLIST\nffconcat version 1.0\nfile '" +
         target + "'\n#!/bin/sh\ntouch " + target + "\n";
}

std::map<std::string, long> ReadReport(const std::string& path) {
  std::map<std::string, long> report;
  std::ifstream in(path);
  std::string what;
  for (long count = 0; in >> what >> count;) report[what] = count;
  return report;
}

int RunListenedTo(const std::vector<std::string>& command, const std::string& logPath) {
  std::string words;
  for (const std::string& word : ListenedTo(command, logPath)) words += word + " ";
  return RunShell(words);
}

}  // namespace tavlo::test
