#include "lists/waiting_work.h"

namespace tavlo::lists {
namespace {

using base::operator""ms;

}  // namespace

WaitingWork::WaitingWork(base::Loop& loop, WorkFigures& figures)
    : tmrWorkWaitingAlert(loop, "tmrWorkWaitingAlert", 5000ms), figures_(figures) {}

void WaitingWork::RestartWith(base::Duration interval) {
  tmrWorkWaitingAlert.SetInterval(interval);
  tmrWorkWaitingAlert.Start();
}

}  // namespace tavlo::lists
