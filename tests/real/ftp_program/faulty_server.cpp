#include "ftp_program/faulty_server.h"

#include <utility>

namespace tavlo::test {

FaultyServer::FaultyServer(std::map<std::string, std::string> files)
    : server_({.greet = [this](Conversation& guest) { Greet(guest); },
               .instead = [this](Conversation& guest,
                                 const Command& command) { return Answer(guest, command); },
               .files = std::move(files)}) {}

void FaultyServer::Prepare(const Fault& fault) {
  auto moment = std::make_shared<Moment>();
  moment->fault = fault;
  const std::lock_guard lock(mutex_);
  moment_ = std::move(moment);
}

bool FaultyServer::StandsStill() const {
  const std::lock_guard lock(mutex_);
  return moment_ && moment_->reached;
}

void FaultyServer::End() {
  const std::lock_guard lock(mutex_);
  if (moment_) moment_->end.Open();
}

bool FaultyServer::IsPrepared() const {
  const std::lock_guard lock(mutex_);
  return moment_ && !moment_->reached;
}

std::shared_ptr<FaultyServer::Moment> FaultyServer::Take(const std::string& verb,
                                                         const std::string& argument) {
  const std::lock_guard lock(mutex_);
  if (!moment_ || moment_->reached || moment_->fault.verb != verb) return {};
  const std::string& wanted = moment_->fault.argument;
  return wanted.empty() || wanted == argument ? moment_ : nullptr;
}

void FaultyServer::StandStill(Conversation& guest, Moment& moment) {
  moment.reached = true;
  if (!guest.Await(moment.end)) return;
  if (!moment.fault.isIdle) return guest.Die();
  guest.Say("421 You have been idle for too long.\r\n");
  guest.HangUp();
}

void FaultyServer::Greet(Conversation& guest) {
  const auto moment = Take("", "");
  if (moment) return StandStill(guest, *moment);
  guest.Say("220 Ready.\r\n");
}

bool FaultyServer::Answer(Conversation& guest, const Command& command) {
  const bool hides = hides_ && !IsPrepared() && command.verb == "NLST";
  const auto moment = Take(command.verb, command.argument);
  if (hides) guest.Transfer("");
  if (!moment) return hides;
  if (moment->fault.isIdle) {
    guest.Answer(command);
  } else if (!moment->fault.sent.empty()) {
    guest.Say("150 Here it comes.\r\n");
    if (guest.OpenData()) guest.PutData(moment->fault.sent);
  }
  StandStill(guest, *moment);
  return true;
}

}  // namespace tavlo::test
