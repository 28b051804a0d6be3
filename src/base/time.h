#pragma once

#include <chrono>
#include <compare>

namespace tavlo::base {

/// A length of time. It never mixes with the two kinds of moment below.
using Duration = std::chrono::microseconds;

using std::chrono_literals::operator""ms;
using std::chrono_literals::operator""s;

/// A moment on the loop's monotonic clock, counted from a start that means nothing by itself.
struct MonotonicTime {
  Duration sinceStart{0};

  auto operator<=>(const MonotonicTime&) const = default;
  MonotonicTime operator+(Duration length) const { return {sinceStart + length}; }
  Duration operator-(MonotonicTime earlier) const { return sinceStart - earlier.sinceStart; }
};

/// A moment on the wall, in the user's own time zone. Month and day count from 1.
struct CalendarTime {
  int year = 1970;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int millisecond = 0;

  auto operator<=>(const CalendarTime&) const = default;
  /// Seconds since midnight, with the fraction.
  double SecondsSinceMidnight() const {
    return hour * 3600.0 + minute * 60.0 + second + millisecond / 1000.0;
  }
};

}  // namespace tavlo::base
