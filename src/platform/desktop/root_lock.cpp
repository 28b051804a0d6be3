#include "platform/desktop/root_lock.h"

#include <utility>

#include "platform/reach/let_go.h"

namespace tavlo::platform::desktop {

using shell::RootClaim;

RootLock::RootLock(Errands& errands, const std::string& installRoot)
    : errands_(errands),
      root_(installRoot),
      folder_(installRoot.substr(0, installRoot.rfind('/'))) {}

RootClaim RootLock::Claim() {
  const auto taken = std::make_shared<std::shared_ptr<InstanceLock>>();
  const bool answered = errands_.Run(folder_, [taken, root = root_](Errands::Sign&) {
    *taken = std::make_shared<InstanceLock>(root);
  });
  // A lock that is taken after that goes with the errand.
  if (!answered) return RootClaim::OutOfReach;
  lock_ = std::move(*taken);
  return lock_->AnotherCopyRuns() ? RootClaim::OfAnotherCopy : RootClaim::Ours;
}

void RootLock::GiveBack() {
  if (lock_) LetGo(errands_, folder_, std::exchange(lock_, {}));
}

}  // namespace tavlo::platform::desktop
