#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/loop.h"
#include "store/disk.h"
#include "store/file_moves.h"

namespace tavlo::intake {

/// Who claims: a process on a machine.
struct ClaimOwner {
  std::string host;
  std::int64_t process = 0;
};

/// Several decks may sweep one folder. Before a deck copies or converts a file it claims it, by one
/// rename to a dot name of the same folder that holds host, process and the file's own name: only
/// one rename can succeed, and no list shows dot files. While the deck works, and the loop
/// breathes, it renews its claim each minute. A claim that nobody renews is given back by whoever
/// tidies up that folder next, under the file's own name or that name with a number. How old a
/// claim is says the clock of its folder, by a file that is just written there, so that the decks'
/// own clocks may differ. Where a file cannot be renewed, as that of another user, a claim counts
/// for ten minutes.
///
/// One file is claimed at a time. On the loop's thread.
class Claims {
 public:
  static constexpr base::Duration kRenewedEach = std::chrono::minutes{1};
  static constexpr base::Duration kAbandonedAfter = std::chrono::minutes{10};

  /// Disk, moves and loop must outlive it.
  Claims(base::Loop& loop, store::Disk& disk, store::FileMoves& moves, const ClaimOwner& owner);

  struct [[nodiscard]] Taken {
    /// Done, or why the file is not claimed. NotFound: another deck may have been quicker.
    store::DiskResult result = store::DiskResult::Done;
    std::string path;          ///< Where it stands while it is claimed.
    bool nameTooLong = false;  ///< To stand in a claim; with Failed.
    /// A program has begun to write it since it was seen to be free, so it was given back; with
    /// Failed.
    bool inUse = false;
    /// It can not be looked at, so nobody knows whether it is still written; it was given back;
    /// with Failed.
    bool unreadable = false;
  };
  /// Claims a file of a folder, whose path is empty or ends in a separator. Nobody can open a
  /// claimed file by its name any more, so what is free now stays so.
  Taken Take(const std::string& folder, const std::string& name);
  /// True when what was claimed has gone from there: somebody took this deck for dead and gave it
  /// back. False as well when that is not known.
  bool WasGivenBack();
  /// Gives back what is claimed and says where it stands now: under its name, that name with a
  /// number, or still under the claim, which is given back later.
  std::string GiveBack();
  /// What is claimed has gone, or is left as it is: it is not renewed any more.
  void LetGo();

  /// Gives back the claims that were abandoned in the folder, and deletes what else an ended deck
  /// has left in it. Before each walk over such a folder.
  void TidyUp(const std::string& folder);

  /// A path in the folder for a wave that a library makes. It is in no list, and is deleted like an
  /// abandoned claim, so it never holds the only form of a dictation. New at each call.
  std::string PathForWave(const std::string& folder);

 private:
  std::string NameOfClaim(const std::string& name) const;
  /// The moment now, by the clock of the folder; nothing when nothing can be written there.
  std::optional<std::int64_t> ClockOf(const std::string& folder);
  void Settle(const std::string& folder, const std::string& name);
  void Renew();

  struct Held {
    std::string path;
    std::string name;
  };

  store::Disk& disk_;
  store::FileMoves& moves_;
  const std::string host_;
  const std::string process_;
  std::optional<Held> held_;
  int lastWave_ = 0;
  base::Timer tmrRenewal_;
};

}  // namespace tavlo::intake
