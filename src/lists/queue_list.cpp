#include "lists/queue_list.h"

#include "lists/document_rows.h"
#include "lists/outcome_in_words.h"

namespace tavlo::lists {
namespace {

constexpr forms::Twips kSavedWidth = 650;

}  // namespace

QueueList::QueueList(base::Loop& loop, forms::MainForm& form, window::MainWindow& window,
                     store::Disk& disk, store::WorkFolders& folders, store::DocumentNames& names,
                     playback::AudioEngine& engine)
    : loop_(loop),
      form_(form),
      window_(window),
      folders_(folders),
      names_(names),
      scan_(loop, form, disk, names, engine) {
  form_.listViewInQueue.OnHeaderClick = [this](int column) {
    form_.listViewInQueue.SortByHeader(column);
  };
}

void QueueList::MakeColumns(const std::string& subjectHeading) {
  form_.listViewInQueue.SetColumns(DocumentColumns(subjectHeading, kSavedWidth));
  form_.listViewInQueue.WhenEmpty = NothingWaits();
}

std::string QueueList::NothingWaits() const {
  const std::string& folder = folders_.InQueuePath;
  return "Nothing waits to be typed\nDrop dictations into " + folder.substr(0, folder.size() - 1);
}

bool QueueList::RefreshQueueList() {
  const ScanEnd end =
      scan_.Run(form_.listViewInQueue, folders_.InQueuePath,
                [this](const std::string& scanFileName) { return ParseIfFree(scanFileName); });
  QueueCount = static_cast<int>(form_.listViewInQueue.Rows().size());
  QueueTotalLength = scan_.TotalLength;
  form_.listViewInQueue.WhenEmpty =
      end == ScanEnd::Whole ? NothingWaits() : std::string(kListIsNotWhole);
  if (end == ScanEnd::OutOfReach) loop_.Show(folders_.QueueNetworkFault());
  if (end == ScanEnd::Whole) {
    form_.frameInQueue.Caption = ListCaption("Queue", QueueCount, QueueTotalLength);
  }
  window_.SayWhile(end == ScanEnd::CutShort, CutShortInWords("Queue"));
  return end == ScanEnd::Whole;
}

store::Locked QueueList::ParseIfFree(const std::string& scanFileName) {
  names_.ParseDocumentName(scanFileName);
  // A file with a saved position was opened and saved by this program: nobody else is writing it.
  if (names_.Record.SavedPosition != 0) return store::Locked::No;
  return folders_.FileIsLocked(folders_.InQueuePath + scanFileName);
}

}  // namespace tavlo::lists
