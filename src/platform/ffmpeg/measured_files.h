#pragma once

#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

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
/// twice as many at most (some 10 MB). For any thread; none waits for the disk of another.
class MeasuredFiles {
 public:
  /// The figures of the file that has this path now; nothing when it was not measured, has changed
  /// or is gone. Asks the disk.
  std::optional<SoundFigures> Find(const std::string& path);
  /// The same for a file that is open, of which the identity is known without asking the disk.
  std::optional<SoundFigures> Find(const std::string& path, const FileIdentity& identity);
  void Remember(const std::string& path, const FileIdentity& identity, const SoundFigures& figures);

 private:
  struct Entry {
    FileIdentity identity;
    SoundFigures figures;
  };
  /// The hash of a path stands for it. Two paths of one hash are told apart by the identity of
  /// their files; they only cost each other a measuring.
  using Entries = std::unordered_map<std::size_t, Entry>;

  bool Knows(std::size_t path);
  /// The figures when they are of that identity; otherwise the path is forgotten.
  std::optional<SoundFigures> Weigh(std::size_t path, const std::optional<FileIdentity>& identity);

  // Under the lock.
  /// What is remembered of the path, among those used last; null when nothing is.
  const Entry* Recall(std::size_t path);
  void Remember(std::size_t path, const Entry& entry);

  std::mutex mutex_;
  Entries recent_;
  Entries older_;
};

}  // namespace tavlo::platform
