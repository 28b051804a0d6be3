#include "platform/desktop/desktop_keys.h"

#include <cstdlib>
#include <string>

#include "platform/desktop/no_keys.h"
#include "platform/keys/grabbed_keys.h"

namespace tavlo::platform::desktop {
namespace {

std::string Display(const char* variable) {
  const char* const name = std::getenv(variable);
  return name ? name : "";
}

std::unique_ptr<remote::GlobalKeys> KeysHere(DescriptorWaits& waits,
                                             const DesktopKeys::Make& portal) {
  if (!Display("WAYLAND_DISPLAY").empty()) return portal();
  const std::string display = Display("DISPLAY");
  if (display.empty()) return std::make_unique<NoKeys>(remote::KeyWay::None);
  return std::make_unique<GrabbedKeys>(waits, display);
}

}  // namespace

DesktopKeys::DesktopKeys(DescriptorWaits& waits, const Make& portal)
    : keys_(KeysHere(waits, portal)) {}

}  // namespace tavlo::platform::desktop
