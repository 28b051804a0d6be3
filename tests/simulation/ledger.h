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
  /// Nothing when the contents are not whole, or no sound. The wave of a recording sounds like it.
  static std::optional<Recording> Of(std::string_view contents);
};

/// What has struck since somebody looked last.
enum class Blow {
  None,
  Kill,   ///< The program was killed, and nothing else.
  Fault,  ///< An operation failed, or the power did.
};

/// Knows every dictation that came in and follows its bytes, whatever folder they stand in, under
/// whatever name and in whatever form: a wave that a library made of a dictation is that dictation.
class Ledger {
 public:
  /// `root` is the install root.
  explicit Ledger(std::string root) : root_(std::move(root)) {}

  /// A name that no list shows: a copy that a move has not finished, a wave that is not yet in its
  /// place, or a file that was made to look at a folder's clock. None is ever the only form of a
  /// dictation.
  static bool IsHalfCopy(std::string_view name);
  /// A name under which a file stands while a deck works on it.
  static bool IsClaim(std::string_view name);
  /// The dictation that these contents are, or are made of.
  static std::string DictationIn(std::string_view contents);

  int NewNumber() { return ++lastNumber_; }
  /// A whole dictation stands in a folder from now on.
  void Came(const std::string& contents) { dictations_[DictationIn(contents)] = {}; }
  /// The same of one that its writer closes at this path, where somebody may have agreed meanwhile
  /// that it be deleted.
  void CameAt(const std::string& path, const std::string& contents);
  /// A copy of it may come into a folder of the deck, now or late.
  void MayCome(const std::string& contents) { expected_.insert(contents); }
  /// Somebody outside has put another dictation into its file, which shares what may become of it.
  void Becomes(const std::string& before, const std::string& after);
  /// Somebody outside took it away.
  void Forget(const std::string& contents) { dictations_.erase(DictationIn(contents)); }
  bool Knows(const std::string& contents) const {
    return dictations_.contains(DictationIn(contents));
  }
  /// Full paths of all files that hold the dictation in any form, half copies too.
  static std::vector<std::string> FilesOf(const test::SimulatedDisk& disk,
                                          const std::string& contents);
  /// The user has just agreed that this file be deleted: it may be gone, and nothing else.
  void MayBeDeleted(const test::SimulatedDisk& disk, const std::string& path);
  /// The same, and it must be gone from now on.
  void AgreedToDelete(const test::SimulatedDisk& disk, const std::string& path);
  /// What may become of a file while another program has it open for writing.
  enum class WhileOpen {
    Stays,     ///< It stands where it is.
    MayMove,   ///< It may be given another path, which takes its writer along.
    MayVanish  ///< It may be deleted, too.
  };
  /// Another program is writing these first bytes of a dictation.
  void Grows(const std::string& contents, const std::string& path, WhileOpen whileOpen) {
    growing_[contents] = {.path = path, .whileOpen = whileOpen};
  }
  void NoLongerGrows(const std::string& contents) { growing_.erase(contents); }

  /// A dictation with these contents begins to come in from a server, into the file at this path.
  /// Nobody may take that away, and what stands there is a part of it.
  void ComesIn(const std::string& contents, const std::string& path) {
    incoming_ = {.contents = contents, .path = path};
  }
  /// It has come as far as this, the whole of it or a part, and no more comes. A server that has it
  /// still may send it again and again; then there are as many of it.
  void HasComeIn(const test::SimulatedDisk& disk, const std::string& contents);

  /// Looks through all folders. The empty text when every dictation is whole in exactly one of
  /// them, otherwise what is wrong. Where a fault or a kill has just struck, a dictation may stand
  /// in more places, and may then stay so, and what was to be deleted may have stayed. Where a
  /// folder was late (`late`), a dictation may stand in two places until the program has seen to
  /// it, and what was to be deleted may go later or stay.
  std::string Check(const test::SimulatedDisk& disk, Blow blow, bool late);
  /// The program has looked at every folder, and all of them answered. The empty text when none of
  /// the dictations that stood twice because a folder was late still does.
  std::string CheckSettled(const test::SimulatedDisk& disk) const;
  /// The program is gone, and with it what it knew of copies that it left behind.
  void ProgramIsGone();

 private:
  struct Dictation {
    std::size_t mostPlaces = 1;
    bool standsTwiceForNow = false;
    bool mayBeGone = false;

    /// False when that many places may not hold it.
    bool CountsPlaces(std::size_t places, Blow blow, bool late);
  };
  struct Deletion {
    std::string path;
    std::string contents;
  };
  struct Growing {
    std::string path;
    WhileOpen whileOpen = WhileOpen::Stays;
    bool seen = false;
  };
  struct Incoming {
    std::string contents;
    std::string path;
  };
  using Places = std::map<std::string, std::vector<std::string>>;

  /// What is wrong with one file; notes its place if it holds a dictation.
  std::string Place(const std::string& path, const std::string& contents, Places& places);
  bool IsFolderOfDocuments(const std::string& folder) const;
  std::string CheckIncoming(const test::SimulatedDisk& disk) const;
  std::string CheckPlaces(const Places& places, Blow blow, bool late);
  std::string CheckGrowing();
  std::string CheckDeletions(const test::SimulatedDisk& disk, bool mayStand);

  std::string root_;
  int lastNumber_ = 0;
  std::map<std::string, Dictation> dictations_;
  std::set<std::string> expected_;
  std::map<std::string, Growing> growing_;
  std::vector<Deletion> deletions_;
  /// Full paths for which the user has just agreed to it.
  std::set<std::string> agreed_;
  std::optional<Incoming> incoming_;
  /// Nothing has come of some file but its name.
  bool emptyParts_ = false;
};

}  // namespace tavlo::simulation
