#pragma once

namespace tavlo::platform {

/// Cuts a connection to a display when the shell stops the program (Ctrl+Z in a terminal), so that
/// the display takes back what the connection had grabbed. Nobody would answer for a key any more,
/// and with the first one the keyboard of the whole session would stand still.
///
/// One at a time in a process. It begins and ends on the thread that uses the connection. A stop
/// that no program is told of (SIGSTOP) can not be helped.
class CutWhenStopped {
 public:
  /// The connection must be open as long as this lives.
  explicit CutWhenStopped(int descriptor);
  ~CutWhenStopped();
  CutWhenStopped(const CutWhenStopped&) = delete;

  /// The program was stopped, and runs again.
  bool HasCut() const;
};

}  // namespace tavlo::platform
