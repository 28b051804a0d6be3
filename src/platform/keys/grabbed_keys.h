#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/keys/grab_thread.h"
#include "platform/keys/key_events.h"
#include "platform/reach/hush.h"
#include "platform/wake/descriptor_waits.h"
#include "remote/global_keys.h"

namespace tavlo::platform {

/// The keys of all windows of an X display. Each key that is wished for is asked of the display,
/// under every state of Caps Lock and Num Lock; what else is typed while one is held reaches
/// whoever has the keyboard as if it was not. Follows the keyboard's layout.
///
/// While no key is wished for there is no connection and no thread. A display that is lost takes
/// its keys along, and they are refused.
class GrabbedKeys : public remote::GlobalKeys, public WatchedFoot {
 public:
  /// The display's name as in DISPLAY.
  GrabbedKeys(DescriptorWaits& waits, std::string display);
  ~GrabbedKeys() override;
  GrabbedKeys(const GrabbedKeys&) = delete;

  void Tell(base::Listener& listener) override;
  /// With no key nothing waits and nothing is told any more, not even of a key that was held.
  void Wish(const std::vector<remote::KeyWish>& wishes) override;
  void TryAgain() override;

  remote::KeyWay Way() const override { return remote::KeyWay::Grabs; }
  std::vector<remote::KeyGrant> Grants() const override;
  std::optional<remote::KeyEvent> Next() override { return events_.Next(); }

  bool CanConfigure() const override { return false; }
  void Configure() override {}

  bool LetGo() override { return events_.LetGo(); }

 private:
  void Begin();
  void HandleNews();

  DescriptorWaits& waits_;
  const std::string display_;
  KeyEvents events_;
  base::Listener* listener_ = nullptr;
  std::vector<remote::KeyWish> wishes_;
  std::unique_ptr<DescriptorWait> wait_;
  /// Null while no key is wished for, and where the machine has no thread for it.
  std::unique_ptr<GrabThread> thread_;
};

}  // namespace tavlo::platform
