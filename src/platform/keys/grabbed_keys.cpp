#include "platform/keys/grabbed_keys.h"

#include <system_error>
#include <utility>

namespace tavlo::platform {

using remote::KeyGrant;
using remote::KeyState;
using remote::KeyWish;

GrabbedKeys::GrabbedKeys(DescriptorWaits& waits, std::string display)
    : waits_(waits), display_(std::move(display)) {}

GrabbedKeys::~GrabbedKeys() = default;

void GrabbedKeys::Tell(base::Listener& listener) { listener_ = &listener; }

void GrabbedKeys::Wish(const std::vector<KeyWish>& wishes) {
  if (wishes == wishes_) return;
  wishes_ = wishes;
  if (wishes_.empty()) {
    wait_.reset();
    thread_.reset();
    events_.Forget();
  } else {
    Begin();
  }
}

void GrabbedKeys::TryAgain() {
  if (!wishes_.empty()) Begin();
}

void GrabbedKeys::Begin() {
  if (thread_ && thread_->Over()) thread_.reset();
  try {
    if (!thread_) thread_ = std::make_unique<GrabThread>(display_, events_);
  } catch (const std::system_error&) {
    return;
  }
  if (!wait_) {
    wait_ = waits_.WaitFor(events_.News().Descriptor(), "A key of another window",
                           [this] { HandleNews(); });
  }
  thread_->Wish(wishes_);
}

void GrabbedKeys::HandleNews() {
  events_.News().Silence();
  if (listener_) listener_->HandleNews();
}

std::vector<KeyGrant> GrabbedKeys::Grants() const {
  if (thread_) return thread_->Grants();
  std::vector<KeyGrant> refused;
  for (const KeyWish& wish : wishes_) {
    refused.push_back({.action = wish.action, .state = KeyState::Refused});
  }
  return refused;
}

}  // namespace tavlo::platform
