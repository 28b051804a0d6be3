#pragma once

#include <deque>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "remote/global_keys.h"

namespace tavlo::test {

/// The keys of all windows, with a desktop and a typist that the test moves. As strict as the real
/// ones: a key comes only while it is held for the deck, once for each press, and whatever takes it
/// away lets it go first. With no wish nothing is told.
class SimulatedGlobalKeys : public remote::GlobalKeys {
 public:
  remote::KeyWay Here = remote::KeyWay::Grabs;
  bool HasPage = false;            ///< The desktop has a page of its own for keys.
  std::set<std::string> OfOthers;  ///< Triggers that another program holds.
  std::set<std::string> NoKeys;    ///< Triggers that no key of the keyboard makes.
  std::set<std::string> Denied;    ///< Triggers that the desktop does not give.
  bool Answers = true;             ///< False: what is asked for stays asked until `Answer`.
  std::vector<std::vector<remote::KeyWish>> Wished;  ///< Every wish, in order.
  int Tries = 0;                                     ///< How often `TryAgain` was called.
  int PagesShown = 0;

  /// Somebody presses the key, or lets it go, whichever window has the keyboard. False when it is
  /// not the deck's, and then the deck hears nothing of it.
  bool Down(remote::AfarAction action);
  bool Up(remote::AfarAction action);
  /// The keyboard, the display or the desktop changes: what is held counts as let go, and each wish
  /// is answered anew.
  void ChangeDesktop();
  /// The desktop answers what is asked.
  void Answer();
  /// The desktop says that it gave another key for this action than was wished for.
  void Give(remote::AfarAction action, const std::string& given);
  /// The process is gone.
  void ForgetProcess();

  bool Holds(remote::AfarAction action) const;
  bool IsDown(remote::AfarAction action) const { return down_.contains(action); }
  bool AnyWish() const { return !wishes_.empty(); }
  const std::vector<remote::KeyWish>& Wishes() const { return wishes_; }

  void Tell(base::Listener& listener) override { listener_ = &listener; }
  void Wish(const std::vector<remote::KeyWish>& wishes) override;
  void TryAgain() override;
  remote::KeyWay Way() const override { return Here; }
  std::vector<remote::KeyGrant> Grants() const override { return grants_; }
  std::optional<remote::KeyEvent> Next() override;
  bool CanConfigure() const override { return HasPage && AnyWish(); }
  void Configure() override;

 private:
  remote::KeyState Judge(const remote::KeyWish& wish) const;
  void LetGoOf(const std::set<remote::AfarAction>& lost);
  void News();

  base::Listener* listener_ = nullptr;
  std::vector<remote::KeyWish> wishes_;
  std::vector<remote::KeyGrant> grants_;
  std::set<remote::AfarAction> down_;
  std::deque<remote::KeyEvent> events_;
};

}  // namespace tavlo::test
