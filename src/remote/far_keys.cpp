#include "remote/far_keys.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "remote/at_once.h"

namespace tavlo::remote {
namespace {

static_assert(std::tuple_size_v<decltype(forms::KeysPage::keys)> == kAfarActions.size());

std::string InWords(const std::string& text) {
  const auto trigger = KeyTrigger::Of(text);
  return trigger ? trigger->InWords() : text;
}

}  // namespace

FarKeys::FarKeys(base::Loop& loop, forms::ConfigurationForm& config,
                 window::SettingsBinding& settings, GlobalKeys& keys, FarHand& hand)
    : config_(config),
      settings_(settings),
      keys_(keys),
      hand_(hand),
      tmrFarKeys_(loop, "tmrFarKeys", kAtOnce),
      pairs_(window::PairsOn(config.frameConfigKeys, settings.Bindings())) {
  tmrFarKeys_.OnTick = [this] { Look(); };
  WirePage();
  keys_.Tell(*this);
}

void FarKeys::WirePage() {
  for (const auto& [action, id, description] : kAfarActions) {
    RowOf(action).lblKey.Value = std::string(description);
    RowOf(action).txtKey.OnChange = [this, action = action] { TakeText(action); };
  }
  const auto focusAway = [this] { config_.frmConfiguration.FocusOn(config_.txtFocus); };
  for (const window::Binding& pair : pairs_) {
    pair.check->OnClick = [pair, focusAway] {
      pair.TakeTick();
      focusAway();
    };
  }
  config_.cmdDesktopKeys.OnPress = [this, focusAway] {
    if (keys_.CanConfigure()) keys_.Configure();
    focusAway();
  };
}

void FarKeys::Begin() {
  begun_ = true;
  Wish();
}

void FarKeys::End() {
  begun_ = false;
  tmrFarKeys_.Stop();
  hand_.LetGo();
  keys_.Wish({});
}

bool FarKeys::AnyLive() const {
  return std::ranges::any_of(keys_.Grants(),
                             [](const KeyGrant& grant) { return grant.state == KeyState::Held; });
}

void FarKeys::WindowOpens() {
  for (const window::Binding& pair : pairs_) pair.ShowTick();
  Show();
}

void FarKeys::ComesToFront() {
  if (begun_) keys_.TryAgain();
  Show();
}

void FarKeys::HandleNews() {
  if (begun_) tmrFarKeys_.StartDue();
}

void FarKeys::Look() {
  tmrFarKeys_.Stop();
  while (const auto event = keys_.Next()) Handle(*event);
  EndTrials();
  Show();
  if (std::exchange(wasLive_, AnyLive()) != wasLive_) OnChange();
}

void FarKeys::Handle(const KeyEvent& event) {
  RowOf(event.action).Down = event.down;
  event.down ? hand_.Press(event.action) : hand_.Release(event.action);
}

void FarKeys::TakeText(AfarAction action) {
  forms::Text& box = RowOf(action).txtKey;
  const std::string text = box.Value;
  if (text == Of(action).text) return;
  if (settings_.Loading()) {
    Of(action) = {.text = text};
    return;
  }
  Of(action).why = WhyNot(action, text);
  if (Of(action).why.empty()) {
    Choose(action, text);
  } else {
    box.Value = Of(action).text;
  }
  Show();
}

void FarKeys::Choose(AfarAction action, const std::string& text) {
  const std::string before = std::exchange(Of(action).text, text);
  if (text.empty()) {
    Of(action).onTrial.reset();
  } else if (!Of(action).onTrial) {
    Of(action).onTrial = before;
  }
  Wish();
}

std::string FarKeys::WhyNot(AfarAction action, const std::string& text) const {
  if (text.empty()) return {};
  const auto trigger = KeyTrigger::Of(text);
  if (!trigger) return "This key can not be used.";
  for (const auto& [other, id, description] : kAfarActions) {
    if (other == action || choices_[IndexOf(other)].text != text) continue;
    return trigger->InWords() + " is the key of \"" + std::string(description) + "\".";
  }
  return WhyNeededForWriting(*trigger);
}

std::string FarKeys::WhyUnusable(AfarAction action) const {
  const std::string& text = choices_[IndexOf(action)].text;
  const auto trigger = KeyTrigger::Of(text);
  if (text.empty()) return {};
  if (!trigger) return "This release does not know the key.";
  // The first of two that have the same key keeps it.
  for (std::size_t i = 0; i < IndexOf(action); ++i) {
    if (choices_[i].text != text) continue;
    return trigger->InWords() + " is the key of \"" + std::string(kAfarActions[i].description) +
           "\".";
  }
  return WhyNeededForWriting(*trigger);
}

void FarKeys::Wish() {
  if (!begun_) return;
  std::vector<KeyWish> wishes;
  for (const AfarActionName& name : kAfarActions) {
    const std::string& text = Of(name.action).text;
    if (text.empty() || !WhyUnusable(name.action).empty()) continue;
    wishes.push_back({.action = name.action, .trigger = text});
  }
  keys_.Wish(wishes);
  Show();
}

void FarKeys::EndTrials() {
  bool wentBack = false;
  for (const KeyGrant& grant : keys_.Grants()) {
    Choice& choice = Of(grant.action);
    if (!choice.onTrial || grant.state == KeyState::Asked) continue;
    const std::string before = *std::exchange(choice.onTrial, std::nullopt);
    if (grant.state != KeyState::OthersHold) continue;
    choice.why = "Another program has " + InWords(choice.text) + ".";
    choice.text = before;
    RowOf(grant.action).txtKey.Value = before;
    wentBack = true;
  }
  if (wentBack) Wish();
}

void FarKeys::Show() {
  const std::vector<KeyGrant> grants = keys_.Grants();
  for (const AfarActionName& name : kAfarActions) {
    const auto grant = std::ranges::find(grants, name.action, &KeyGrant::action);
    RowOf(name.action).lblKeyState.Value =
        StateInWords(name.action, grant == grants.end() ? nullptr : &*grant);
  }
  config_.lblKeysWay.Value = WayInWords();
  config_.cmdDesktopKeys.Visible = keys_.CanConfigure();
}

std::string FarKeys::StateInWords(AfarAction action, const KeyGrant* grant) const {
  const Choice& choice = choices_[IndexOf(action)];
  if (!choice.why.empty()) return choice.why;
  const std::string unusable = WhyUnusable(action);
  if (!unusable.empty() || !grant) return unusable;
  switch (grant->state) {
    case KeyState::Asked:
      return keys_.Way() == KeyWay::Portal ? "The desktop is asked." : "";
    case KeyState::Held:
      return grant->given.empty() ? "" : "The desktop gave: " + grant->given;
    case KeyState::OthersHold:
      return "Another program has this key.";
    case KeyState::NotOnKeyboard:
      return "This keyboard has no such key.";
    case KeyState::Refused:
      return "The desktop does not give this key.";
  }
  return {};
}

std::string FarKeys::WayInWords() const {
  switch (keys_.Way()) {
    case KeyWay::Grabs:
      return "These keys run the deck while you type in another window. A pedal that sends keys "
             "works, too: click a box and press it.";
    case KeyWay::Portal:
      return keys_.CanConfigure()
                 ? "These keys run the deck while you type in another window. The desktop asks you "
                   "first, and may give others; its own page changes them."
                 : "These keys run the deck while you type in another window. The desktop asks you "
                   "first, and may give others; its settings of keyboard shortcuts change them.";
    case KeyWay::PortalMissing:
      return "This desktop lets no program have keys of other windows. Media keys work.";
    case KeyWay::None:
      break;
  }
  return "There is no desktop here that could give keys of other windows.";
}

}  // namespace tavlo::remote
