#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>

#include "platform/wake/bell.h"
#include "remote/global_keys.h"

namespace tavlo::platform {

/// What keys did, on its way from the thread that sees it to the loop. Each call may come from any
/// thread; none waits for longer than another one takes.
class KeyEvents {
 public:
  /// Presses that may wait for the rules. No hand gets so far ahead of them; beyond that a press is
  /// lost with its release. The release of a press that was taken never is.
  static constexpr std::size_t kMostPresses = 64;

  /// Rings the bell.
  void Push(remote::KeyEvent event);
  std::optional<remote::KeyEvent> Next();
  /// Nothing waits any more, and no key is held.
  void Forget();
  /// Whether those keys that act while they are held, and that the rules have heard of, have all
  /// been let go since the rules, or this, looked last.
  bool LetGo();

  /// Rung when an event comes.
  const Bell& News() const { return news_; }

 private:
  using Actions = unsigned;  ///< One bit for each action.

  static Actions BitOf(remote::AfarAction action);

  const Bell news_;
  std::mutex mutex_;
  std::deque<remote::KeyEvent> waiting_;
  std::size_t presses_ = 0;  ///< Of those that wait.
  Actions lost_ = 0;         ///< Their press was lost.
  Actions held_ = 0;         ///< Of those that act so, as far as the rules have heard.
  std::size_t seen_ = 0;     ///< So many of those that wait were looked at by `LetGo`.
};

}  // namespace tavlo::platform
