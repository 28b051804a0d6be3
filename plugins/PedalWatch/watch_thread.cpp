#include "watch_thread.h"

#include <utility>

namespace tavlo::pedal_watch {

WatchThread::WatchThread(const Picked& picked, std::unique_ptr<HidPort> port)
    : port_(std::move(port)),
      watch_(picked, *port_),
      thread_([this](const std::stop_token& stop) { Run(stop); }) {}

WatchThread::~WatchThread() {
  thread_.request_stop();
  port_->Interrupt();
}

void WatchThread::Run(const std::stop_token& stop) {
  while (!stop.stop_requested()) {
    if (!watch_.Turn()) port_->AwaitNews();
  }
}

}  // namespace tavlo::pedal_watch
