#include "lists/document_scan.h"

#include "base/text.h"
#include "lists/document_rows.h"
#include "window/no_document.h"

namespace tavlo::lists {

DocumentScan::DocumentScan(base::Loop& loop, forms::MainForm& form, store::Disk& disk,
                           store::DocumentNames& names, playback::AudioEngine& engine)
    : loop_(loop), form_(form), disk_(disk), names_(names), engine_(engine) {}

ScanEnd DocumentScan::Run(forms::Table& list, const std::string& folder,
                          const ParseIfFree& parseIfFree) {
  window::ShowNoDocument(form_);
  const store::Listing walk = disk_.ListPlainFiles(folder);
  if (!walk.started) {
    // Another view may have sounded something else since the row was chosen; Play would take that
    // for the row's document.
    list.ListIndex = -1;
    return walk.processInTrouble ? ScanEnd::CutShort : ScanEnd::OutOfReach;
  }
  TotalLength = 0;
  list.Clear();
  const ScanEnd end = AddRows(list, folder, walk, parseIfFree);
  engine_.CloseFile();
  if (end == ScanEnd::Whole) SortByPriorityAndAge(list);
  return end;
}

ScanEnd DocumentScan::AddRows(forms::Table& list, const std::string& folder,
                              const store::Listing& walk, const ParseIfFree& parseIfFree) {
  for (const std::string& scanFileName : walk.names) {
    loop_.Breathe();
    const store::Locked locked = parseIfFree(scanFileName);
    if (locked == store::Locked::NotKnown) return ScanEnd::CutShort;
    if (locked == store::Locked::Yes) continue;
    if (!AddRow(list, folder, scanFileName)) return ScanEnd::CutShort;
  }
  if (walk.processInTrouble) return ScanEnd::CutShort;
  return walk.finished ? ScanEnd::Whole : ScanEnd::OutOfReach;
}

bool DocumentScan::AddRow(forms::Table& list, const std::string& folder,
                          const std::string& scanFileName) {
  if (engine_.IsPlaying) engine_.StopPlay();
  engine_.CloseFile();
  const playback::OpenResult result = engine_.File().OpenFile(folder + scanFileName);
  if (engine_.File().OpenStatus() < 0) return false;
  const bool opened = result == playback::OpenResult::Opened;
  const double length = opened ? static_cast<double>(engine_.File().LengthMilliseconds()) : 0.0;
  TotalLength += length;
  list.Add(DocumentRow(names_.Record, scanFileName, base::FormatHMS(length)));
  return true;
}

}  // namespace tavlo::lists
