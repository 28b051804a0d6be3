#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "playback/audio_objects.h"
#include "support/simulated_disk.h"

namespace tavlo::simulation {

/// What a dictation's file holds: a number that tells it from all others, and its sound.
struct Recording {
  int number = 0;
  playback::SampleCount samples = 0;
  int rate = 8000;
  int channels = 1;

  std::string Contents() const;
  /// Nothing when the contents are not whole, or no sound.
  static std::optional<Recording> Of(std::string_view contents);
};

/// Knows every dictation that came in and looks where it is now.
class Ledger {
 public:
  /// `root` is the install root.
  explicit Ledger(std::string root) : root_(std::move(root)) {}

  /// A name that no list shows: a copy that a move has not finished.
  static bool IsHalfCopy(std::string_view name);

  int NewNumber() { return ++lastNumber_; }
  /// A whole dictation stands in a folder of the deck from now on.
  void Came(const std::string& contents) { dictations_[contents] = {}; }
  /// Somebody outside took it away.
  void Forget(const std::string& contents) { dictations_.erase(contents); }
  bool Knows(const std::string& contents) const { return dictations_.contains(contents); }
  /// The user has just agreed that this file be deleted: it may be gone, and nothing else.
  void MayBeDeleted(const test::SimulatedDisk& disk, const std::string& path);
  /// The same, and it must be gone from now on.
  void AgreedToDelete(const test::SimulatedDisk& disk, const std::string& path);
  /// Another program is writing these first bytes of a dictation.
  void Grows(const std::string& contents) { growing_.insert(contents); }
  void NoLongerGrows(const std::string& contents) { growing_.erase(contents); }

  /// Looks through the folders of the deck. The empty text when every dictation is whole in exactly
  /// one of them, otherwise what is wrong. Where a fault or a kill has just struck, a dictation may
  /// stand in two places, and may then stay so, and what was to be deleted may have stayed.
  /// Where a folder was late (`late`), a dictation may stand in two places until the program has
  /// seen to it, and what was to be deleted may go later or stay.
  std::string Check(const test::SimulatedDisk& disk, bool faultStruck, bool late);
  /// The program has looked at every folder, and all of them answered. The empty text when none of
  /// the dictations that stood twice because a folder was late still does.
  std::string CheckSettled() const;
  /// The program is gone, and with it what it knew of copies that it left behind.
  void ProgramIsGone();

 private:
  struct Dictation {
    bool mayStandTwice = false;
    bool standsTwiceForNow = false;
    bool mayBeGone = false;

    /// False when that many places may not hold it.
    bool CountsPlaces(std::size_t places, bool faultStruck, bool late);
  };
  struct Deletion {
    std::string path;
    std::string contents;
  };

  std::string CheckDeletions(const test::SimulatedDisk& disk, bool mayStand);

  std::string root_;
  int lastNumber_ = 0;
  std::map<std::string, Dictation> dictations_;
  std::set<std::string> growing_;
  std::vector<Deletion> deletions_;
};

}  // namespace tavlo::simulation
