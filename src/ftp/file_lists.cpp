#include "ftp/file_lists.h"

#include <optional>
#include <utility>

#include "base/text.h"

namespace tavlo::ftp {
namespace {

constexpr std::size_t kListBuffer = 25000;

bool EndsInLetters(std::string_view file, std::string_view letters) {
  return file.size() >= letters.size() && base::EndsInEitherCase(file, letters);
}

bool MoveRow(forms::Table& from, forms::Table& to, int row) {
  if (row < 0 || row >= static_cast<int>(from.Rows().size())) return false;
  to.Add(from.TextAt(row, 0));
  from.Remove(row);
  from.ListIndex = -1;
  return true;
}

void MoveAll(forms::Table& from, forms::Table& to) {
  for (forms::Row& row : from.TakeRows()) to.Add(std::move(row));
}

}  // namespace

bool IsOfType(std::string_view file, std::string_view type) {
  if (type == "All files") return true;
  if (type == "Orvane files") {
    return EndsInLetters(file, "eU2") || EndsInLetters(file, "eW2") || EndsInLetters(file, "dS2");
  }
  return EndsInLetters(file, type.substr(0, 3));
}

FileLists::FileLists(Channel& channel) : channel_(channel), form_(channel.form) {
  form_.bList.OnPress = [this] { FtpListFiles(); };
  form_.cmdFtpListToDownload.OnPress = [this] { MoveAllToDownload(); };
  form_.cmdFtpDownloadToList.OnPress = [this] { MoveAllToList(); };
  form_.listFtpList.OnClick = [this] { MoveOneToDownload(); };
  form_.listFtpDownloadList.OnClick = [this] { MoveOneToList(); };
}

void FileLists::FtpListFiles() {
  if (!channel_.MayBegin()) return;
  if (!channel_.FtpConnected) {
    channel_.Display("Not connected");
    channel_.FocusAway();
    return;
  }
  channel_.FtpListBuffer.assign(kListBuffer, ' ');
  const std::optional<int> result = channel_.Ask([this] {
    return channel_.edges.client.fceGetList(FtpClient::kNames, channel_.FtpListBuffer, kListBuffer);
  });
  if (!result) return;
  form_.bDownload.Caption = "Download";
  form_.bDownload.Enabled = false;
  form_.eByteCount.Enabled = false;
  channel_.FtpHaltRequested = false;
  form_.frameFtpDownloadList.Enabled = false;
  form_.cmdFtpDownloadToList.Enabled = false;
  Clear();
  form_.bList.Enabled = false;
  form_.listFtpList.WhenEmpty = std::string(kNothingListed);
  if (*result > 0) {
    ShowList();
  } else if (*result == 0) {
    channel_.Display("No files found");
    form_.bList.Enabled = true;
  } else {
    channel_.ShowError(*result);
    channel_.OfferConnect();
  }
}

void FileLists::ShowList() {
  TakeNames();
  form_.frameFtpFilename.Caption =
      "Files in list: " + std::to_string(form_.listFtpList.Rows().size());
  channel_.Display("List completed");
  form_.cmdFtpListToDownload.Enabled = !form_.listFtpList.Rows().empty();
  form_.bList.Enabled = true;
  channel_.FocusAway();
}

void FileLists::TakeNames() {
  const forms::Table& types = form_.comboFtpFileTypesToList;
  const std::string& type = types.TextAt(types.ListIndex, 0);
  for (const std::string_view file : LinesOf(channel_.FtpListBuffer)) {
    if (IsOfType(file, type)) form_.listFtpList.Add(std::string(file));
  }
}

void FileLists::Clear() {
  form_.listFtpList.Clear();
  form_.listFtpDownloadList.Clear();
  ShowCounts();
}

void FileLists::ShowCounts() {
  form_.frameFtpFilename.Caption =
      "Files in list: " + std::to_string(form_.listFtpList.Rows().size());
  form_.frameFtpDownloadList.Caption =
      "Files to download: " + std::to_string(form_.listFtpDownloadList.Rows().size());
}

bool FileLists::RunIsOn() const { return form_.bDownload.Caption.Get() == "Halt"; }

void FileLists::MoveAllToDownload() {
  if (!channel_.MayBegin()) return;
  MoveAll(form_.listFtpList, form_.listFtpDownloadList);
  form_.cmdFtpListToDownload.Enabled = false;
  form_.cmdFtpDownloadToList.Enabled = true;
  form_.bDownload.Enabled = !channel_.FtpLost;
  form_.eByteCount.Enabled = true;
  form_.frameFtpDownloadList.Enabled = true;
  channel_.Display("");
  ShowCounts();
}

void FileLists::MoveAllToList() {
  // This is our own decision: as with a click on one of them, nothing leaves the list of a run, for
  // its first file is the one that is under way.
  if (!channel_.MayBegin() || RunIsOn()) return;
  MoveAll(form_.listFtpDownloadList, form_.listFtpList);
  form_.cmdFtpDownloadToList.Enabled = false;
  form_.cmdFtpListToDownload.Enabled = true;
  form_.bDownload.Enabled = false;
  form_.eByteCount.Enabled = false;
  form_.frameFtpDownloadList.Enabled = false;
  channel_.Display("");
  ShowCounts();
}

void FileLists::MoveOneToDownload() {
  if (!channel_.MayBegin()) return;
  if (!MoveRow(form_.listFtpList, form_.listFtpDownloadList, form_.listFtpList.ListIndex)) return;
  form_.cmdFtpDownloadToList.Enabled = true;
  form_.bDownload.Enabled = !channel_.FtpLost;
  form_.eByteCount.Enabled = true;
  form_.frameFtpDownloadList.Enabled = true;
  channel_.Display("");
  if (form_.listFtpList.Rows().empty()) form_.cmdFtpListToDownload.Enabled = false;
  ShowCounts();
}

void FileLists::MoveOneToList() {
  if (!channel_.MayBegin() || RunIsOn()) return;
  if (!MoveRow(form_.listFtpDownloadList, form_.listFtpList, form_.listFtpDownloadList.ListIndex)) {
    return;
  }
  form_.cmdFtpListToDownload.Enabled = true;
  if (form_.listFtpDownloadList.Rows().empty()) {
    form_.cmdFtpDownloadToList.Enabled = false;
    form_.bDownload.Enabled = false;
    form_.eByteCount.Enabled = false;
    form_.frameFtpDownloadList.Enabled = false;
  }
  ShowCounts();
}

}  // namespace tavlo::ftp
