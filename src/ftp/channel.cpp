#include "ftp/channel.h"

#include "window/guards.h"

namespace tavlo::ftp {

Channel::Channel(const Edges& itsEdges) : edges(itsEdges), form(itsEdges.window.Form()) {
  form.eMessage.OnDoubleClick = [this] { Display(""); };
}

void Channel::Display(const std::string& text) {
  form.eMessage.Value = text;
  form.eMessage.Tooltip = text;
}

void Channel::ShowError(int code) {
  const std::string words = edges.client.fceErrorText(code);
  if (!words.empty()) Display(words);
}

std::optional<int> Channel::Ask(const std::function<int()>& call) {
  const window::Raised waiting(waits_);
  const window::ServerWait wait(edges.window.guards);
  const int result = call();
  if (ended_) return {};
  return result;
}

void Channel::During(const std::function<void()>& call) {
  const window::Raised waiting(waits_);
  const window::ServerWait wait(edges.window.guards);
  call();
}

bool Channel::Wait(base::Duration length) {
  const window::Raised waiting(waits_);
  const window::ServerWait wait(edges.window.guards);
  edges.loop.Wait(length);
  return !ended_;
}

void Channel::Turn() {
  const window::ServerWait wait(edges.window.guards);
  edges.loop.Yield();
}

bool Channel::OthersWait() const {
  const window::Guards& guards = edges.window.guards;
  return (!guards.ListsMayChange() || guards.IsTelling()) && !edges.loop.MessageBoxOpen();
}

void Channel::FocusAway() {
  if (form.frameFtp.Visible) edges.window.FocusAway();
}

void Channel::TakeMenus() {
  if (!form.mnuViewFtp.Enabled) return;
  form.mnuView.Enabled = false;
  form.mnuFile.Enabled = false;
  menusTaken_ = true;
}

void Channel::GiveMenusBack() {
  if (!menusTaken_) return;
  form.mnuFile.Enabled = true;
  form.mnuView.Enabled = true;
  menusTaken_ = false;
}

void Channel::OfferConnect() {
  form.bConnect.Enabled = true;
  form.bConnect.Caption = "Connect";
  form.comboFtpServerNames.Enabled = true;
  GiveMenusBack();
  FocusAway();
}

}  // namespace tavlo::ftp
