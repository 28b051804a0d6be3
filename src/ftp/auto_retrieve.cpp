#include "ftp/auto_retrieve.h"

namespace tavlo::ftp {
namespace {

using base::operator""ms;

constexpr int kTicksForAnAnswer = 12;

}  // namespace

AutoRetrieve::AutoRetrieve(Channel& channel, forms::ConfigurationForm& config)
    : tmrFtpAutoRetrieve(channel.edges.loop, "tmrFtpAutoRetrieve", 5000ms),
      channel_(channel),
      form_(channel.form),
      config_(config) {
  config_.chkFtpAutoRetrieve.OnClick = [this] { Switch(); };
  tmrFtpAutoRetrieve.OnTick = [this] { Tick(); };
}

void AutoRetrieve::Switch() {
  const bool on = config_.chkFtpAutoRetrieve.Value;
  form_.mnuViewFtp.Enabled = !on && !channel_.FtpLost;
  FtpAutoRetrieveOff = !on;
  if (on) {
    tmrFtpAutoRetrieve.Start();
  } else {
    tmrFtpAutoRetrieve.Stop();
  }
  config_.frmConfiguration.FocusOn(config_.txtFocus);
}

void AutoRetrieve::Tick() {
  tmrFtpAutoRetrieve.Stop();
  // A person's log-in, or another command, is inside a wait: its presses would be lost, and that
  // command would wait for ours.
  if (channel_.MayBegin() && !channel_.OthersWait() && !BoxIsYoung()) PressKeys();
  if (!FtpAutoRetrieveOff && !channel_.Ended()) tmrFtpAutoRetrieve.Start();
}

/// A person may be about to answer a box, which can not close before a log-in under it has ended.
/// One that stands for longer waits for somebody who is not there, and keeps nothing up.
bool AutoRetrieve::BoxIsYoung() {
  ticksUnderBox_ = channel_.edges.loop.MessageBoxOpen() ? ticksUnderBox_ + 1 : 0;
  return ticksUnderBox_ > 0 && ticksUnderBox_ <= kTicksForAnAnswer;
}

/// The status box is out of sight, and the press of the list key takes the reason away.
void AutoRetrieve::TellFailure() {
  const bool failed = form_.bConnect.Enabled && form_.bConnect.Caption.Get() == "Connect";
  if (!failed || form_.frameFtp.Visible || form_.eMessage.Value.Get().empty()) return;
  channel_.edges.window.Say("Automatic retrieval: " + form_.eMessage.Value.Get());
}

void AutoRetrieve::PressKeys() {
  const bool logsIn = form_.bConnect.Caption.Get() == "Connect";
  form_.bConnect.Press();
  if (channel_.Ended()) return;
  if (logsIn) TellFailure();
  form_.bList.Press();
  if (channel_.Ended()) return;
  // A run that a person began over a part of the list would take the press for a halt.
  const bool runIsOn = form_.bDownload.Caption.Get() == "Halt";
  if (!runIsOn && !form_.listFtpList.Rows().empty()) {
    form_.cmdFtpListToDownload.Press();
    form_.bDownload.Press();
    if (channel_.Ended()) return;
  }
  // This is our own decision: the second press only logs out. After a log-in that failed it would
  // try again at once, and where that succeeds leave the keys in the wrong order for every tick to
  // come: each would log out first and never list.
  if (form_.bConnect.Caption.Get() == "Disconnect") form_.bConnect.Press();
}

}  // namespace tavlo::ftp
