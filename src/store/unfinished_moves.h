#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "store/disk.h"

namespace tavlo::store {

/// Moves across file systems that are under way, or were given up in the middle because a folder
/// gave no answer. What was asked last may happen late, so a document may then stand twice: where
/// it was, and as a copy on its way or at its end. Nobody was told that it has moved, so it is the
/// copy that goes again, once both folders answer and the document is seen to stand where it was,
/// unchanged. Where it has gone from there the copy is the document, and stays. Where the delete of
/// the document was asked for the copy is set aside instead of deleted: from a mount that was
/// replaced meanwhile that delete may still be on its way. On the loop's thread.
class UnfinishedMoves {
 public:
  /// Puts what stands at a path where nobody takes it for a document.
  class Aside {
   public:
    virtual ~Aside() = default;
    virtual DiskResult SetAside(const std::string& path) = 0;
  };

  UnfinishedMoves(Disk& disk, Aside& aside) : disk_(disk), aside_(aside) {}

  struct Unfinished {
    std::string source;
    std::string copy;    ///< Where it stands until it is whole.
    std::string target;  ///< Where it is to stand then.
    FileFacts before;    ///< Of the source when it was copied.
    /// Of the whole copy. Nothing when what stands at the target can not be the copy: this is not
    /// known to be whole and so was not renamed, or the document itself may stand there.
    std::optional<FileFacts> copied;
    bool deletes = false;  ///< The delete of the source was asked for.
  };
  void Add(Unfinished move) { moves_.push_back(std::move(move)); }
  /// Nothing of the move is left to be taken back.
  void Forget(const Unfinished& move);

  /// Takes back what can be taken back now. What is out of reach still waits for the next call.
  void TakeBack();
  /// A document was given another path, or is given it late.
  void MayStandAt(const std::string& from, const std::string& to);

 private:
  /// True when nothing is left to do.
  bool TakenBack(const Unfinished& move);

  struct Sight {
    bool certain = false;
    std::optional<FileFacts> facts;
  };
  Sight See(const std::string& path);

  Disk& disk_;
  Aside& aside_;
  std::vector<Unfinished> moves_;
};

}  // namespace tavlo::store
