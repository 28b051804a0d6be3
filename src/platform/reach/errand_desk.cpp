#include "platform/reach/errand_desk.h"

#include <system_error>
#include <thread>
#include <utility>

namespace tavlo::platform {

class ErrandDesk::DeskSign : public Errands::Sign {
 public:
  explicit DeskSign(ErrandDesk& desk) : desk_(desk) {}

  void Give() override { ++desk_.signs_; }
  void Tell() override { desk_.Tell(); }

 private:
  ErrandDesk& desk_;
};

bool ErrandDesk::Take(const std::shared_ptr<Errand>& errand) {
  const std::lock_guard hold(mutex_);
  waiting_.push_back(errand);
  if (!runs_) {
    try {
      std::thread([self = shared_from_this()] { self->Work(); }).detach();
    } catch (const std::system_error&) {
      waiting_.pop_back();
      return false;
    }
    runs_ = true;
  }
  wanted_.notify_one();
  return true;
}

void ErrandDesk::TakeBack(const std::shared_ptr<Errand>& errand) {
  const std::lock_guard hold(mutex_);
  std::erase(waiting_, errand);
}

bool ErrandDesk::Watch(const std::function<bool()>& done, std::chrono::milliseconds length) {
  std::unique_lock hold(mutex_);
  return told_.wait_for(hold, length, done);
}

void ErrandDesk::LeaveBehind() {
  const std::lock_guard hold(mutex_);
  owes_ = atWork_;
}

bool ErrandDesk::Owes() {
  const std::lock_guard hold(mutex_);
  return owes_;
}

std::size_t ErrandDesk::Waiting() {
  const std::lock_guard hold(mutex_);
  return waiting_.size();
}

bool ErrandDesk::IsClosed() {
  const std::lock_guard hold(mutex_);
  return !runs_;
}

void ErrandDesk::Close() {
  std::unique_lock hold(mutex_);
  closed_ = true;
  wanted_.notify_one();
  told_.wait(hold, [this] { return !runs_ || atWork_; });
}

void ErrandDesk::Tell() {
  {
    // Who is about to wait has either seen what is told of, or is woken.
    const std::lock_guard hold(mutex_);
    ++signs_;
  }
  told_.notify_all();
  if (answers_->listened) answers_->bell.Ring();
}

std::shared_ptr<Errand> ErrandDesk::AwaitErrand(std::unique_lock<std::mutex>& hold) {
  wanted_.wait_for(hold, idle_, [this] { return !waiting_.empty() || closed_; });
  if (closed_ || waiting_.empty()) return {};
  std::shared_ptr<Errand> errand = std::move(waiting_.front());
  waiting_.pop_front();
  return errand;
}

void ErrandDesk::Work() {
  DeskSign sign(*this);
  std::unique_lock hold(mutex_);
  while (const std::shared_ptr<Errand> errand = AwaitErrand(hold)) {
    atWork_ = true;
    hold.unlock();
    std::exception_ptr failure;
    try {
      errand->work(sign);
    } catch (...) {
      failure = std::current_exception();
    }
    // Letting go of what the work holds may take as long as the work itself.
    errand->work = {};
    errand->failure = failure;
    hold.lock();
    errand->returned = true;
    atWork_ = false;
    owes_ = false;
    hold.unlock();
    Tell();
    hold.lock();
  }
  runs_ = false;
  // What nobody took back goes with the thread that would have done it.
  const auto left = std::exchange(waiting_, {});
  hold.unlock();
  told_.notify_all();
}

}  // namespace tavlo::platform
