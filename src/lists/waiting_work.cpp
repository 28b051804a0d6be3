#include "lists/waiting_work.h"

namespace tavlo::lists {
namespace {

using base::operator""ms;

}  // namespace

WaitingWork::WaitingWork(base::Loop& loop, WorkFigures& figures)
    : tmrWorkWaitingAlert(loop, "tmrWorkWaitingAlert", 5000ms), figures_(figures) {}

void WaitingWork::GoOn() {
  if (!ended_) tmrWorkWaitingAlert.Start();
}

void WaitingWork::RestartWith(base::Duration interval) {
  tmrWorkWaitingAlert.SetInterval(interval);
  GoOn();
}

void WaitingWork::End() {
  ended_ = true;
  Pause();
}

}  // namespace tavlo::lists
