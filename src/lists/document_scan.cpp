#include "lists/document_scan.h"

#include <memory>
#include <vector>

#include "base/text.h"
#include "lists/document_rows.h"
#include "window/no_document.h"

namespace tavlo::lists {
namespace {

/// To free so many rows takes some hundred microseconds.
constexpr std::size_t kFreedAtOnce = 250;

ScanEnd EndOf(const store::FolderWalk& walk) {
  switch (walk.End()) {
    case store::WalkEnd::Whole:
      return ScanEnd::Whole;
    case store::WalkEnd::ProcessInTrouble:
      return ScanEnd::CutShort;
    case store::WalkEnd::OutOfReach:
      break;
  }
  return ScanEnd::OutOfReach;
}

}  // namespace

DocumentScan::DocumentScan(base::Loop& loop, forms::MainForm& form, store::Disk& disk,
                           store::DocumentNames& names, playback::AudioEngine& engine)
    : loop_(loop), form_(form), disk_(disk), names_(names), engine_(engine) {}

ScanEnd DocumentScan::Run(forms::Table& list, const std::string& folder,
                          const ParseIfFree& parseIfFree) {
  window::ShowNoDocument(form_);
  const std::unique_ptr<store::FolderWalk> walk = disk_.Walk(folder);
  if (!walk->Started()) {
    // Another view may have sounded something else since the row was chosen; Play would take that
    // for the row's document.
    list.ListIndex = -1;
    return EndOf(*walk);
  }
  TotalLength = 0;
  Empty(list);
  const ScanEnd end = AddRows(list, *walk, parseIfFree);
  engine_.CloseFile();
  if (end == ScanEnd::Whole) SortByPriorityAndAge(list, [this] { loop_.Breathe(); });
  return end;
}

void DocumentScan::Empty(forms::Table& list) {
  std::vector<forms::Row> rows = list.TakeRows();
  for (; rows.size() > kFreedAtOnce; loop_.Breathe()) rows.resize(rows.size() - kFreedAtOnce);
}

ScanEnd DocumentScan::AddRows(forms::Table& list, store::FolderWalk& walk,
                              const ParseIfFree& parseIfFree) {
  while (walk.Next()) {
    loop_.Breathe();
    const store::Locked locked = parseIfFree(walk);
    if (locked == store::Locked::NotKnown) return ScanEnd::CutShort;
    if (locked == store::Locked::OutOfReach) return ScanEnd::OutOfReach;
    if (locked == store::Locked::Yes) continue;
    const ScanEnd added = AddRow(list, walk);
    if (added != ScanEnd::Whole) return added;
  }
  return EndOf(walk);
}

ScanEnd DocumentScan::AddRow(forms::Table& list, store::FolderWalk& walk) {
  if (engine_.IsPlaying) engine_.StopPlay();
  engine_.CloseFile();
  const store::HeldFile& held = walk.Open();
  if (held.opened == store::DiskResult::OutOfReach) return ScanEnd::OutOfReach;
  const playback::OpenResult result = engine_.File().OpenHeldFile(held);
  if (engine_.File().OpenStatus() < 0) return ScanEnd::CutShort;
  // A file that has gone gets its row. One that gives no answer would seem to hold no sound.
  const bool gaveNoAnswer =
      result == playback::OpenResult::OutOfReach && disk_.OutOfReach(held.path);
  if (gaveNoAnswer) return ScanEnd::OutOfReach;
  const bool opened = result == playback::OpenResult::Opened;
  const double length = opened ? static_cast<double>(engine_.File().LengthMilliseconds()) : 0.0;
  TotalLength += length;
  list.Add(DocumentRow(names_.Record, walk.Name(), base::FormatHMS(length)));
  return ScanEnd::Whole;
}

}  // namespace tavlo::lists
