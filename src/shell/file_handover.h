#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tavlo::shell {

/// The way on which a start hands the files that it was given to the deck that runs on its root
/// already. Paths are full ones, bytes as that start was given them. On the loop's thread.
class FileHandover {
 public:
  using Paths = std::vector<std::string>;

  virtual ~FileHandover() = default;

  /// From here on `came` runs for each start of the same user that hands files over, one or more:
  /// as an event of the loop, under message boxes and inside waits too, and not while the loop only
  /// breathes. Where the system refuses nobody can hand over, and this deck works as ever. Once for
  /// each object.
  virtual void Listen(std::function<void(const Paths& paths)> came) = 0;

  /// Tells of what has come and was not told yet; whoever hands over from here on finds nobody. For
  /// a deck that ends, so that nobody believes it.
  virtual void Close() = 0;

  /// Hands these files over, one at least, while the loop breathes. True: the deck that runs has
  /// them all. False: it has none and never will, because it can not be reached, refuses, or gives
  /// no answer within five seconds.
  virtual bool HandOver(const Paths& paths) = 0;
};

}  // namespace tavlo::shell
