#pragma once

#include <functional>
#include <memory>

#include "platform/reach/hush.h"
#include "platform/wake/descriptor_waits.h"
#include "remote/global_keys.h"

namespace tavlo::platform::desktop {

/// The keys of all windows in the way that the desktop has for it. A Wayland display lets nobody
/// grab keys, and those of an X display beside it would be the deck's only while a window of that
/// one has the keyboard; so the desktop is asked there. Else an X display is. Which toolkit or
/// display shows the deck's own windows does not matter.
class DesktopKeys {
 public:
  using Make = std::function<std::unique_ptr<remote::GlobalKeys>()>;

  /// `portal` makes what asks the desktop; it is called where that is needed. The waits must
  /// outlive this.
  DesktopKeys(DescriptorWaits& waits, const Make& portal);

  remote::GlobalKeys& Keys() { return *keys_; }
  /// The held ones among them; null where they can not be looked at while the rules wait, as those
  /// of a portal.
  WatchedFoot* Foot() { return dynamic_cast<WatchedFoot*>(keys_.get()); }

 private:
  const std::unique_ptr<remote::GlobalKeys> keys_;
};

}  // namespace tavlo::platform::desktop
