#pragma once

#include <systemd/sd-bus.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "support/portal_words.h"

namespace tavlo::test {

/// What a portal is like. All of it may be changed while it runs, by `MockPortal::Change`.
struct PortalManners {
  unsigned version = 2;  ///< 0 when it knows no keys.
  bool knowsPrograms = true;
  unsigned toCreate = 0;  ///< How it answers the requests: 0 is yes.
  unsigned toBind = 0;
  bool asksSomebody = false;     ///< Who binds waits for `Answer`.
  bool usesOtherPaths = false;   ///< Its requests are not where they should be.
  bool answersTooEarly = false;  ///< Before it has confirmed what it is asked.
  bool tellsEverybody = false;   ///< Its signals are not for the deck alone.
  bool endsWhatItBinds = false;  ///< It closes a session right after its keys were bound.
  /// The trigger that it gives for a wish, which may be empty; nothing when it gives none.
  std::function<std::optional<std::string>(const WishedShortcut&)> gives =
      [](const WishedShortcut& wish) { return wish.trigger; };
  /// What it says instead of its answers, from the first value on.
  std::function<void(sd_bus_message& response)> saysCreated;
  std::function<void(sd_bus_message& response)> saysBound;
  /// Answers a call in its place when it returns true.
  std::function<bool(sd_bus_message& call)> instead;
};

/// A desktop's portal for keys of all windows, on a bus of the test's own and on a thread of its
/// own. All that is called here waits until that thread has done it.
class MockPortal {
 public:
  /// It has the portal's name when this returns.
  explicit MockPortal(const std::string& busAddress, PortalManners manners = {});
  ~MockPortal();
  MockPortal(const MockPortal&) = delete;

  void Change(const std::function<void(PortalManners&)>& change);

  /// Its connection closes, as when its process is killed.
  void Die();
  void ComeBack();
  /// From here on it does nothing, and its connection stays.
  void Hang();
  void GoOn();

  // What it was asked.

  /// The names of all calls, in their order.
  std::vector<std::string> Calls() const;
  int Count(const std::string& member) const;
  /// Of the last session.
  std::vector<WishedShortcut> Wished() const;
  /// The programs that have said who they are.
  std::vector<std::string> Programs() const;
  /// Sessions that were created and not closed.
  int Sessions() const;
  /// How many windows that ask somebody are open now, and were at most.
  int Windows() const;
  int MostWindows() const;

  // What it does by itself.

  /// Answers for somebody who was asked, as `PortalManners::toBind` says.
  void Answer();
  void Activate(const std::string& id);
  void Deactivate(const std::string& id);
  void GiveAnother(const std::string& id, const std::string& trigger);
  /// Of the last session.
  void CloseSession();
  /// Sends a signal of the shortcuts' interface, for whom its manners say.
  void Emit(const char* member, const std::function<void(sd_bus_message& signal)>& words);
  std::string SessionPath() const;
  /// The name on the bus of who asked last.
  std::string Client() const;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace tavlo::test
