#include "ftp_view/ftp_states.h"

#include <initializer_list>

namespace tavlo::test {
namespace {

constexpr const char* kTypes[] = {"All files", "Orvane files", "eW2 files", "eU2 files",
                                  "dS2 files", "wav files",    "mp3 files", "wma files",
                                  "avi files", "dss files",    "vox files"};

void SetEnabled(std::initializer_list<forms::Control*> controls, bool enabled) {
  for (forms::Control* const control : controls) control->Enabled = enabled;
}

}  // namespace

void FtpStates::Say(const std::string& words) {
  form_.eMessage.Value = words;
  form_.eMessage.Tooltip = words;
}

void FtpStates::ExplainEmptyList(const std::string& words) { form_.listFtpList.WhenEmpty = words; }

void FtpStates::FillLists() {
  form_.listFtpList.Clear();
  form_.listFtpDownloadList.Clear();
  for (std::size_t i = 0; i < names_.size(); ++i) {
    (i < chosen_ ? form_.listFtpDownloadList : form_.listFtpList).Add(names_[i]);
  }
  form_.frameFtpFilename.Caption = "Files in list: " + std::to_string(names_.size() - chosen_);
  form_.frameFtpDownloadList.Caption = "Files to download: " + std::to_string(chosen_);
  form_.cmdFtpListToDownload.Enabled = chosen_ < names_.size();
  SetEnabled({&form_.cmdFtpDownloadToList, &form_.bDownload, &form_.eByteCount,
              &form_.frameFtpDownloadList},
             chosen_ > 0);
}

void FtpStates::SetHidden(bool hidden) {
  for (forms::Control* const control : std::initializer_list<forms::Control*>{
           &form_.frameFtpFilename, &form_.frameFtpConnectionStatus, &form_.frameFtpDownloadList,
           &form_.cmdFtpDownloadToList, &form_.cmdFtpListToDownload, &form_.eMessage}) {
    control->Visible = !hidden;
  }
  form_.lblFtpParsing.Visible = hidden;
  form_.lblFtpWait.Visible = hidden;
}

void FtpStates::Idle() {
  form_.frameInQueue.Visible = false;
  form_.frameFtp.Visible = true;
  form_.comboFtpServerNames.Clear();
  for (int number = 1; number <= 25; ++number) {
    form_.comboFtpServerNames.Add(number == 1 ? "ClinicNorth" : "Ftp" + std::to_string(number));
  }
  form_.comboFtpServerNames.ListIndex = 0;
  form_.comboFtpFileTypesToList.Clear();
  for (const char* const type : kTypes) form_.comboFtpFileTypesToList.Add(type);
  form_.comboFtpFileTypesToList.ListIndex = 0;
  SetHidden(false);
  SetEnabled(
      {&form_.mnuFile, &form_.mnuView, &form_.bConnect, &form_.comboFtpServerNames, &form_.bList},
      true);
  SetEnabled({&form_.comboFtpFileTypesToList, &form_.frameFtpFilename}, false);
  form_.bConnect.Caption = "Connect";
  form_.bDownload.Caption = "Download";
  form_.eByteCount.Value = "";
  ExplainEmptyList("Not connected\nChoose a server and press Connect to see what it has.");
  names_.clear();
  chosen_ = 0;
  FillLists();
  Say("");
}

void FtpStates::Connecting() {
  form_.bConnect.Caption = "Disconnect";
  SetEnabled({&form_.bConnect, &form_.comboFtpServerNames, &form_.mnuFile, &form_.mnuView}, false);
  Say("Connecting to server ftp.clinic.example");
}

void FtpStates::Connected() {
  Connecting();
  SetEnabled(
      {&form_.bConnect, &form_.bList, &form_.comboFtpFileTypesToList, &form_.frameFtpFilename},
      true);
  ExplainEmptyList("Nothing is listed\nPress List to see what the server has of the chosen type.");
  Say("Connected");
}

void FtpStates::Listed(const std::vector<std::string>& names) {
  Connected();
  names_ = names;
  chosen_ = 0;
  FillLists();
  Say("List completed");
}

void FtpStates::Chosen(std::size_t names) {
  chosen_ = names;
  FillLists();
  Say("");
}

void FtpStates::Downloading(const std::string& byteCount) {
  form_.bDownload.Caption = "Halt";
  SetEnabled({&form_.bConnect, &form_.bList, &form_.cmdFtpDownloadToList,
              &form_.comboFtpFileTypesToList, &form_.frameFtpFilename},
             false);
  form_.eByteCount.Value = byteCount;
  Say("Downloading " + names_.front());
}

void FtpStates::Halting() {
  form_.bDownload.Enabled = false;
  Say("Download will be halted after the current transfer completes");
}

void FtpStates::ConnectionLost() {
  form_.bConnect.Caption = "Connect";
  form_.bDownload.Caption = "Download";
  SetEnabled({&form_.bConnect, &form_.bDownload}, false);
  SetEnabled({&form_.mnuFile, &form_.mnuView}, true);
  Say("Connection lost.  To ftp again please restart the Tavlo Deck");
}

void FtpStates::Sorting() {
  form_.bConnect.Caption = "Connect";
  form_.bDownload.Caption = "Download";
  form_.eByteCount.Value = "";
  SetEnabled({&form_.bDownload, &form_.eByteCount, &form_.cmdFtpDownloadToList,
              &form_.cmdFtpListToDownload, &form_.bList, &form_.comboFtpFileTypesToList,
              &form_.frameFtpFilename, &form_.frameFtpDownloadList},
             false);
  SetHidden(true);
}

const std::vector<std::string>& FtpStates::UsualNames() {
  static const std::vector<std::string> names{"cardio_0412.dS2",
                                              "cardio_0413.dS2",
                                              "followup_0413.eU2",
                                              "0007_1 Brown 1234 a.dS2",
                                              "0007_2 Brown 1234 b.dS2",
                                              "deposition_haddad.mp3",
                                              "readme.txt",
                                              "ward round.eW2"};
  return names;
}

std::vector<std::string> FtpStates::TroublesomeNames() {
  std::string longest(251, 'W');
  longest += ".dS2";
  return {longest,
          "the name of a dictation that somebody gave many words to, and then some more.mp3",
          "\xD7\xA1\xD7\x99\xD7\x9B\xD7\x95\xD7\x9D.wav",
          "Br\xF8wn\xFF caf\xE9.wav",
          "two\tcolumns\x1B[2J.vox",
          "<b>bold</b> &amp; brave.dss",
          "a"};
}

}  // namespace tavlo::test
