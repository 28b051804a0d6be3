#include "ftp/server_list.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "base/text.h"
#include "intake/import_directories.h"
#include "store/settings_fields.h"

namespace tavlo::ftp {
namespace {

constexpr std::string_view kName = "FtpServerName";
constexpr std::string_view kFileType = "FtpListFileDefinition";

std::string ImportDirectoryOf(std::string_view pointer) {
  const std::int64_t number = base::WholeNumberValue(pointer);
  const bool isOne = number >= 0 && number < intake::kImportDirectories;
  return isOne ? std::to_string(number) : "";
}

}  // namespace

ServerList::ServerList(forms::MainForm& form, window::RowBinding& profiles)
    : form_(form), profiles_(profiles) {
  form_.comboFtpServerNames.OnSelect = [this] { TakeChoice(); };
}

void ServerList::BuildFtpServers() {
  forms::Table& list = form_.comboFtpServerNames;
  std::vector<std::string> names = profiles_.Values(kName);
  const int most = store::ShapeOf(store::Table::FtpSettings).rows;
  if (std::ssize(names) > most) names.resize(static_cast<std::size_t>(most));
  list.Clear();
  for (std::string& name : names) list.Add(std::move(name));
  const std::int64_t stored = form_.txtFtpServerSelection.WholeNumber();
  if (stored >= 0 && stored < std::ssize(names)) list.ListIndex = static_cast<int>(stored);
  // Whoever is connected goes on with the type that the list of files was made by.
  if (form_.bConnect.Caption.Get() == "Disconnect") return;
  const std::optional<int> row = ChosenRow();
  const std::string type = row ? Value(*row, kFileType) : "";
  if (type != takenFileType_) ChooseFileType(type);
}

const std::string& ServerList::ChosenName() const {
  const forms::Table& list = form_.comboFtpServerNames;
  return list.TextAt(list.ListIndex, 0);
}

std::optional<ServerProfile> ServerList::Chosen() const {
  const std::optional<int> row = ChosenRow();
  if (!row) return {};
  return ServerProfile{
      .address = Value(*row, "FtpServerID"),
      .user = Value(*row, "FtpServerUserID"),
      .password = Value(*row, "FtpServerPassword"),
      .directory = Value(*row, "FtpServerDir"),
      .deleteFiles = store::IsTruth(Value(*row, "FtpDeleteFileCheck")),
      .autoListAndDownload = store::IsTruth(Value(*row, "FtpAutoListDownloadCheck")),
      .passive = store::IsTruth(Value(*row, "FtpPassiveModeCheck")),
      .parseGenericPointer = ImportDirectoryOf(Value(*row, "FtpParseGenericPointer")),
  };
}

void ServerList::TakeChoice() {
  const int index = form_.comboFtpServerNames.ListIndex;
  // A list that is built again empties itself and puts the stored choice back.
  if (index < 0 || index == form_.txtFtpServerSelection.WholeNumber()) return;
  form_.txtFtpServerSelection.Value = std::to_string(index);
  if (const std::optional<int> row = ChosenRow()) ChooseFileType(Value(*row, kFileType));
  form_.eMessage.Value = "";
  form_.eMessage.Tooltip = "";
}

void ServerList::ChooseFileType(const std::string& type) {
  forms::Table& types = form_.comboFtpFileTypesToList;
  for (int row = 0; row < static_cast<int>(types.Rows().size()); ++row) {
    if (types.TextAt(row, 0) != type) continue;
    takenFileType_ = type;
    types.ListIndex = row;
    return;
  }
}

std::optional<int> ServerList::ChosenRow() const {
  if (ChosenName().empty()) return {};
  return profiles_.Find(kName, ChosenName());
}

std::string ServerList::Value(int row, std::string_view field) const {
  return profiles_.Values(field)[static_cast<std::size_t>(row)];
}

}  // namespace tavlo::ftp
