#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace tavlo::simulation {

/// A stream of numbers that is the same on every machine. Each part of a simulation draws from a
/// child of its own, so that one more draw in one part does not change what the others do.
class Chance {
 public:
  explicit Chance(std::uint64_t seed) : state_(seed) {}

  Chance Child(std::string_view part) const {
    std::uint64_t seed = state_;
    for (const char c : part) seed = (seed ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    return Chance(Mixed(seed));
  }

  std::uint64_t Next() { return Mixed(state_ += 0x9E3779B97F4A7C15U); }
  /// From 0 to `count` - 1; `count` is at least 1.
  int Below(int count) { return static_cast<int>(Next() % static_cast<std::uint64_t>(count)); }
  bool OneIn(int count) { return Below(count) == 0; }
  template <typename Choices>
  const auto& Pick(const Choices& choices) {
    return choices[static_cast<std::size_t>(Below(static_cast<int>(std::size(choices))))];
  }
  /// One of the choices, each as likely as its `weight` is large. At least one weight is above 0.
  template <typename Choices>
  const auto& PickByWeight(const Choices& choices) {
    int all = 0;
    for (const auto& choice : choices) all += choice.weight;
    int drawn = Below(all);
    return *std::find_if(std::begin(choices), std::end(choices),
                         [&](const auto& choice) { return (drawn -= choice.weight) < 0; });
  }

 private:
  static std::uint64_t Mixed(std::uint64_t value) {
    value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31U);
  }

  std::uint64_t state_;
};

}  // namespace tavlo::simulation
