#pragma once

#include <string>

#include "base/message_box.h"
#include "store/disk.h"

namespace tavlo::intake {

/// What became of one file that was to be brought elsewhere.
struct [[nodiscard]] Carried {
  enum class Outcome {
    Arrived,         ///< It stands at its target and nowhere else.
    TakenByAnother,  ///< Another deck or program has it, so there is nothing to do.
    NotConverted,    ///< Its library could not convert it: it stands where it was.
    InUse,           ///< A program writes it, or what is in its way: it stands where it was.
    NameTooLong,     ///< No claim can hold its name: it stands where it was.
    MayNotClaim,     ///< It may not be renamed where it stands, so it was not copied.
    Failed,          ///< A step on its files failed: it stands at `standsAt`.
    OutOfReach,      ///< A folder gave no answer: it is not known where it stands.
  };
  Outcome outcome = Outcome::Arrived;
  store::DiskResult why = store::DiskResult::Done;  ///< Of MayNotClaim and Failed.
  bool asked = true;  ///< Of OutOfReach: a step was asked for that may still happen.
  /// With Failed: the target holds all of it, and only the last steps failed.
  bool arrived = false;
  std::string standsAt;   ///< Of Failed: its full path.
  std::string displaced;  ///< Where a document is that stood at the target. Empty when none did.
};

/// The box that ends the passes when a step on a file failed that no rule covers.
base::MessageBox RetrievalFault(const std::string& source, const Carried& carried);

/// Titles, texts and the quiet line's words of the passes. `folder` as the passes join it.
base::MessageBox NetworkFault(const std::string& prefix, const std::string& folder);
std::string MayNotRenameInWords(const std::string& folder, store::DiskResult why);
std::string NameTooLongInWords(const std::string& source);
std::string DisplacedInWords(const std::string& displaced);
/// `arrived`: the target holds all of it, and only its delete failed.
std::string KeptInWords(const std::string& source, const std::string& kept, bool arrived);
std::string CutShortInWords(const std::string& folder);

}  // namespace tavlo::intake
