#pragma once

#include <string>
#include <utility>

namespace tavlo::simulation {

class Desk;

/// Holds what the program makes of the files of a server against where they may go: each lands in
/// the landing folder under a bare name, stays there while it comes in, and leaves it for a folder
/// of the deck.
class Landing {
 public:
  explicit Landing(Desk& desk) : desk_(desk) {}

  /// A file begins to come in at this path.
  void Begun(const std::string& path);
  /// The program has moved, renamed or (`to` is empty) deleted something.
  void Gone(const std::string& from, const std::string& to);
  /// The server deletes a file with these contents, because the program asked for it.
  void Deleted(const std::string& contents);

  /// The empty text, or what was wrong first since the last call.
  std::string TakeFault() { return std::exchange(fault_, ""); }

 private:
  bool IsFolderOfTheDeck(const std::string& folder) const;
  void Fault(const std::string& what);

  Desk& desk_;
  std::string fault_;
};

}  // namespace tavlo::simulation
