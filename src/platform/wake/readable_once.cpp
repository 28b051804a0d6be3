#include "platform/wake/readable_once.h"

#include <utility>

namespace tavlo::platform {

ReadableOnce::ReadableOnce(int descriptor) : notifier_(descriptor, QSocketNotifier::Read) {
  notifier_.setEnabled(false);
  QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { TellNow(); });
}

void ReadableOnce::Tell(base::Listener& listener) {
  listener_ = &listener;
  notifier_.setEnabled(true);
}

bool ReadableOnce::Forget() {
  notifier_.setEnabled(false);
  return std::exchange(listener_, nullptr) != nullptr;
}

void ReadableOnce::TellNow() {
  notifier_.setEnabled(false);
  if (listener_) std::exchange(listener_, nullptr)->HandleNews();
}

}  // namespace tavlo::platform
