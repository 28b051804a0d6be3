#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "store/disk.h"

namespace tavlo::store {

/// The sound of a file, as the walk that held it had it measured.
struct MeasuredSound {
  enum class Outcome { Opened, Unplayable, OutOfReach, ProcessInTrouble };
  Outcome outcome = Outcome::OutOfReach;
  int samplesPerSecond = 0;
  int channels = 0;
  std::int64_t totalSamples = 0;
};

/// A file at which a walk stands, for what reads it. The handle is the walk's, which closes it when
/// it goes on: a reader neither keeps nor closes it.
struct HeldFile {
  std::string path;
  DiskResult opened = DiskResult::NotFound;  ///< Done, or why it could not be opened.
  int handle = -1;                           ///< A descriptor; the twins have none.
  std::uint64_t inode = 0;
  FileFacts facts;
  /// There where the walk has looked ahead on another thread: then there is no handle, and the file
  /// is not read here.
  std::optional<MeasuredSound> measured;
};

/// How a walk ended.
enum class WalkEnd {
  Whole,
  OutOfReach,        ///< The folder could not be listed, or not to its end, or gave no answer.
  ProcessInTrouble,  ///< The same, because the process has no handles or memory left.
};

/// A walk over the plain files of a folder, in the folder's own order, that opens each of them at
/// most once. The files are those that stood there when the walk began; each is looked up in the
/// folder that was opened then, whatever its path leads to by now. One file is held at a time. A
/// call that is out of reach ends the walk: Next is false from then on, and End is OutOfReach.
class FolderWalk {
 public:
  virtual ~FolderWalk() = default;

  /// False when the folder could not be opened: then there is no file, and End says why.
  virtual bool Started() const = 0;
  /// Lets go of the file before and stands at the next one. False when there is none any more.
  virtual bool Next() = 0;
  /// How the walk ended, once Next was false.
  virtual WalkEnd End() const = 0;

  // Of the file at which the walk stands.
  virtual const std::string& Name() const = 0;
  /// Opens the file, unless that is done already. Follows no link and does not wait for another
  /// program.
  virtual const HeldFile& Open() = 0;
  /// Opens the file and asks the kernel whether a program is still writing it. Changes nothing.
  virtual Readiness TestReadiness() = 0;
  /// Makes the file writable for its owner.
  virtual DiskResult SetAttributesNormal() = 0;
};

}  // namespace tavlo::store
