#pragma once

namespace tavlo::platform::desktop {

/// Ends this process's connections: to the screen, which then shows none of its windows any more,
/// to the sound server and to the message buses. A process that ends closes them by itself, but one
/// that leaves a thread behind in a call that gets no answer does not end before the answer. To be
/// called last, since none of the libraries that have the connections can go on without them.
void HangUp();

}  // namespace tavlo::platform::desktop
