#pragma once

#include <cstdint>
#include <string>

#include "base/listener.h"

namespace tavlo::remote {

using Microseconds = std::int64_t;

enum class PlaybackStatus {
  Stopped,  ///< No document is in work.
  Paused,   ///< One is, and stands or winds.
  Playing,
};

/// What the deck tells media keys, lock screens and scripts. Never a path or a file name.
struct MediaState {
  PlaybackStatus status = PlaybackStatus::Stopped;
  /// Counts the documents; 0 when there is none.
  std::uint64_t track = 0;
  std::string title;        ///< Bytes as the windows show them.
  std::string artist;       ///< The same.
  Microseconds length = 0;  ///< 0 while it is not known.
  double rate = 1;          ///< 1 is as it was dictated.
  double volume = 1;        ///< 0 to 1.
  bool canPlay = false;
  bool canPause = false;
  bool canSeek = false;
  bool canGoNext = false;
  bool canGoPrevious = false;
  bool operator==(const MediaState&) const = default;
};

inline constexpr double kSlowestRate = 0.5;
inline constexpr double kFastestRate = 1.5;

/// What somebody on the bus asks for.
struct MediaCommand {
  enum class What {
    Play,
    Pause,
    PlayPause,
    Stop,
    Next,
    Previous,
    Seek,         ///< By `time`.
    SetPosition,  ///< To `time`, if `track` is still the one.
    SetRate,      ///< To `number`, which may be any number or none.
    SetVolume,    ///< The same.
    Raise,
    Quit,
  } what;
  Microseconds time = 0;
  std::uint64_t track = 0;
  double number = 0;
};

/// The player as the bus sees it.
class MediaSource {
 public:
  /// Cheap enough to be asked after every pass of the loop.
  virtual MediaState State() = 0;
  /// Where the ear is; 0 where nothing is in work or nothing is to be said.
  virtual Microseconds Position() const = 0;
  /// True once after the position has moved otherwise than by playing on.
  virtual bool TakeJump() = 0;
  /// Keeps the command for a pass of the loop of its own, and drops it where too many are kept.
  virtual void Take(const MediaCommand& command) = 0;

 protected:
  ~MediaSource() = default;
};

/// The desktop's bus for media players. Nothing here waits; everything is called on the loop's
/// thread. Where there is no bus, or it dies or hangs, it goes on looking for one, seldom.
class MediaBus {
 public:
  virtual ~MediaBus() = default;

  /// Offers the player, and tells the listener whenever `IsLive` changes. Both must outlive the
  /// offer, which `Withdraw` ends.
  virtual void Offer(MediaSource& source, base::Listener& listener) = 0;
  virtual void Withdraw() = 0;
  /// Whether media keys and scripts can reach the deck now.
  virtual bool IsLive() const = 0;
};

}  // namespace tavlo::remote
