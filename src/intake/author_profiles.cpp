#include "intake/author_profiles.h"

#include <iterator>
#include <optional>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "intake/profile_filters.h"
#include "store/settings_fields.h"

namespace tavlo::intake {
namespace {

constexpr std::string_view kNumber = "NumericSorter";
constexpr std::string_view kLastName = "AuthorLastName";

void Choose(forms::Table& list, std::int64_t index) {
  if (index >= 0 && index < static_cast<std::int64_t>(list.Rows().size())) {
    list.ListIndex = static_cast<int>(index);
  }
}

}  // namespace

AuthorProfiles::AuthorProfiles(window::MainWindow& window, window::RowBinding& profile,
                               ImportList& list)
    : form_(window.Form()),
      config_(window.Config()),
      window_(window),
      profile_(profile),
      list_(list) {
  WireFilters();
  WirePriority();
  WireChoice();
  WireServerLink();
}

void AuthorProfiles::WireFilters() {
  struct Filter {
    forms::Text& box;
    std::string (*rule)(std::string_view);
  };
  for (const Filter& filter :
       {Filter{form_.txtImportAuthorLastName, LettersAndDigits},
        Filter{form_.txtImportAuthorID, NumberFromOne},
        Filter{form_.txtImportDepartment, NumberFromOne},
        Filter{form_.txtImportWorktype, WholeNumberOf}, Filter{form_.txtImportSubject, SubjectOf},
        Filter{form_.txtImportSystemID, WholeNumberOf}}) {
    filter.box.OnChange = [this, &box = filter.box, rule = filter.rule] {
      box.Value = rule(box.Value.Get());
      ShowDocument();
    };
  }
}

void AuthorProfiles::WirePriority() {
  for (const window::Binding& binding : profile_.Bindings()) {
    if (!binding.IsPair()) continue;
    binding.text->OnChange = [this, &binding] {
      binding.ShowTick();
      ShowDocument();
    };
    binding.check->OnClick = [&binding] { binding.TakeTick(); };
  }
}

void AuthorProfiles::ShowDocument() {
  const bool priority = store::IsYes(form_.txtImportPriority.Value.Get());
  form_.lblImportDocument.Value =
      (priority ? "Pri " : "") + form_.txtImportAuthorLastName.Value.Get() + " " +
      form_.txtImportAuthorID.Value.Get() + " Dept " + form_.txtImportDepartment.Value.Get() +
      " Work " + form_.txtImportWorktype.Value.Get() + " " + form_.txtImportSubject.Value.Get();
}

void AuthorProfiles::WireChoice() {
  form_.comboAuthorLastName.OnSelect = [this] { ChooseProfile(); };
  form_.txtImportAuthorLastName.OnClick = [this] { AuthorListStale = true; };
  form_.frameImportDemographics.OnPointerMove = [this] { FollowPointer(); };
}

void AuthorProfiles::WireServerLink() {
  config_.comboAuthorLastName.OnSelect = [this] {
    const int index = config_.comboAuthorLastName.ListIndex;
    if (index >= 0) config_.txtFtpParseGenericPointer.Value = std::to_string(index);
  };
  config_.txtFtpParseGenericPointer.OnChange = [this] { ShowServerLink(); };
}

void AuthorProfiles::FillServerLink() {
  StoreEdits();
  FillNames(config_.comboAuthorLastName);
  ShowServerLink();
}

/// A number that no profile has is linked to none.
void AuthorProfiles::ShowServerLink() {
  const forms::Text& pointer = config_.txtFtpParseGenericPointer;
  forms::Table& names = config_.comboAuthorLastName;
  const std::int64_t index = pointer.Value.Get().empty() ? -1 : pointer.WholeNumber();
  const bool isOne = index >= 0 && index < std::ssize(names.Rows());
  names.ListIndex = isOne ? static_cast<int>(index) : -1;
}

void AuthorProfiles::ChooseProfile() {
  const int index = form_.comboAuthorLastName.ListIndex;
  if (index < 0) return;
  const std::string directory = std::to_string(index);
  const bool linked = store::IsYes(form_.txtImportSynchronize.Value.Get());
  const bool turns = linked && form_.txtWavImportSubdirectory.Value.Get() != directory;
  if (turns && !window_.guards.ListsMayChange()) {
    // Another list change is inside a wait, and a profile must not show beside a directory that it
    // is not linked with.
    form_.comboAuthorLastName.ListIndex = ImportProfileIndex;
    return;
  }
  ShowProfile(index + 1);
  ImportProfileIndex = static_cast<std::uint8_t>(index);
  if (!linked) return;
  form_.txtWavImportSubdirectory.Value = directory;
  form_.scrollImportWavSubDirectories.Value = index + 1;
  list_.SetImportButtons();
  window_.FocusAway();
}

void AuthorProfiles::FollowPointer() {
  EditedAuthorName = form_.txtImportAuthorLastName.Value;
  if (!AuthorListStale) return;
  AuthorListStale = false;
  FillLists();
  // Of two profiles with one name the first is shown.
  const std::optional<int> row = profile_.Find(kLastName, EditedAuthorName);
  if (!row) return Choose(form_.comboAuthorLastName, ImportProfileIndex);
  const std::vector<std::string> numbers = profile_.Values(kNumber);
  const std::string& number = numbers[static_cast<std::size_t>(*row)];
  Choose(form_.comboAuthorLastName, base::WholeNumberValue(number) - 1);
}

void AuthorProfiles::FillLists() {
  FillServerLink();
  FillNames(form_.comboAuthorLastName);
}

void AuthorProfiles::FillNames(forms::Table& list) const {
  list.Clear();
  for (const std::string& name : profile_.Values(kLastName)) list.Add(name);
}

void AuthorProfiles::EnterLists() {
  FillLists();
  Choose(form_.comboAuthorLastName, ImportProfileIndex);
}

bool AuthorProfiles::ShowProfile(int number) {
  const std::optional<int> row = profile_.Find(kNumber, std::to_string(number));
  return row && MoveTo(*row);
}

bool AuthorProfiles::ShowFirst() { return MoveTo(0); }

void AuthorProfiles::ShowRow(int row) {
  if (row != window::RowBinding::kNoRow) MoveTo(row);
}

bool AuthorProfiles::MoveTo(int row) {
  StoreEdits();
  return profile_.Row() == row || profile_.Show(row);
}

void AuthorProfiles::StoreEdits() {
  if (profile_.HasEdits()) profile_.Save();
}

}  // namespace tavlo::intake
