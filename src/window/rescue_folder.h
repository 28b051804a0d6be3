#pragma once

#include <functional>
#include <string>

#include "base/loop.h"
#include "forms/main_form.h"
#include "store/disk.h"
#include "store/rescue_count.h"
#include "store/work_folders.h"

namespace tavlo::window {

/// The key to the rescue folder. It shows with the number of documents in there while there are
/// any, and opens the folder for a hand.
class RescueFolder : public store::RescueCount {
 public:
  /// Shows a folder in the desktop's file manager and does not wait for it. False when there is
  /// none that would start.
  using OpenFolder = std::function<bool(const std::string& folder)>;

  RescueFolder(base::Loop& loop, forms::MainForm& form, store::Disk& disk,
               const store::WorkFolders& folders, OpenFolder openFolder);

  /// A folder that cannot be read leaves the key as it was: nothing is known of what it holds.
  void CountRescued() override;

 private:
  void Open();
  void Say(const std::string& why);
  /// Full path without a trailing separator.
  std::string Path() const;

  base::Loop& loop_;
  forms::Command& key_;
  store::Disk& disk_;
  const store::WorkFolders& folders_;
  OpenFolder openFolder_;
};

}  // namespace tavlo::window
