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

std::string KeyOf(const AfarActionName& action, const KeyTrigger& trigger) {
  return trigger.InWords() + " is the key of \"" + std::string(action.description) + "\".";
}

}  // namespace

FarKeys::FarKeys(base::Loop& loop, forms::ConfigurationForm& config,
                 window::SettingsBinding& settings, GlobalKeys& keys, FarHand& hand)
    : tmrFarKeys(loop, "tmrFarKeys", kAtOnce),
      loop_(loop),
      config_(config),
      settings_(settings),
      keys_(keys),
      hand_(hand),
      pairs_(window::PairsOn(config.frameConfigKeys, settings.Bindings())) {
  tmrFarKeys.OnTick = [this] { Look(); };
  WirePage();
  keys_.Tell(*this);
}

void FarKeys::WirePage() {
  for (const auto& [action, id, description] : kAfarActions) {
    RowOf(action).lblKey.Value = std::string(description);
    RowOf(action).txtKey.Heard = "Key for " + std::string(description);
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
  tmrFarKeys.Stop();
  LetGoOfOthersThan({});
  keys_.Wish({});
}

bool FarKeys::AnyLive() const {
  return std::ranges::any_of(keys_.Grants(),
                             [](const KeyGrant& grant) { return grant.state == KeyState::Held; });
}

void FarKeys::WindowOpens() {
  for (const window::Binding& pair : pairs_) pair.ShowTick();
  // Who comes back to the page may have freed a key meanwhile. A desktop that asks first is left in
  // peace, for its question takes the keyboard, and its end would be another coming back.
  const bool asksNobody = keys_.Way() == KeyWay::Grabs;
  if (std::exchange(windowWasClosed_, false) || asksNobody) {
    if (Frame().Visible) TryAgain();
  }
  Show();
}

void FarKeys::ComesToFront() {
  for (Choice& choice : choices_) choice.why.clear();
  TryAgain();
  Show();
}

void FarKeys::TryAgain() {
  if (begun_ && !wishes_.empty()) keys_.TryAgain();
}

void FarKeys::HandleNews() {
  if (begun_) tmrFarKeys.StartDue();
}

void FarKeys::Look() {
  while (begun_) {
    const auto event = keys_.Next();
    if (!event) break;
    // What waits behind it is heard while it waits, or stands under a box: a release must not stay
    // behind, and a press that nothing came of there must not meet the next document.
    tmrFarKeys.StartDue();
    // Each one is an event of its own, so that one that fails does not keep a release waiting.
    loop_.RunEvent(tmrFarKeys.Name(), [&] { Handle(*event); });
  }
  tmrFarKeys.Stop();
  EndTrials();
  Show();
}

void FarKeys::Handle(const KeyEvent& event) {
  RowOf(event.action).Down = event.down;
  if (event.down) RefuseInTheBox(event.action);
  event.down ? hand_.Press(event.action) : hand_.Release(event.action);
}

void FarKeys::RefuseInTheBox(AfarAction taken) {
  const auto trigger = KeyTrigger::Of(Of(taken).text);
  if (!trigger) return;
  for (const AfarActionName& name : kAfarActions) {
    if (name.action == taken || !RowOf(name.action).HasKeyboard) continue;
    Of(name.action).why = KeyOf(kAfarActions[IndexOf(taken)], *trigger);
  }
}

void FarKeys::LetGoOfOthersThan(const std::vector<KeyWish>& wishes) {
  for (const AfarActionName& name : kAfarActions) {
    const auto before = std::ranges::find(wishes_, name.action, &KeyWish::action);
    if (before != wishes_.end() && std::ranges::find(wishes, *before) != wishes.end()) continue;
    Handle({.action = name.action, .down = false});
  }
  wishes_ = wishes;
}

void FarKeys::TakeText(AfarAction action) {
  forms::Text& box = RowOf(action).txtKey;
  const std::string text = box.Value;
  if (text == Of(action).text) return;
  if (settings_.Loading()) {
    Of(action) = {.text = text};
    return;
  }
  const auto trigger = KeyTrigger::Of(text);
  if (trigger && trigger->Text() != text) {
    // This runs again for what is written here.
    box.Value = trigger->Text();
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

const AfarActionName* FarKeys::OtherWith(AfarAction action, const KeyTrigger& trigger) const {
  const auto other = std::ranges::find_if(kAfarActions, [&](const AfarActionName& name) {
    return name.action != action && KeyTrigger::Of(choices_[IndexOf(name.action)].text) == trigger;
  });
  return other == kAfarActions.end() ? nullptr : &*other;
}

std::string FarKeys::WhyNot(AfarAction action, const std::string& text) const {
  if (text.empty()) return {};
  const auto trigger = KeyTrigger::Of(text);
  if (!trigger) return "This key can not be used.";
  const AfarActionName* const other = OtherWith(action, *trigger);
  return other ? KeyOf(*other, *trigger) : WhyNeededForWriting(*trigger);
}

std::string FarKeys::WhyUnusable(AfarAction action) const {
  const std::string& text = choices_[IndexOf(action)].text;
  const auto trigger = KeyTrigger::Of(text);
  if (text.empty()) return {};
  if (!trigger) return "This release does not know the key.";
  // The first of two that have the same key keeps it.
  const AfarActionName* const other = OtherWith(action, *trigger);
  const bool isSecond = other && IndexOf(other->action) < IndexOf(action);
  return isSecond ? KeyOf(*other, *trigger) : WhyNeededForWriting(*trigger);
}

void FarKeys::Wish() {
  if (!begun_) return;
  std::vector<KeyWish> wishes;
  for (const AfarActionName& name : kAfarActions) {
    const auto trigger = KeyTrigger::Of(Of(name.action).text);
    if (!trigger || !WhyUnusable(name.action).empty()) continue;
    wishes.push_back({.action = name.action, .trigger = trigger->Text()});
  }
  LetGoOfOthersThan(wishes);
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
    GoBack(grant.action, before);
    wentBack = true;
  }
  if (wentBack) Wish();
}

void FarKeys::GoBack(AfarAction action, const std::string& before) {
  forms::Text& box = RowOf(action).txtKey;
  // Another action may have been given the key meanwhile.
  const auto trigger = KeyTrigger::Of(before);
  Of(action).text = trigger && OtherWith(action, *trigger) ? "" : before;
  box.Value = Of(action).text;
  // The window was closed before the answer came, and has stored what was on trial.
  if (config_.frmConfiguration.Visible) return;
  const auto& bindings = settings_.Bindings();
  const auto binding = std::ranges::find(bindings, &box, &window::Binding::text);
  settings_.Saver().Write(store::Table::GeneralSettings, 0,
                          {{std::string(binding->field), box.Value}});
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
  TellWhetherLive();
}

void FarKeys::TellWhetherLive() {
  const bool live = AnyLive();
  if (std::exchange(wasLive_, live) != live) OnChange();
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
      if (!grant->given.empty()) return "The desktop gave: " + grant->given;
      return keys_.Way() == KeyWay::Portal ? "The desktop does not say which key it gave." : "";
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
      return "This desktop lets no program have keys of other windows.";
    case KeyWay::None:
      break;
  }
  return "There is no desktop here that could give keys of other windows.";
}

}  // namespace tavlo::remote
