#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "simulation/desk.h"

namespace tavlo::simulation {

/// Holds what the program moves, renames and deletes against what stood in front of the typist when
/// a key was pressed: a key may take the document in work, or the highlighted row of the list that
/// shows, and nothing else.
class Takings {
 public:
  explicit Takings(Desk& desk);

  /// A hand presses the command. What the program does until that is over, it does for it, and it
  /// may only speak of what it did.
  void Press(forms::Command& command);
  /// The same for a press that comes another way.
  void Press(const forms::Command& command, const std::function<void()>& press);
  /// The desktop's session ends, which stores the position of a document in work.
  void EndSession(bool now);

  /// The empty text, or what was wrong first since the last call.
  std::string TakeFault();

 private:
  /// One thing that somebody asked for.
  struct Wish {
    std::string name;
    /// Full paths of documents.
    std::set<std::string> mayTake;
    /// Folder in which a document that stands in the way is set aside; empty for none, because
    /// nothing that waits in the Queue gives way.
    std::string givesWay;
    /// Folder of which any document may be taken, because the user has agreed; empty for none.
    std::string mayClear = {};
  };

  Wish WishOf(const forms::Command& command) const;
  Wish WishOfImport(const forms::Command& command) const;
  std::set<std::string> InWork() const;
  static std::set<std::string> Highlighted(const forms::Table& list, const forms::Pane& frame,
                                           const std::string& folder, int column);
  /// Whether it waits to be imported, under the eyes of the user.
  bool IsToBeImported(const std::string& path) const;
  /// A document of the Queue gives way to one that the passes bring in, and to no other.
  bool GivesWayInQueue(const std::string& from, const std::string& to);
  void LookAtArrival(const std::string& from, const std::string& to);
  void During(Wish wish, const std::function<void()>& act);
  void LookAt(const std::string& from, const std::string& to);
  void LookWhetherItIsTrue(const std::string& said, const std::string& path,
                           const std::string& contents);
  void LookWhetherItIsStored(const std::string& path, const std::string& contents);
  void Note(const std::string& fault);

  Desk& desk_;
  /// The last one is under way, those before it wait for it.
  std::vector<Wish> wishes_;
  /// Full paths of what moves have put there as copies. Such a copy may be taken back, since the
  /// document then stands where it was; that none is lost the ledger sees.
  std::set<std::string> copies_;
  /// Full paths in the Queue whose documents have just been set aside for one that comes in.
  std::set<std::string> madeWay_;
  std::string fault_;
};

}  // namespace tavlo::simulation
