#pragma once

namespace tavlo::platform {

/// Limits this process to what a settings database takes: some seconds of a processor, some memory,
/// no file that grows, no new program. A file that was made up to do harm meets them.
void LimitOwnProcess();

}  // namespace tavlo::platform
