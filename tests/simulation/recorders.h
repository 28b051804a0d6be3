#pragma once

#include <functional>
#include <string>
#include <vector>

#include "simulation/chance.h"
#include "simulation/desk.h"
#include "simulation/ledger.h"
#include "simulation/trace.h"

namespace tavlo::simulation {

/// The programs that write dictations into the folders of the deck: they come at any time, take
/// their time, and know nothing of it.
class Recorders {
 public:
  Recorders(Desk& desk, Ledger& ledger, Chance chance, Trace& trace)
      : desk_(desk), ledger_(ledger), chance_(chance), trace_(trace) {}

  /// What the next dictation is like.
  std::function<std::string()> NewContents;

  /// One of them begins to write a dictation into one of the folders that are swept or imported
  /// from; some are done at once.
  void Begin();
  /// The same, and it is done at once.
  void WriteAtOnce() { BeginWith(Manner::AtOnce); }
  /// One of them begins to write at this very path, which nothing bears, and holds it open.
  void BeginAt(const std::string& path);
  /// One that is not done writes the next piece.
  void GoOn();
  /// All of them come to their ends.
  void Finish();
  /// All of them are gone; what they have written so far stays.
  void LosePower();
  /// The folders that the deck takes files from, as it is set now; each ends in a separator.
  std::vector<std::string> Folders() const;

 private:
  enum class Manner {
    AtOnce,
    HoldsOpen,    ///< Writes piece by piece and holds the file open between them.
    ClosesOften,  ///< Closes the file after each piece and opens it again by its name.
    RenamesIntoPlace,
  };
  struct Writer {
    Manner manner = Manner::AtOnce;
    /// Where the dictation is to stand, and where it is written.
    std::string path;
    std::string writtenAt;
    std::vector<std::string> pieces;
    std::size_t next = 0;
    /// The number of the file that it has written last, and what that holds by its hand.
    int file = 0;
    std::string written;
    bool holdsOpen = false;
    Ledger::WhileOpen whileOpen = Ledger::WhileOpen::Stays;
  };

  void BeginWith(Manner manner);
  void Start(Writer writer);
  /// False when there is nothing left to write.
  bool WritePiece(Writer& writer);
  void WriteOpen(Writer& writer);
  void WriteClosing(Writer& writer);
  void BeginAnew(Writer& writer);
  void Close(Writer& writer);
  void PutIntoPlace(Writer& writer);
  Ledger::WhileOpen WhileOpenIn(const std::string& folder, Manner manner) const;
  std::string SomeName(const std::string& folder);
  std::vector<std::string> PiecesFor(Manner manner);

  Desk& desk_;
  Ledger& ledger_;
  Chance chance_;
  Trace& trace_;
  std::vector<Writer> writers_;
  int lastHidden_ = 0;
};

}  // namespace tavlo::simulation
