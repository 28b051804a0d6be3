#include "lists/outcome_in_words.h"

#include "store/disk_words.h"

namespace tavlo::lists {
namespace {

using store::DiskResult;

struct TripWords {
  const char* done;
  const char* failed;
  const char* copied;
  const char* stays;
  const char* unknown;
};

constexpr TripWords kToCompleted{"Completed", "Not moved to Completed: ",
                                 "Copied to Completed, but the one in the Queue was not deleted: ",
                                 " It stays in the Queue: ", "the document was moved to Completed"};
constexpr TripWords kToQueue{"Returned to the Queue", "Not returned to the Queue: ",
                             "Copied to the Queue, but the one in Completed was not deleted: ",
                             " It stays in Completed: ", "the document was returned to the Queue"};

/// "is in the rescue folder" where that is so: what cannot go there is kept behind a dot beside
/// where it stood.
std::string Kept(const std::string& path, const store::WorkFolders& folders) {
  const bool inRescueFolder = path.starts_with(folders.RescuedPath());
  return std::string(inRescueFolder ? " is in the rescue folder: " : " is kept as ") + path;
}

/// The general words for AlreadyThere speak of a file; here it is a document that waits.
std::string Because(DiskResult result) {
  if (result == DiskResult::AlreadyThere) return "another document of that name waits.";
  return std::string(store::WhyNot(result)) + ".";
}

bool MayStillHappen(DiskResult result, bool asked) {
  return result == DiskResult::OutOfReach && asked;
}

/// Of what may still happen nothing is claimed.
std::string NotKnown(std::string_view whether) {
  return "It is not known whether " + std::string(whether) + ": " +
         std::string(store::WhyNot(DiskResult::OutOfReach)) + ". The next list shows it.";
}

std::string MayBe(const std::string& path, const store::WorkFolders& folders) {
  const bool inRescueFolder = path.starts_with(folders.RescuedPath());
  return std::string(inRescueFolder ? " may be in the rescue folder: " : " may be kept as ") + path;
}

std::string UnknownMoveInWords(const TripWords& words, const store::Moved& moved,
                               const std::string& name, const store::WorkFolders& folders) {
  std::string text = NotKnown(words.unknown) + " Document: " + name;
  if (!moved.rescued.empty()) text += "; it" + MayBe(moved.rescued, folders);
  if (!moved.displaced.empty()) {
    text += "; another document of that name" + MayBe(moved.displaced, folders);
  }
  return text;
}

}  // namespace

std::string SaveFailureInWords(const store::Moved& moved, const std::string& name) {
  if (MayStillHappen(moved.result, moved.asked)) {
    return NotKnown("the position was saved") + " Document: " + name;
  }
  return "The position was not saved: " + Because(moved.result) + " Document: " + name;
}

std::string NamelessPositionInWords(const std::string& name) {
  return "The position was not saved: the name of this document can not hold one. Document: " +
         name;
}

std::string MoveInWords(Trip trip, const store::Moved& moved, const std::string& name,
                        const store::WorkFolders& folders) {
  const TripWords& words = trip == Trip::ToCompleted ? kToCompleted : kToQueue;
  if (MayStillHappen(moved.result, moved.asked)) {
    return UnknownMoveInWords(words, moved, name, folders);
  }
  const bool done = moved.result == DiskResult::Done;
  if (done && moved.displaced.empty()) return {};
  std::string text = words.done;
  if (!done) {
    // Into the Queue a document goes only where no other waits; in Completed the others give way.
    const bool waits = trip == Trip::ToQueue;
    text = (moved.arrived ? words.copied : words.failed) +
           (waits ? Because(moved.result) : std::string(store::WhyNot(moved.result)) + ".");
    if (!moved.rescued.empty()) {
      text += " The document" + Kept(moved.rescued, folders);
    } else {
      text += (moved.result == DiskResult::NotFound ? " Document: " : words.stays) + name;
    }
  }
  if (!moved.displaced.empty()) {
    text += "; another document of that name" + Kept(moved.displaced, folders);
  }
  return text;
}

std::string DeleteFailureInWords(DiskResult result, bool asked, const std::string& name) {
  if (MayStillHappen(result, asked)) {
    return NotKnown("the document was deleted") + " Document: " + name;
  }
  return "Not deleted: " + std::string(store::WhyNot(result)) + ". Document: " + name;
}

std::string DeleteAllFailureInWords(DiskResult result) {
  if (result == DiskResult::OutOfReach) return NotKnown("all documents were deleted");
  return "Not all documents were deleted: " + std::string(store::WhyNot(result)) + ".";
}

std::string CutShortInWords(std::string_view list) {
  return "The " + std::string(list) +
         " list is not whole: " + std::string(store::WhyNot(DiskResult::ProcessInTrouble)) +
         ". The next list shows the rest.";
}

}  // namespace tavlo::lists
