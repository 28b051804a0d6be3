#pragma once

#include <string>

#include "intake/carried.h"
#include "intake/claims.h"
#include "store/disk.h"
#include "store/file_moves.h"

namespace tavlo::intake {

/// Whether nothing stands at the path any more, as far as that is known.
bool HasGone(store::Disk& disk, const std::string& path);
/// Whether a program still writes what stands at the path. It does not make way then: it would be
/// set aside half.
bool IsBeingWritten(store::Disk& disk, const std::string& path);
/// What it means that a file could not be claimed.
Carried NotClaimed(store::Disk& disk, const std::string& source, const Claims::Taken& claim);

/// Brings files as they are from one folder into another, each to exactly one deck: by one rename,
/// or by a copy of what was claimed before. A file that stands at the target makes way and is set
/// aside. On the loop's thread.
class Carrier {
 public:
  /// All of them must outlive it.
  Carrier(store::Disk& disk, store::FileMoves& moves, Claims& claims)
      : disk_(disk), moves_(moves), claims_(claims) {}

  /// `folder` is empty or ends in a separator. After a failure the file stands in its folder.
  Carried Carry(const std::string& folder, const std::string& entry, const std::string& target);
  /// The same, by a copy of the claimed file. Failed for AlreadyThere: what stands at the target
  /// stays.
  Carried CarryAcross(const std::string& folder, const std::string& entry,
                      const std::string& target,
                      store::InTheWay inTheWay = store::InTheWay::GoesToRescue);

 private:
  store::Disk& disk_;
  store::FileMoves& moves_;
  Claims& claims_;
};

}  // namespace tavlo::intake
