#pragma once

#include <string>

#include "ftp/channel.h"

namespace tavlo::ftp {

/// The run over the download list: the press of `bDownload`, and the timer that drives the
/// transfer.
class Download {
 public:
  explicit Download(Channel& channel);

  base::Timer tmrFtpDownload;

  void FtpStartDownload();

 private:
  /// The file that is under way.
  struct Current {
    std::string name;
    std::string landing;
    /// What is to be said of the name once more, behind what the run says: why it landed so.
    std::string notice;
    /// It does not come; the next tick goes on with the next one.
    bool passedOver = false;
  };

  void RequestHalt();
  /// Names that can not be asked for leave the list with their reason. False when nothing is left.
  bool RefuseUnaskable();
  void LearnLength(const std::string& name);
  /// Nothing may stand at the landing name. In words why it still does; empty when the way is free.
  std::string ClearTheWay(const std::string& landing);
  void Get(const std::string& name);
  /// The get was not accepted.
  void Refused(const std::string& name, int code);
  /// Unattended: the run goes on without the file.
  void PassOver(const std::string& name, const std::string& told);
  void GetFailed(int code);
  void SortWhatLanded();

  void FtpDownloadTick();
  /// The file did not come whole.
  void Failed(int code);
  void ConnectionLost();
  void Complete();
  bool ProfileStillDeletes() const;
  void RemoveCurrent();
  void ShowCount();
  /// Behind each file: halts, goes on with the next one, or logs out behind the last.
  void GoOn();
  void Halted();
  void RunIsOver();
  void ShowFtpByteCount();

  Channel& channel_;
  forms::MainForm& form_;
  Current current_;
};

}  // namespace tavlo::ftp
