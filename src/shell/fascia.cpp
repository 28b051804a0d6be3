#include "shell/fascia.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace tavlo::shell {

Fascia::Fascia(forms::MainForm& form, store::Disk& disk, const store::WorkFolders& folders)
    : form_(form), disk_(disk), folders_(folders) {
  form_.imageFaciaA.OnClick = [this] { ShowNextPicture(); };
  form_.imageFaciaB.OnClick = [this] { ShowNextPicture(); };
}

void Fascia::ListFasciaImages() {
  std::vector<std::string> names = disk_.ListPlainFiles(folders_.FasciaPath()).names;
  std::ranges::sort(names);
  form_.listFasciaImages.Clear();
  for (const std::string& name : names) form_.listFasciaImages.Add(name);
}

void Fascia::LoadFasciaPictures() {
  const auto number = form_.txtFasciaImagePointer.WholeNumber();
  if (number < 0 || number > std::numeric_limits<std::uint8_t>::max()) return;
  FasciaIndex = static_cast<std::uint8_t>(number);
  if (SelectEntry()) ShowSelected();
}

void Fascia::ShowNextPicture() {
  const auto count = static_cast<int>(form_.listFasciaImages.Rows().size());
  const int last = std::min<int>(count, std::numeric_limits<std::uint8_t>::max());
  FasciaIndex = FasciaIndex < last ? static_cast<std::uint8_t>(FasciaIndex + 1) : 1;
  const bool selected = SelectEntry();
  form_.txtFasciaImagePointer.Value = std::to_string(FasciaIndex);
  if (selected) ShowSelected();
}

bool Fascia::SelectEntry() {
  const int entry = FasciaIndex - 1;
  if (entry < 0 || entry >= static_cast<int>(form_.listFasciaImages.Rows().size())) return false;
  form_.listFasciaImages.ListIndex = entry;
  return true;
}

void Fascia::ShowSelected() {
  const forms::Table& list = form_.listFasciaImages;
  const std::string path = folders_.FasciaPath() + list.TextAt(list.ListIndex, 0);
  for (forms::Pane* const picture : {&form_.imageFaciaA, &form_.imageFaciaB}) {
    picture->Picture = path;
    // The name may be the same and the file another one.
    picture->MarkChanged();
  }
}

}  // namespace tavlo::shell
