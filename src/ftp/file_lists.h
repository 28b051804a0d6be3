#pragma once

#include <string>
#include <string_view>

#include "ftp/channel.h"

namespace tavlo::ftp {

/// Whether a file of a listing is of the type that a choice of `comboFtpFileTypesToList` names.
bool IsOfType(std::string_view file, std::string_view type);

/// The listing of the server's directory and the two lists: what the server has, and what is to be
/// fetched.
class FileLists {
 public:
  /// What stands in the list of the server while nothing does.
  static constexpr const char* kNothingListed =
      "Nothing is listed\nPress List to see the server's files.";

  explicit FileLists(Channel& channel);

  /// The press of `bList`.
  void FtpListFiles();
  /// Empties both lists.
  void Clear();
  /// Rewrites the captions that count both lists.
  void ShowCounts();

 private:
  void ShowList();
  void TakeNames();
  void MoveAllToDownload();
  void MoveAllToList();
  void MoveOneToDownload();
  void MoveOneToList();
  /// A file is under way, which stays where it is.
  bool RunIsOn() const;

  Channel& channel_;
  forms::MainForm& form_;
};

}  // namespace tavlo::ftp
