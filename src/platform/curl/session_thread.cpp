#include "platform/curl/session_thread.h"

#include <pthread.h>

#include <csignal>
#include <exception>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/curl/ftp_failures.h"

namespace tavlo::platform {
namespace {

/// A write to a connection that the server has closed is a failure like any other.
void HearNothingOfBrokenPipes() {
  sigset_t signals;
  ::sigemptyset(&signals);
  ::sigaddset(&signals, SIGPIPE);
  ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

}  // namespace

bool SessionThread::Start() {
  try {
    std::thread([self = shared_from_this()] { self->Run(); }).detach();
  } catch (const std::system_error&) {
    return false;
  }
  return true;
}

void SessionThread::Take(std::shared_ptr<FtpOrder> order) {
  {
    const std::lock_guard hold(mutex_);
    orders_.push_back(std::move(order));
  }
  wanted_.notify_one();
}

void SessionThread::Finish() {
  {
    const std::lock_guard hold(mutex_);
    ends_ = true;
  }
  wanted_.notify_one();
}

void SessionThread::Cut() {
  tether_->Cut();
  Finish();
}

std::shared_ptr<FtpOrder> SessionThread::AwaitOrder() {
  std::unique_lock hold(mutex_);
  wanted_.wait(hold, [this] { return !orders_.empty() || ends_; });
  if (orders_.empty() || tether_->IsCut()) return {};
  std::shared_ptr<FtpOrder> order = std::move(orders_.front());
  orders_.pop_front();
  return order;
}

void SessionThread::Run() {
  HearNothingOfBrokenPipes();
  FtpSession session(limits_, tether_);
  while (const std::shared_ptr<FtpOrder> order = AwaitOrder()) Do(session, *order);
  session.LogOut();
}

void SessionThread::Do(FtpSession& session, FtpOrder& order) {
  try {
    order.result = order.work(session);
  } catch (const std::exception&) {
    order.result = kProcessInTrouble;
  }
  order.returned = true;
  bell_->Ring();
  if (!order.transfer || order.result != 0) return;
  try {
    session.ReceiveFile(*order.transfer);
  } catch (const std::exception&) {
    order.transfer->End(kProcessInTrouble);
  }
}

}  // namespace tavlo::platform
