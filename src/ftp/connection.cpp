#include "ftp/connection.h"

#include "forms/control_groups.h"

namespace tavlo::ftp {
namespace {

using base::operator""ms;

constexpr base::Duration kWait = 1000ms;

const char* const kNotConnected = "Not connected\nChoose a server and press Connect.";

}  // namespace

Connection::Connection(Channel& channel, FileLists& lists)
    : channel_(channel), form_(channel.form), lists_(lists) {
  form_.listFtpList.WhenEmpty = kNotConnected;
  form_.bConnect.OnPress = [this] { FtpConnectOrDisconnect(); };
}

void Connection::FtpConnectOrDisconnect() {
  // In the wait of another command a log-in would keep that command waiting, too.
  if (!channel_.MayBegin() || channel_.OthersWait()) return;
  if (channel_.edges.servers.ChosenName().empty()) return;
  if (form_.bConnect.Caption.Get() == "Disconnect") {
    Disconnect();
  } else {
    Connect();
  }
}

void Connection::Disconnect() {
  if (channel_.FtpConnected) channel_.edges.client.fceClose();
  form_.bConnect.Caption = "Connect";
  form_.comboFtpServerNames.Enabled = true;
  HideWork(true);
  form_.lblFtpParsing.Visible = true;
  form_.lblFtpWait.Visible = true;
  DisableWork();
  form_.eByteCount.Value = "";
  form_.bDownload.Caption = "Download";
  if (!channel_.Wait(kWait)) return;
  // A box of the sort may stand for hours, and automatic retrieval would log in under it.
  channel_.During([this] { channel_.edges.sort.RunFtpSort(); });
  if (channel_.Ended()) return;
  channel_.GiveMenusBack();
  HideWork(false);
  form_.lblFtpParsing.Visible = false;
  form_.lblFtpWait.Visible = false;
  form_.listFtpList.WhenEmpty = kNotConnected;
  lists_.Clear();
  channel_.Display("");
  channel_.Display("Disconnected");
  channel_.Wait(kWait);
}

void Connection::HideWork(bool hidden) {
  for (forms::Control* const control :
       {static_cast<forms::Control*>(&form_.frameFtpFilename),
        static_cast<forms::Control*>(&form_.frameFtpConnectionStatus),
        static_cast<forms::Control*>(&form_.frameFtpDownloadList),
        static_cast<forms::Control*>(&form_.cmdFtpDownloadToList),
        static_cast<forms::Control*>(&form_.cmdFtpListToDownload),
        static_cast<forms::Control*>(&form_.eMessage)}) {
    control->Visible = !hidden;
  }
}

void Connection::DisableWork() {
  forms::SetEnabled({&form_.bDownload, &form_.eByteCount, &form_.cmdFtpDownloadToList,
                     &form_.cmdFtpListToDownload, &form_.bList, &form_.comboFtpFileTypesToList,
                     &form_.frameFtpFilename, &form_.frameFtpDownloadList},
                    false);
}

void Connection::Connect() {
  const std::optional<ServerProfile> profile = channel_.edges.servers.Chosen();
  if (!profile) return;
  form_.bConnect.Caption = "Disconnect";
  form_.bConnect.Enabled = false;
  form_.bDownload.Caption = "Download";
  form_.comboFtpServerNames.Enabled = false;
  channel_.FtpConnected = false;
  channel_.TakeMenus();
  if (!channel_.Wait(0ms)) return;
  // Under automatic retrieval the pointer is that of whatever work is under way.
  if (form_.frameFtp.Visible) form_.frmMain.MousePointer = forms::Pointer::Arrow;
  channel_.Display("");
  channel_.Display("Connecting to server " + profile->address);
  form_.txtFtpParseImportDirPointer.Value = profile->parseGenericPointer;
  const std::optional<int> result = LogIn(*profile);
  if (!result) return;
  if (*result < 0) {
    channel_.ShowError(*result);
    channel_.OfferConnect();
    return;
  }
  BeConnected(*profile);
}

std::optional<int> Connection::LogIn(const ServerProfile& profile) {
  FtpClient& client = channel_.edges.client;
  std::optional<int> result = channel_.Ask(
      [&] { return client.fceConnect(profile.address, profile.user, profile.password); });
  if (!result || *result < 0) return result;
  channel_.Display("Connected");
  result = channel_.Ask([&] { return client.fceSetLocalDir(channel_.edges.folders.FtpQueuePath); });
  if (!result || *result < 0) return result;
  result = channel_.Ask([&] { return client.fceSetServerDir(profile.directory); });
  if (!result || *result < 0) return result;
  client.fceSetMode('B');
  if (profile.passive) client.fceSetInteger(FtpClient::kPassive, 1);
  return result;
}

void Connection::BeConnected(const ServerProfile& profile) {
  channel_.FtpConnected = true;
  channel_.FtpDeleteFileCheck = profile.deleteFiles;
  forms::SetEnabled(
      {&form_.bConnect, &form_.bList, &form_.comboFtpFileTypesToList, &form_.frameFtpFilename},
      true);
  form_.listFtpList.WhenEmpty = FileLists::kNothingListed;
  if (profile.autoListAndDownload) {
    form_.bList.Press();
    if (channel_.Ended()) return;
    if (!form_.listFtpList.Rows().empty()) {
      form_.cmdFtpListToDownload.Press();
      form_.bDownload.Press();
    } else {
      form_.bList.Enabled = true;
    }
  }
  channel_.FocusAway();
}

}  // namespace tavlo::ftp
