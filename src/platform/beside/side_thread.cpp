#include "platform/beside/side_thread.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace tavlo::platform {
namespace {

/// Several times what a healthy disk needs for a picture or a prompt.
constexpr std::chrono::milliseconds kMomentToEnd{300};

void Finish(const std::function<void()>& work) {
  try {
    work();
  } catch (const std::exception&) {
    // There is no memory for it, and nobody waits.
  }
}

}  // namespace

/// What the thread and its owner share; whoever of them goes last takes it along.
struct SideThread::Shared {
  std::mutex mutex;
  std::condition_variable changed;
  std::function<void()> next;
  bool runs = false;  ///< There is a thread.
  bool over = false;  ///< Nothing is asked for any more.
};

SideThread::SideThread() : shared_(std::make_shared<Shared>()) {}

SideThread::~SideThread() {
  std::unique_lock hold(shared_->mutex);
  shared_->over = true;
  shared_->changed.notify_all();
  shared_->changed.wait_for(hold, kMomentToEnd, [this] { return !shared_->runs; });
}

void SideThread::Do(std::function<void()> work) {
  const std::lock_guard hold(shared_->mutex);
  shared_->next = std::move(work);
  shared_->changed.notify_all();
  if (shared_->runs) return;
  try {
    std::thread([shared = shared_] { Run(*shared); }).detach();
    shared_->runs = true;
  } catch (const std::system_error&) {
    shared_->next = {};
  }
}

void SideThread::Run(Shared& shared) {
  std::unique_lock hold(shared.mutex);
  for (;;) {
    shared.changed.wait(hold, [&] { return shared.next || shared.over; });
    if (shared.over) break;
    std::function<void()> work = std::exchange(shared.next, {});
    hold.unlock();
    Finish(work);
    // What it holds may take as long to let go of as the work itself.
    work = {};
    hold.lock();
  }
  shared.runs = false;
  shared.changed.notify_all();
}

}  // namespace tavlo::platform
