#pragma once

#include <cstdint>

#include "forms/main_form.h"
#include "store/disk.h"
#include "store/work_folders.h"

namespace tavlo::shell {

/// The player's face: a picture of the fascia folder, which a click on the deck changes for the
/// next one. The number of the chosen picture is kept in the settings. A number without a picture
/// leaves the face as it is.
class Fascia {
 public:
  Fascia(forms::MainForm& form, store::Disk& disk, const store::WorkFolders& folders);

  /// Number of the picture on show, from 1.
  std::uint8_t FasciaIndex = 0;

  /// Fills the hidden list with the names of the pictures. Folders give their files in any order,
  /// and a stored number must mean the same picture tomorrow, so the names are sorted.
  void ListFasciaImages();
  /// Shows the picture whose number the settings hold. Each call reads the file anew, so a picture
  /// that was painted over appears.
  void LoadFasciaPictures();

 private:
  void ShowNextPicture();
  /// Selects the entry of `FasciaIndex`; false when the list has none.
  bool SelectEntry();
  void ShowSelected();

  forms::MainForm& form_;
  store::Disk& disk_;
  const store::WorkFolders& folders_;
};

}  // namespace tavlo::shell
