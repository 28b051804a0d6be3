#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/loop.h"

namespace tavlo::test {

/// The places of a simulated disk that are late. A place is a folder and all that is below it, as a
/// mount is; of places that stand within each other the innermost counts. Paths are full paths.
class SimulatedPlaces {
 public:
  /// How long a call waits for a place that gives no sign.
  static constexpr base::Duration kPatience = std::chrono::seconds{5};

  explicit SimulatedPlaces(base::Loop& loop) : loop_(loop) {}

  /// What becomes of a call that was left behind, once its place answers again.
  enum class Late { Happens, Fails };

  /// Each call at the place takes so long, less than the patience, while the loop breathes.
  void SlowDown(const std::string& folder, base::Duration length);
  /// No call at the place comes back any more.
  void Stall(const std::string& folder);
  /// The place answers again, and what was left behind there comes back.
  void Resume(const std::string& folder, Late late);
  /// A place that a call gave up answers again as soon as that call has returned.
  void ResumeOnceGivenUp(Late late) { onceGivenUp_ = late; }
  /// A call that another part made at the place was given up. It does nothing when it comes back.
  void LeaveBehind(const std::string& folder);
  /// All places answer at once.
  void Mend(Late late);
  /// The process that asked is gone. What it left behind comes back before another one is answered.
  void ForgetProcess(Late late);

  bool AnyStalls() const;
  bool Stalls(const std::string& path) const;
  bool Owes(const std::string& path) const;
  /// The same, or a call waits for its answer.
  bool OwesOrKeepsWaiting(const std::string& path) const;
  /// Whether any place owes an answer.
  bool AnyOwes() const;

  /// A call at these paths. Lets the time pass that it takes. False when it is out of reach: then
  /// `late` runs if the place says so when it answers again.
  bool Answers(const std::vector<std::string>& paths, std::function<void()> late);

  /// How long calls have waited for answers that came.
  base::Duration AnsweredAfter{0};
  /// How often a place was given up.
  int TimesGivenUp = 0;

 private:
  struct Place {
    base::Duration takes{0};
    bool stalls = false;
    bool owes = false;
    int waiting = 0;               ///< Calls that wait, one inside the other.
    base::MonotonicTime askedAt;   ///< When the first of them came.
    std::function<void()> behind;  ///< What was left behind.
  };

  std::vector<Place*> PlacesOf(const std::vector<std::string>& paths);
  /// The innermost place that holds the path, or null.
  const std::string* FolderHolding(const std::string& path) const;
  bool WaitFor(const std::vector<Place*>& asked);
  void GiveUp(const std::vector<Place*>& asked, std::function<void()> late);
  static void ComeBack(Place& place, Late late);

  base::Loop& loop_;
  std::map<std::string, Place> places_;
  std::optional<Late> onceGivenUp_;
};

}  // namespace tavlo::test
