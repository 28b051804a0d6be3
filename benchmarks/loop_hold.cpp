#include "loop_hold.h"

#include <QAbstractEventDispatcher>
#include <algorithm>
#include <ctime>
#include <utility>

namespace tavlo::bench {
namespace {

std::chrono::nanoseconds Computed() {
  timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace

LoopHold::LoopHold() : atLastLook_(Computed()) {
  const QAbstractEventDispatcher* const dispatcher = QAbstractEventDispatcher::instance();
  const auto look = [this] { Look(); };
  QObject::connect(dispatcher, &QAbstractEventDispatcher::awake, &context_, look);
  QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, &context_, look);
}

void LoopHold::Look() {
  const std::chrono::nanoseconds now = Computed();
  most_ = std::max(most_, now - std::exchange(atLastLook_, now));
}

double LoopHold::Milliseconds() {
  Look();
  return std::chrono::duration<double, std::milli>(most_).count();
}

}  // namespace tavlo::bench
