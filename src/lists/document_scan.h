#pragma once

#include <functional>
#include <string>

#include "base/loop.h"
#include "forms/main_form.h"
#include "playback/audio_engine.h"
#include "store/disk.h"
#include "store/document_name.h"
#include "store/folder_walk.h"
#include "store/work_folders.h"

namespace tavlo::lists {

/// How a walk over the documents of a folder ended.
enum class ScanEnd {
  Whole,
  /// The walk could not start, or not go on, or a file gave no answer: the caller says so.
  OutOfReach,
  CutShort,  ///< The process has no handles or memory left: the caller says so quietly.
};

/// The walk that the Queue and the Completed list have in common: it empties a list and makes a row
/// for each file of a folder, with the facts from the file's name and the length of its sound.
/// Whatever plays stops at the first row, because the one audio file measures the documents too.
/// Afterwards no row is highlighted, so no document is chosen: neither Play nor Complete takes one.
class DocumentScan {
 public:
  DocumentScan(base::Loop& loop, forms::MainForm& form, store::Disk& disk,
               store::DocumentNames& names, playback::AudioEngine& engine);

  /// Sum of the lengths of the rows, milliseconds. A walk that could not start leaves it, and the
  /// rows, as they were; none of them is chosen any more.
  double TotalLength = 0;

  /// Whether the file at which the walk stands is locked. When it is not, its parsed name stands in
  /// the names' record.
  using ParseIfFree = std::function<store::Locked(store::FolderWalk& walk)>;

  /// `parseIfFree` is asked for each file; what is locked gets no row. `folder` ends in a
  /// separator. The list is sorted only by a walk that came to the end of the folder. No audio file
  /// stays open.
  ScanEnd Run(forms::Table& list, const std::string& folder, const ParseIfFree& parseIfFree);

 private:
  /// Frees the rows bit by bit: all rows of a long list take longer than a breath may be late.
  void Empty(forms::Table& list);
  ScanEnd AddRows(forms::Table& list, store::FolderWalk& walk, const ParseIfFree& parseIfFree);
  /// Whole when the walk may go on.
  ScanEnd AddRow(forms::Table& list, store::FolderWalk& walk);

  base::Loop& loop_;
  forms::MainForm& form_;
  store::Disk& disk_;
  store::DocumentNames& names_;
  playback::AudioEngine& engine_;
};

}  // namespace tavlo::lists
