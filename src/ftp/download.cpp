#include "ftp/download.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "base/one_line.h"
#include "forms/control_groups.h"
#include "ftp/landing_name.h"
#include "ftp/server_list.h"
#include "store/disk_words.h"

namespace tavlo::ftp {
namespace {

using base::operator""ms;

constexpr int kRoundsOfATick = 25;
constexpr std::size_t kMatchBuffer = 128;
constexpr std::size_t kLineBuffer = 256;
/// Where the length of a file stands in a line about it.
constexpr int kFirstLengthColumn = 3;
constexpr int kLastLengthColumn = 7;

/// A number in the manner of all figures of the run: the place of a sign stands before it.
std::string Figure(std::int64_t number) { return (number < 0 ? "" : " ") + std::to_string(number); }

bool IsOfTheFile(int code) {
  return code <= FtpClient::kFirstOfTheFile && code > FtpClient::kFirstOwn;
}

}  // namespace

Download::Download(Channel& channel)
    : tmrFtpDownload(channel.edges.loop, "tmrFtpDownload", 55ms),
      channel_(channel),
      form_(channel.form) {
  form_.bDownload.OnPress = [this] { FtpStartDownload(); };
  tmrFtpDownload.OnTick = [this] { FtpDownloadTick(); };
}

void Download::FtpStartDownload() {
  if (form_.bDownload.Caption.Get() == "Halt") return RequestHalt();
  if (!channel_.MayBegin()) return;
  form_.bDownload.Caption = "Halt";
  // A listing that failed and was made good offers to connect still. The exit asks this key.
  form_.bConnect.Caption = "Disconnect";
  channel_.FocusAway();
  forms::SetEnabled({&form_.bConnect, &form_.bList, &form_.cmdFtpDownloadToList,
                     &form_.comboFtpFileTypesToList, &form_.frameFtpFilename},
                    false);
  if (!RefuseUnaskable()) return RunIsOver();
  const std::string name = form_.listFtpDownloadList.TextAt(0, 0);
  if (fceMatchFile(channel_.FtpListBuffer, 0, name, kMatchBuffer).empty()) {
    // This is our own decision: the run stays where it is, and Halt changes nothing about it. A
    // name comes from the listing that it is looked for in, so this is not met in daily work.
    channel_.Display("No files available that meet the file definition");
    return;
  }
  LearnLength(name);
  if (channel_.Ended()) return;
  form_.eByteCount.Value = "0";
  channel_.Display("Downloading " + base::OneLine(name));
  Get(name);
}

void Download::RequestHalt() {
  channel_.FtpHaltRequested = true;
  form_.bDownload.Enabled = false;
  channel_.Display("Download will be halted after the current transfer completes");
  channel_.FocusAway();
}

bool Download::RefuseUnaskable() {
  forms::Table& list = form_.listFtpDownloadList;
  while (!list.Rows().empty()) {
    const std::string& name = list.TextAt(0, 0);
    const LandingName landing = LandingNameOf(name);
    if (!landing.name.empty()) return true;
    const std::string file = name.empty() ? "A file" : base::OneLine(name);
    const std::string told = file + " is not fetched: " + landing.why + ".";
    channel_.Display(told);
    channel_.edges.window.Say(told);
    list.Remove(0);
    ShowCount();
  }
  return false;
}

void Download::LearnLength(const std::string& name) {
  std::string line = name + '\0' + std::string(kLineBuffer, ' ');
  line.resize(std::max(kLineBuffer, name.size() + 1));
  const std::optional<int> result = channel_.Ask(
      [&] { return channel_.edges.client.fceGetList(FtpClient::kOneFile, line, kLineBuffer); });
  channel_.FtpFileLength = 0;
  if (!result || *result <= 0) return;
  channel_.FtpFileLength = fceFileLength(line, kFirstLengthColumn, kLastLengthColumn);
  channel_.Display("File length = " + Figure(channel_.FtpFileLength));
}

std::string Download::ClearTheWay(const std::string& landing) {
  const std::string path = channel_.edges.folders.FtpQueuePath + landing;
  const store::Entry there = channel_.edges.disk.Look(path);
  if (there == store::Entry::Nothing) return {};
  if (there == store::Entry::OutOfReach) return "the folder gives no answer";
  if (there != store::Entry::PlainFile) return "what stands there is no file";
  switch (channel_.edges.disk.TestReadiness(path)) {
    case store::Readiness::InUse:
      return "a program still writes what stands there";
    case store::Readiness::OutOfReach:
      return "the folder gives no answer";
    case store::Readiness::ProcessInTrouble:
      return std::string(store::WhyNot(store::DiskResult::ProcessInTrouble));
    default:
      break;
  }
  // It landed before and could not be sorted, or only a part of it came: nobody has heard it.
  const store::FileMoves::Place kept = channel_.edges.moves.Rescue(path);
  if (kept.result != store::DiskResult::Done) return std::string(store::WhyNot(kept.result));
  channel_.edges.window.Say(landing + " stood in the landing folder already. It is kept at " +
                            kept.path + ".");
  return {};
}

void Download::Get(const std::string& name) {
  const LandingName landing = LandingNameOf(name);
  const std::string inTheWay = ClearTheWay(landing.name);
  if (!inTheWay.empty()) {
    const std::string told = landing.name + " can not land: " + inTheWay + ".";
    channel_.Display(told);
    return channel_.Unattended() ? PassOver(name, told) : channel_.OfferConnect();
  }
  FtpClient& client = channel_.edges.client;
  client.fceSetInteger(FtpClient::kBlocking, 0);
  // The pass over the landing folder may run while the server is asked.
  channel_.edges.receiving.name = landing.name;
  const std::optional<int> result =
      channel_.Ask([&] { return client.fceGetFile(name, landing.name); });
  if (!result) return;
  if (*result < 0) return Refused(name, *result);
  current_ = {.name = name, .landing = landing.name, .notice = {}, .passedOver = false};
  if (!landing.why.empty()) {
    current_.notice = base::OneLine(name) + " lands as " + landing.name + ": " + landing.why + ".";
    channel_.Display(current_.notice);
  }
  tmrFtpDownload.Start();
}

void Download::Refused(const std::string& name, int code) {
  if (!channel_.Unattended() || !IsOfTheFile(code)) return GetFailed(code);
  channel_.edges.receiving.name.clear();
  channel_.ShowError(code);
  PassOver(name, base::OneLine(name) + " is not fetched. " + form_.eMessage.Value.Get());
}

/// This is our own decision: servers list directories among their files, and unattended each tick
/// would end at the same name again, with all behind it never fetched.
void Download::PassOver(const std::string& name, const std::string& told) {
  channel_.edges.window.Say(told);
  current_ = {.name = name, .landing = {}, .notice = {}, .passedOver = true};
  tmrFtpDownload.Start();
}

void Download::GetFailed(int code) {
  channel_.edges.receiving.name.clear();
  channel_.ShowError(code);
  channel_.OfferConnect();
  // Nothing logs out of this session any more, which is when what has landed is sorted.
  if (channel_.Unattended()) SortWhatLanded();
}

/// While it is known which author the server belongs to.
void Download::SortWhatLanded() {
  channel_.During([this] { channel_.edges.sort.RunFtpSort(); });
}

void Download::FtpDownloadTick() {
  tmrFtpDownload.Stop();
  // Inside the wait of another command the end of a run, with its own waits, would keep that
  // command waiting. What comes in does so meanwhile.
  if (channel_.OthersWait()) return tmrFtpDownload.Start();
  if (current_.passedOver) {
    RemoveCurrent();
    return GoOn();
  }
  for (int round = 0; round < kRoundsOfATick; ++round) {
    const int result = channel_.edges.client.fceDriver();
    if (result < 0) return Failed(result);
    if (result == 0) return Complete();
  }
  channel_.Turn();
  ShowFtpByteCount();
  if (!channel_.Ended()) tmrFtpDownload.Start();
}

void Download::Failed(int code) {
  channel_.edges.receiving.name.clear();
  // Under automatic retrieval nobody looks at the status box, and the part that came is sorted like
  // a whole file.
  const std::string told = base::OneLine(current_.name) + " was not received whole.";
  if (!IsOfTheFile(code)) {
    channel_.edges.window.Say(told);
    return ConnectionLost();
  }
  // This is our own decision: a file that is at fault, as one that its author still sends to the
  // server, does not end the work with all servers until the next start.
  channel_.edges.window.Say(told + " " + channel_.edges.client.fceErrorText(code));
  GetFailed(code);
}

void Download::ConnectionLost() {
  channel_.FtpLost = true;
  form_.bConnect.Caption = "Connect";
  form_.bConnect.Enabled = false;
  form_.bDownload.Caption = "Download";
  form_.bDownload.Enabled = false;
  channel_.Display("Connection lost.  To ftp again please restart the Tavlo Deck");
  form_.mnuViewFtp.Enabled = false;
  channel_.GiveMenusBack();
  SortWhatLanded();
}

void Download::Complete() {
  channel_.edges.receiving.name.clear();
  const int result = channel_.edges.client.fceSetInteger(FtpClient::kBlocking, 1);
  if (result < 0) return GetFailed(result);
  ShowFtpByteCount();
  if (channel_.Ended()) return;
  channel_.Display(form_.eByteCount.Value.Get() + " transfered.");
  form_.eByteCount.Value = "";
  if (!current_.notice.empty()) channel_.edges.window.Say(current_.notice);
  if (channel_.FtpDeleteFileCheck && ProfileStillDeletes())
    channel_.edges.client.fceDelFile(current_.name);
  RemoveCurrent();
  GoOn();
}

/// Nothing is deleted that the profile does not say by now, which may be long after the log-in.
bool Download::ProfileStillDeletes() const {
  const std::optional<ServerProfile> profile = channel_.edges.servers.Chosen();
  return profile && profile->deleteFiles;
}

void Download::RemoveCurrent() {
  forms::Table& list = form_.listFtpDownloadList;
  if (list.TextAt(0, 0) == current_.name && !list.Rows().empty()) list.Remove(0);
  ShowCount();
}

void Download::ShowCount() {
  form_.frameFtpDownloadList.Caption =
      "Files: " + std::to_string(form_.listFtpDownloadList.Rows().size());
}

void Download::GoOn() {
  if (channel_.FtpHaltRequested) return Halted();
  if (!RefuseUnaskable()) return RunIsOver();
  form_.bDownload.Caption = "Download";
  form_.bDownload.Press();
  form_.bDownload.Caption = "Halt";
}

void Download::Halted() {
  channel_.Display("");
  channel_.Display("Download halted");
  const bool more = !form_.listFtpDownloadList.Rows().empty();
  form_.bDownload.Enabled = more;
  form_.cmdFtpDownloadToList.Enabled = more;
  form_.eByteCount.Enabled = false;
  form_.bDownload.Caption = "Download";
  forms::SetEnabled({&form_.bConnect, &form_.bList, &form_.comboFtpFileTypesToList,
                     &form_.frameFtpFilename, &form_.frameFtpDownloadList},
                    true);
  channel_.FtpHaltRequested = false;
}

void Download::RunIsOver() {
  form_.listFtpDownloadList.Clear();
  form_.eByteCount.Enabled = false;
  form_.bDownload.Enabled = false;
  form_.bDownload.Caption = "Download";
  form_.bList.Enabled = false;
  form_.bConnect.Enabled = true;
  form_.bConnect.Press();
  if (channel_.Ended()) return;
  form_.frameFtpDownloadList.Caption = "Files: 0";
  form_.frameFtpFilename.Caption = "Files in list: 0";
  channel_.Display("Disconnected after download completed");
}

void Download::ShowFtpByteCount() {
  const std::int64_t moved = channel_.edges.client.fceGetInteger(FtpClient::kBytesMoved);
  std::string text = Figure(moved) + " bytes";
  if (channel_.FtpFileLength > 0) {
    // Divided before it is multiplied where the product would not fit.
    const std::int64_t length = channel_.FtpFileLength;
    const std::int64_t percent = moved > std::numeric_limits<std::int64_t>::max() / 100
                                     ? moved / (length / 100 + 1)
                                     : moved * 100 / length;
    text += " " + Figure(percent) + "%";
  }
  form_.eByteCount.Value = text;
  channel_.Turn();
}

}  // namespace tavlo::ftp
