#pragma once

#include <functional>
#include <string>
#include <utility>

#include "platform/reach/errands.h"

namespace tavlo::test {

/// Errands of one place, done where they are asked for, or left behind in a stall.
class ErrandsAtHand : public platform::Errands {
 public:
  /// The next errand gives no answer.
  bool Stalls = false;
  /// False: the place is out of reach, though nothing was left behind there.
  bool PlacesAnswer = true;
  int Asked = 0;
  int Signs = 0;

  bool Run(const std::string&, std::function<void(Sign&)> work) override {
    ++Asked;
    if (OutOfReach({})) return false;
    if (Stalls) {
      behind_ = std::move(work);
      return false;
    }
    Do(work);
    return true;
  }
  bool OutOfReach(const std::string&) override { return !PlacesAnswer || behind_; }

  /// The stall is over, and what was left behind is done after all.
  void ComeBack() {
    Stalls = false;
    const auto work = std::exchange(behind_, {});
    if (work) Do(work);
  }

 private:
  class CountedSign : public Sign {
   public:
    explicit CountedSign(int& count) : count_(count) {}
    void Give() override { ++count_; }

   private:
    int& count_;
  };

  void Do(const std::function<void(Sign&)>& work) {
    CountedSign sign(Signs);
    work(sign);
  }

  std::function<void(Sign&)> behind_;
};

}  // namespace tavlo::test
