#pragma once

#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

#include "platform/ffmpeg/plain_file.h"

namespace tavlo::platform {

/// What a scan wants to know of a file.
struct SoundFigures {
  bool playable = false;
  int samplesPerSecond = 0;
  int channels = 0;  ///< As delivered, 1 or 2.
  std::int64_t totalSamples = 0;
};

/// Remembers figures by path for as long as the file stays the one that was measured, so that the
/// next scan asks the disk for its identity only. Keeps the 50,000 paths used last at least, and
/// twice as many at most (some 20 MB).
class MeasuredFiles {
 public:
  /// What was seen of the file a moment ago, which spares asking the disk again; nothing when it
  /// was not looked at.
  using JustSeen = std::function<std::optional<FileIdentity>(const std::string& path)>;
  explicit MeasuredFiles(JustSeen justSeen = {}) : justSeen_(std::move(justSeen)) {}

  /// The figures of the file that has this path now; nullptr when it was not measured, has changed
  /// or is gone. Valid until the next call.
  const SoundFigures* Find(const std::string& path);
  void Remember(const std::string& path, const FileIdentity& identity, const SoundFigures& figures);

 private:
  struct Entry {
    FileIdentity identity;
    SoundFigures figures;
  };
  using Entries = std::unordered_map<std::string, Entry>;

  std::optional<FileIdentity> PresentIdentity(const std::string& path) const;

  JustSeen justSeen_;
  Entries recent_;
  Entries older_;
};

}  // namespace tavlo::platform
