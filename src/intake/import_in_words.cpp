#include "intake/import_in_words.h"

#include <algorithm>
#include <cstddef>

#include "store/disk_words.h"

namespace tavlo::intake {
namespace {

using store::DiskResult;

constexpr std::size_t kMostNamed = 3;
constexpr std::string_view kBeingWritten = "a program is still writing it";

std::string ReasonInWords(DiskResult result) { return std::string(store::WhyNot(result)); }

std::string FilesInWords(int count) {
  return std::to_string(count) + (count == 1 ? " file" : " files");
}

/// Of what may still happen nothing is claimed.
std::string NotKnown(std::string_view whether) {
  return "It is not known whether " + std::string(whether) + ": " +
         ReasonInWords(DiskResult::OutOfReach) + ". The next list shows it.";
}

/// " 3 files stay: reason." and nothing for no file.
std::string StayInWords(int count, std::string_view why) {
  if (count == 0) return {};
  return " " + FilesInWords(count) + (count == 1 ? " stays: " : " stay: ") + std::string(why) + ".";
}

}  // namespace

std::string ImportDeletionInWords(const ImportDeletion& deletion, const std::string& name) {
  switch (deletion.stays) {
    case Stays::No:
      return {};
    case Stays::IsNew:
      return "Not deleted: it has changed since the list was built. File: " + name;
    case Stays::InUse:
      return "Not deleted: " + std::string(kBeingWritten) + ". File: " + name;
    case Stays::Refused:
      break;
  }
  if (deletion.result == DiskResult::OutOfReach && deletion.asked) {
    return NotKnown("the file was deleted") + " File: " + name;
  }
  return "Not deleted: " + ReasonInWords(deletion.result) + ". File: " + name;
}

std::string ImportDeletionsInWords(const ImportDeletions& deletions) {
  if (deletions.result == DiskResult::OutOfReach) return NotKnown("all files were deleted");
  if (deletions.All() && deletions.result == DiskResult::Done) return {};
  return "Not all files were deleted." +
         StayInWords(deletions.areNew, "new since the list was built") +
         StayInWords(deletions.inUse, "still being written") +
         StayInWords(deletions.refused, ReasonInWords(deletions.result)) +
         (deletions.All() ? " " + ReasonInWords(deletions.result) + "." : "");
}

std::string ImportSentInWords(const ImportSent& sent, const std::string& name,
                              const store::WorkFolders& folders) {
  if (sent.Done()) return {};
  const store::Moved& moved = sent.moved;
  if (sent.inUse) return "Not sent to the Queue: " + std::string(kBeingWritten) + ". File: " + name;
  if (sent.nameTooLong) {
    return "Not sent to the Queue: its name is too long. Shorten it. File: " + name;
  }
  if (moved.result == DiskResult::OutOfReach && moved.asked) {
    const std::string perhaps = moved.rescued.empty() ? "" : "; it may be kept as " + moved.rescued;
    return NotKnown("the file was sent to the Queue") + " File: " + name + perhaps;
  }
  const std::string text = (moved.arrived ? "Sent to the Queue, but it was not deleted here: "
                                          : "Not sent to the Queue: ") +
                           ReasonInWords(moved.result) + ".";
  if (moved.rescued.empty()) return text + " File: " + name;
  const bool inRescueFolder = moved.rescued.starts_with(folders.RescuedPath());
  return text + (inRescueFolder ? " The file is in the rescue folder: " : " The file is kept as ") +
         moved.rescued;
}

std::string ImportBatchInWords(const ImportBatch& batch) {
  if (batch.AllSent()) return {};
  std::string text = std::to_string(batch.sent + batch.arrived) + " of " +
                     FilesInWords(batch.files) + " went to the Queue." +
                     StayInWords(batch.inUse, "still being written");
  if (batch.failed > 0) {
    text += " " + std::to_string(batch.failed) + " did not: " + ReasonInWords(batch.result) + ".";
  }
  if (batch.arrived > 0) {
    text += " " + FilesInWords(batch.arrived) + " could not be deleted here.";
  }
  if (batch.notKnown > 0) text += " " + NotKnown(FilesInWords(batch.notKnown) + " did");
  if (batch.rescued > 0) {
    text += " " + std::to_string(batch.rescued) + " of them were set aside in the rescue folder.";
  }
  if (batch.pastItsTimes || batch.endedEarly)
    text += " The others wait here for the next Send All.";
  if (!batch.whole) text += " The directory could not be read to its end.";
  return text;
}

std::string ImportListCutShortInWords() {
  return "The Import list is not whole: " + ReasonInWords(DiskResult::ProcessInTrouble) +
         ". The next list shows the rest.";
}

std::string NotTakenInWords(const std::vector<NotTaken>& files) {
  if (files.empty()) return {};
  std::string text = "Not taken: ";
  const std::size_t named = std::min(files.size(), kMostNamed);
  for (std::size_t i = 0; i < named; ++i) {
    text += (i == 0 ? "" : ", ") + files[i].name + " (" + files[i].why + ")";
  }
  if (files.size() > named) text += " and " + std::to_string(files.size() - named) + " more";
  return text + ".";
}

}  // namespace tavlo::intake
