#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "forms/controls.h"
#include "store/disk.h"
#include "support/simulated_notifier.h"

namespace tavlo::simulation {

class Desk;

/// Holds what the program tells of new work against the names that its folders held at the last
/// look and hold now. Whenever the program has listed all 29 folders one after the other it has
/// counted: the watch by itself to check, and everything else to take what waits as seen.
class Alerts {
 public:
  explicit Alerts(Desk& desk) : desk_(desk) {}

  /// An alert is raised, which stops what plays or winds.
  std::function<void()> OnAlert;

  /// Another run of the program begins, which has seen nothing yet. Its rules must be wired.
  void Follow();
  /// The program has listed the folder.
  void Listed(const std::string& folder, const store::Listing& listing);
  /// The desktop was told of new work, which it is at each alert, since in a simulation another
  /// window has the keyboard.
  void Notified(const test::SimulatedNotifier::Notification& notification);
  /// The empty text, or what was wrong first since the last call.
  std::string TakeFault();
  /// A check that came now would raise an alert.
  bool SomethingIsDue() const;

  /// While it lives a hand acts, perhaps in a wait of an alert.
  class Hand {
   public:
    explicit Hand(Alerts& alerts) : alerts_(alerts) { alerts_.Enter(Doing::Hand); }
    ~Hand() { alerts_.scopes_.pop_back(); }
    Hand(const Hand&) = delete;

   private:
    Alerts& alerts_;
  };

 private:
  using Paths = std::vector<std::string>;
  struct Sides {
    Paths queue;
    Paths import;
  };
  /// An alert as the typist meets it.
  struct Words {
    const char* text;
    const char* title;
    const char* prompt;
  };
  /// What one check has to tell.
  struct Check {
    const Words* ofQueue = nullptr;
    /// There is more in the import: of any files, and of those with priority. A hand may turn from
    /// one to the other in the waits.
    std::array<bool, 2> moreInImport = {};
    /// The import's files, which are seen as soon as they are told of.
    Paths import;
    /// Another count may come behind the message for the Queue, before the refresh.
    bool toldOfQueue = false;
    /// What waits has been taken as seen since.
    bool isOverlooked = false;
    bool isDisturbed = false;
    /// What was seen before it was not known. A look of its own refresh makes that known again, and
    /// then too late.
    bool isUnsure = false;
  };
  enum class Doing { Watch, Command, Hand };
  struct Scope {
    Doing doing;
    std::optional<Check> check = {};
    /// The program has no business to look for work here.
    bool mayNotLook = false;
    bool owesALook = false;
    /// At the alert that was raised last: rows in the Queue, and messages of alerts so far.
    std::optional<std::size_t> rows = {};
    std::ptrdiff_t messages = 0;
  };
  struct Listing {
    std::string folder;
    /// Full paths.
    Paths files;
    bool isWhole = false;
  };

  static const std::array<Words, 4>& AllWords();
  static const Words& WordsOf(bool priority, bool import);
  void Enter(Doing doing);
  void FollowCommand(forms::Command& command);
  void FollowTick(std::function<void()>& tick, Doing doing);
  void Leave();
  /// Messages of alerts in the record of the loop.
  std::ptrdiff_t Messages() const;
  void LeaveCheck(const Check& check);
  /// The 29 folders in the order in which they are counted.
  std::vector<std::string> Folders() const;
  bool AllFoldersStand() const;
  bool CountIsWhole() const;
  bool CountHasFailed() const;
  Sides Counted() const;
  void Look(const Sides& now);
  void CheckFor(const Sides& now);
  void CheckAgain(Check& check, const Sides& now);
  /// What stands there now, whoever looks.
  Sides Standing() const;
  std::pair<const Words*, const Words*> DueOf(const Sides& now) const;
  std::array<bool, 2> MoreInImport(const Sides& now) const;
  /// What the check has to tell of the import as alerts are set now.
  const Words* OfImport(const Check& check) const;
  void LookWhatWasSaid();
  void Fault(const std::string& what);

  Desk& desk_;
  Sides seen_;
  /// A look has failed, or takes several counts: what is told until the next whole one is not
  /// foreseen.
  bool isUnsure_ = false;
  /// The last ones, as many as there are folders.
  std::deque<Listing> listings_;
  std::vector<Scope> scopes_;
  std::string fault_;
};

}  // namespace tavlo::simulation
