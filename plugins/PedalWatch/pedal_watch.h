#pragma once

#include <cstdint>

/// The watcher of USB foot pedals. Truth values are the byte 1, a monitor is a handle above 0.
///
/// Every report that is handed over has three bytes: the report number, which is 0, the pedals'
/// bits (1 left, 2 center, 4 right) and one more byte of the pedal's own. Reports come in the order
/// in which the pedal sent them. A pedal may be plugged in and out at any time; when one goes, a
/// report with all pedals up is handed over.
extern "C" {

/// Starts to watch and writes the handle. The three figures pick the product, the usage page and
/// the usage of the pedal; other pedals that the library knows are taken as well. 1 when the watch
/// started, though no pedal be there yet; 0 when the figures pick nothing or no watch can run.
[[gnu::visibility("default")]] std::uint8_t StartWatch(std::int32_t product, std::int32_t usagePage,
                                                       std::int32_t usage, std::int32_t* monitor);

/// Hands over whole reports, as many as wait and fit, 33 at most and one at the first hand-over,
/// and writes how many bytes they take. 1 when the watch could be read, also when nothing waits.
/// Never waits for the pedal.
[[gnu::visibility("default")]] std::uint8_t GetData(std::int32_t* monitor, std::uint8_t* buffer,
                                                    std::int32_t size, std::int32_t* count);

/// Ends the watch and sets the handle to 0. 0 when there is no such watch.
[[gnu::visibility("default")]] std::uint8_t StopWatch(std::int32_t* monitor);

/// 0 when there is no such watch, 1 when no pedal is plugged in, 2 when one is that this user may
/// not read, 3 while one is being read.
[[gnu::visibility("default")]] std::int32_t PedalPresence(std::int32_t monitor);

/// A descriptor to wait on: it can be read while GetData has reports to hand over, or PedalPresence
/// answers otherwise than at the last GetData. GetData makes it quiet, so nobody reads from it. It
/// belongs to the watch and ends with it. -1 when there is no such watch. A library may lack this
/// call and PedalPresence; one that lacks this one is asked for data again and again.
[[gnu::visibility("default")]] std::int32_t NewsDescriptor(std::int32_t monitor);
}
