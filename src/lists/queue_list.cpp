#include "lists/queue_list.h"

#include "base/text.h"
#include "lists/document_rows.h"

namespace tavlo::lists {
namespace {

constexpr forms::Twips kSavedWidth = 650;

}  // namespace

QueueList::QueueList(base::Loop& loop, forms::MainForm& form, store::Disk& disk,
                     store::WorkFolders& folders, store::DocumentNames& names,
                     playback::AudioEngine& engine)
    : loop_(loop), form_(form), disk_(disk), folders_(folders), names_(names), engine_(engine) {
  form_.listViewInQueue.OnHeaderClick = [this](int column) {
    form_.listViewInQueue.SortByHeader(column);
  };
}

void QueueList::MakeColumns(const std::string& subjectHeading) {
  form_.listViewInQueue.SetColumns(DocumentColumns(subjectHeading, kSavedWidth));
}

void QueueList::RefreshQueueList() {
  form_.lblFileLengthHMS.Value = "00:00:00";
  form_.lblFilePositionHMS.Value = "00:00:00";
  const store::Listing walk = disk_.ListPlainFiles(folders_.InQueuePath);
  if (!walk.started) {
    loop_.Show(folders_.QueueNetworkFault());
    return;
  }
  QueueCount = 0;
  QueueTotalLength = 0;
  form_.listViewInQueue.Clear();
  for (const std::string& scanFileName : walk.names) {
    loop_.Breathe();
    if (ScanFile(scanFileName) == Step::EndScan) return;
  }
  engine_.CloseFile();
  if (!walk.finished) {
    loop_.Show(folders_.QueueNetworkFault());
    return;
  }
  WriteCaption();
  SortByPriorityAndAge(form_.listViewInQueue);
}

QueueList::Step QueueList::ScanFile(const std::string& scanFileName) {
  names_.ParseDocumentName(scanFileName);
  const std::string path = folders_.InQueuePath + scanFileName;
  // A file with a saved position was opened and saved by this program: nobody else is writing it.
  if (names_.Record.SavedPosition == 0 && folders_.FileIsLocked(path)) return Step::NoRow;
  if (engine_.IsPlaying) engine_.StopPlay();
  engine_.CloseFile();
  OpenFailed = !engine_.File().OpenFile(path);
  if (engine_.File().OpenStatus() < 0) return Step::EndScan;
  const double length = OpenFailed ? 0.0 : static_cast<double>(engine_.File().LengthMilliseconds());
  QueueTotalLength += length;
  form_.listViewInQueue.Add(DocumentRow(names_.Record, scanFileName, base::FormatHMS(length)));
  ++QueueCount;
  return Step::Row;
}

void QueueList::WriteCaption() {
  form_.frameInQueue.Caption =
      "Queue:     " + std::to_string(QueueCount) + "     " + base::FormatHMS(QueueTotalLength);
}

}  // namespace tavlo::lists
