#include "remote/ways_from_afar.h"

#include <string>
#include <vector>

#include "remote/at_once.h"

namespace tavlo::remote {
namespace {

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const bool isLast = i + 1 == words.size();
    text += (i == 0 ? "" : isLast ? " and " : ", ") + words[i];
  }
  return text;
}

}  // namespace

WaysFromAfar::WaysFromAfar(const Parts& parts)
    : parts_(parts), tmrWaysFromAfar_(parts.loop, "tmrWaysFromAfar", kAtOnce) {
  parts_.pedalState.OnShow = [this] { Show(); };
  parts_.keys.OnChange = [this] { Show(); };
  tmrWaysFromAfar_.OnTick = [this] {
    tmrWaysFromAfar_.Stop();
    Show();
  };
}

void WaysFromAfar::Offer(MediaSource& player) {
  parts_.bus.Offer(player, *this);
  Show();
}

void WaysFromAfar::Withdraw() { parts_.bus.Withdraw(); }

void WaysFromAfar::HandleNews() { tmrWaysFromAfar_.StartDue(); }

void WaysFromAfar::Show() {
  const bool mediaKeys = parts_.bus.IsLive();
  std::vector<std::string> live;
  if (parts_.usbPedal.Presence() == pedals::UsbPresence::Ready) live.push_back("the USB pedal");
  if (parts_.serialPedal.Reads()) live.push_back("the serial pedal");
  if (parts_.keys.AnyLive()) live.push_back("keys");
  if (mediaKeys) live.push_back("media keys");
  parts_.config.lblWaysFromAfar.Value =
      live.empty() ? "Nothing runs the deck from another window now."
                   : "From any window the deck is run by " + Joined(live) + ".";
  parts_.config.lblMediaKeys.Value =
      mediaKeys ? "Media keys, headset buttons and lock screens run the deck."
                : "Media keys do not reach the deck: the desktop's session bus is not there.";
}

}  // namespace tavlo::remote
