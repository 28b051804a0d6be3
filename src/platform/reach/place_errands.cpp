#include "platform/reach/place_errands.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace tavlo::platform {
namespace {

class NoSign : public Errands::Sign {
 public:
  void Give() override {}
};

void RunHere(const std::function<void(Errands::Sign&)>& work) {
  NoSign sign;
  work(sign);
}

/// Has the answers ring while the loop listens, which a wait inside another one does, too.
class Listening {
 public:
  explicit Listening(Answers& answers)
      : answers_(answers), before_(answers.listened.exchange(true)) {}
  ~Listening() { answers_.listened = before_; }
  Listening(const Listening&) = delete;

 private:
  Answers& answers_;
  const bool before_;
};

/// One more for as long as this lives.
class Counted {
 public:
  explicit Counted(int& count) : count_(++count) {}
  ~Counted() { --count_; }
  Counted(const Counted&) = delete;

 private:
  int& count_;
};

}  // namespace

PlaceErrands::PlaceErrands(base::Loop& loop, DescriptorWaits& waits, Places& places, FootGate& feet,
                           std::chrono::milliseconds idle)
    : loop_(loop),
      places_(places),
      feet_(feet),
      idle_(idle),
      answersWait_(waits.WaitInBreathsToo(answers_->bell.Descriptor(), "An answer",
                                          [answers = answers_] { answers->bell.Silence(); })) {}

PlaceErrands::~PlaceErrands() {
  for (const auto& [mount, desk] : desks_) desk->Close();
}

bool PlaceErrands::Run(const std::string& path, std::function<void(Sign&)> work) {
  if (OnTheLoop()) return Run(places_.PlaceOf(path), std::move(work));
  RunHere(work);
  return true;
}

bool PlaceErrands::Run(const Place& place, std::function<void(Sign&)> work) {
  if (!place.mayStall) {
    RunHere(work);
    return true;
  }
  const std::optional<Begun> begun = Begin(place, std::move(work));
  if (!begun || !Await(*begun, [] { return false; })) return false;
  // A rule that asks much, and quickly gets each answer, must let the window live, too.
  if (breathes_) loop_.Breathe();
  return true;
}

bool PlaceErrands::OutOfReach(const std::string& path) { return OutOfReach(places_.PlaceOf(path)); }

bool PlaceErrands::OutOfReach(const Place& place) {
  const auto found = desks_.find(place.mount);
  if (found == desks_.end()) return false;
  return found->second->Owes() || (place.mayStall && found->second->Awaited > 0);
}

ErrandDesk& PlaceErrands::DeskOf(const Place& place) {
  const auto found = desks_.find(place.mount);
  if (found != desks_.end()) return *found->second;
  std::erase_if(desks_, [](const auto& entry) { return entry.second->IsClosed(); });
  return *desks_.emplace(place.mount, std::make_shared<ErrandDesk>(answers_, idle_)).first->second;
}

std::optional<PlaceErrands::Begun> PlaceErrands::Begin(const Place& place,
                                                       std::function<void(Sign&)> work) {
  ErrandDesk& desk = DeskOf(place);
  if (desk.Owes()) return {};
  Begun begun;
  begun.place_ = place;
  begun.desk_ = desk.shared_from_this();
  begun.errand_ = std::make_shared<Errand>();
  begun.errand_->work = std::move(work);
  if (!desk.Take(begun.errand_)) return {};
  return begun;
}

bool PlaceErrands::Await(const Begun& begun, const std::function<bool()>& enough) {
  ErrandDesk& desk = *begun.desk_;
  const Errand& errand = *begun.errand_;
  const auto done = [&] { return errand.returned || enough(); };
  const Counted awaited(desk.Awaited);
  if (!desk.Watch(done, kGlance) && !WaitPatiently(begun, done)) {
    desk.TakeBack(begun.errand_);
    desk.LeaveBehind();
    ++givenUp_;
    return false;
  }
  if (errand.returned && errand.failure) std::rethrow_exception(errand.failure);
  return true;
}

bool PlaceErrands::WaitPatiently(const Begun& begun, const std::function<bool()>& done) {
  const Listening listening(*answers_);
  ErrandDesk& desk = *begun.desk_;
  std::uint64_t heard = desk.Signs();
  base::Duration silent{0};
  while (silent < kPatience || !begun.place_.mayStall) {
    const base::MonotonicTime before = loop_.Now();
    if (WaitABit(desk, done)) return true;
    feet_.Look();
    // A machine that slept, or a loop that was held up, was silent itself.
    silent += std::min(loop_.Now() - before, 2 * kLook);
    if (std::exchange(heard, desk.Signs()) != heard) silent = {};
  }
  return false;
}

bool PlaceErrands::WaitABit(ErrandDesk& desk, const std::function<bool()>& done) {
  if (breathes_) return loop_.BreatheUntil(done, loop_.Now() + kLook);
  return desk.Watch(done, std::chrono::duration_cast<std::chrono::milliseconds>(kLook));
}

void PlaceErrands::LetGo(const Place& place, std::shared_ptr<void> thing) {
  if (!place.mayStall) return;
  auto errand = std::make_shared<Errand>();
  errand->work = [kept = std::move(thing)](Sign&) {};
  std::ignore = DeskOf(place).Take(errand);
}

int PlaceErrands::LeftBehind() const {
  return static_cast<int>(
      std::ranges::count_if(desks_, [](const auto& entry) { return entry.second->Owes(); }));
}

std::size_t PlaceErrands::Waiting() const {
  std::size_t waiting = 0;
  for (const auto& [mount, desk] : desks_) waiting += desk->Waiting();
  return waiting;
}

}  // namespace tavlo::platform
