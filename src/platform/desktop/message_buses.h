#pragma once

#include <chrono>
#include <string>

namespace tavlo::platform::desktop {

/// Keeps the toolkit from message buses that take connections and then answer nothing, as those of
/// a hung desktop do: it would wait for them, for half a minute or for good. The session bus and
/// the one of screen readers are tried as the environment names them, with the greeting and two
/// real calls; one that falls silent is taken out of the environment of this process, and a line on
/// its standard error says so. One that is not there at all or hangs up is left alone, since the
/// toolkit notices that at once.
///
/// To be called before the QApplication is made and before there is another thread. `patience` is
/// what each bus has for its answer; a healthy one takes well under a millisecond. Only where a bus
/// is silent does a longer one cost anything, and too short a one takes a screen reader away from
/// whoever starts the deck on a busy machine.
void LeaveSilentBuses(std::chrono::milliseconds patience = std::chrono::seconds{1});

/// The address of the session bus as libraries take it from the environment; empty where it names
/// none. `LeaveSilentBuses` may take it away, so whoever waits for a bus that may wake up asks
/// before.
std::string SessionBusAddress();

}  // namespace tavlo::platform::desktop
