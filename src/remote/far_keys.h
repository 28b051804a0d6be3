#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/listener.h"
#include "base/loop.h"
#include "forms/configuration_form.h"
#include "remote/far_hand.h"
#include "remote/global_keys.h"
#include "remote/key_trigger.h"
#include "window/configuration_page.h"
#include "window/settings_binding.h"

namespace tavlo::remote {

/// The keys of all windows and their page. A key that is chosen there is the deck's at once, and
/// stored when the configuration closes. What stands in the settings and is no key of this release
/// stays there as it is.
class FarKeys : public window::ConfigurationPage, private base::Listener {
 public:
  FarKeys(base::Loop& loop, forms::ConfigurationForm& config, window::SettingsBinding& settings,
          GlobalKeys& keys, FarHand& hand);
  ~FarKeys() override { keys_.Wish({}); }
  FarKeys(const FarKeys&) = delete;

  /// Comes due with each key that goes down or up.
  base::Timer tmrFarKeys;

  /// Takes the stored keys; from here on they run the deck.
  void Begin();
  /// Gives every key back, and lets go of what is held.
  void End();
  /// True while a key of all windows would reach the deck.
  bool AnyLive() const;
  /// A key became live or is so no more.
  std::function<void()> OnChange = [] {};

  forms::Pane& Frame() override { return config_.frameConfigKeys; }
  void WindowOpens() override;
  void ComesToFront() override;
  void WindowCloses(window::ConfigurationExit) override { windowWasClosed_ = true; }

 private:
  /// A key as it is in effect, and what it was before a hand chose it, as long as nobody knows
  /// whether it may be had.
  struct Choice {
    std::string text;
    std::optional<std::string> onTrial;
    std::string why;  ///< Why the last key that was pressed for it was refused.
  };

  Choice& Of(AfarAction action) { return choices_[IndexOf(action)]; }
  forms::KeyRow& RowOf(AfarAction action) { return config_.keys[IndexOf(action)]; }

  void WirePage();
  void HandleNews() override;
  void Look();
  void Handle(const KeyEvent& event);
  /// A key that is the deck's already does not reach the box that waits for one.
  void RefuseInTheBox(AfarAction taken);
  /// What is held counts as let go where its key is another one now, or none.
  void LetGoOfOthersThan(const std::vector<KeyWish>& wishes);
  /// A text of a box has changed, by a hand or by the settings.
  void TakeText(AfarAction action);
  void Choose(AfarAction action, const std::string& text);
  /// The first other action that has the key, or null.
  const AfarActionName* OtherWith(AfarAction action, const KeyTrigger& trigger) const;
  /// Why a hand may not have that key for the action; empty when it may.
  std::string WhyNot(AfarAction action, const std::string& text) const;
  /// Why a stored text is no key; empty when it is one, or is empty.
  std::string WhyUnusable(AfarAction action) const;
  void Wish();
  void TryAgain();
  /// A key that was just chosen and is another program's goes back to what it was.
  void EndTrials();
  void GoBack(AfarAction action, const std::string& before);
  void Show();
  void TellWhetherLive();
  std::string StateInWords(AfarAction action, const KeyGrant* grant) const;
  std::string WayInWords() const;

  base::Loop& loop_;
  forms::ConfigurationForm& config_;
  window::SettingsBinding& settings_;
  GlobalKeys& keys_;
  FarHand& hand_;
  const std::vector<window::Binding> pairs_;
  bool begun_ = false;
  bool wasLive_ = false;
  bool windowWasClosed_ = true;
  std::vector<KeyWish> wishes_;
  std::array<Choice, kAfarActions.size()> choices_;
};

}  // namespace tavlo::remote
