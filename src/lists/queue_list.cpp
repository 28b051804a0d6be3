#include "lists/queue_list.h"

#include "lists/document_rows.h"
#include "lists/outcome_in_words.h"

namespace tavlo::lists {
namespace {

constexpr forms::Twips kSavedWidthInQueue = 650;

}  // namespace

QueueList::QueueList(base::Loop& loop, window::MainWindow& window,
                     const store::DocumentFiles& files, playback::AudioEngine& engine)
    : loop_(loop),
      form_(window.Form()),
      window_(window),
      folders_(files.folders),
      names_(files.names),
      moves_(files.moves),
      rescued_(files.rescued),
      scan_(loop, form_, files.disk, files.names, engine) {
  form_.listViewInQueue.OnHeaderClick = [this](int column) {
    form_.listViewInQueue.SortByHeader(column);
  };
}

void QueueList::MakeColumns(const std::string& subjectHeading) {
  form_.listViewInQueue.SetColumns(DocumentColumns(subjectHeading, kSavedWidthInQueue));
  form_.listViewInQueue.WhenEmpty = NothingWaits();
}

std::string QueueList::NothingWaits() const {
  const std::string& folder = folders_.InQueuePath;
  return "Nothing waits to be typed\nDrop dictations into " + folder.substr(0, folder.size() - 1);
}

bool QueueList::RefreshQueueList() {
  moves_.TakeBackUnfinished();
  const ScanEnd end = scan_.Run(form_.listViewInQueue, folders_.InQueuePath,
                                [this](store::FolderWalk& walk) { return ParseIfFree(walk); });
  QueueCount = static_cast<int>(form_.listViewInQueue.Rows().size());
  QueueTotalLength = scan_.TotalLength;
  form_.listViewInQueue.WhenEmpty =
      end == ScanEnd::Whole ? NothingWaits() : std::string(kListIsNotWhole);
  if (end == ScanEnd::OutOfReach) loop_.Show(folders_.QueueNetworkFault());
  if (end == ScanEnd::Whole) {
    form_.frameInQueue.Caption = ListCaption("Queue", QueueCount, QueueTotalLength);
  }
  window_.SayWhile(end == ScanEnd::CutShort, CutShortInWords("Queue"));
  rescued_.CountRescued();
  return end == ScanEnd::Whole;
}

store::Locked QueueList::ParseIfFree(store::FolderWalk& walk) {
  names_.ParseDocumentName(walk.Name());
  // A file with a saved position was opened and saved by this program, so no other one is writing
  // it.
  if (names_.Record.SavedPosition != 0) return store::Locked::No;
  return store::WorkFolders::FileIsLocked(walk);
}

}  // namespace tavlo::lists
