#pragma once

#include <chrono>
#include <mutex>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

#include "platform/keys/key_events.h"
#include "platform/keys/keyboard_service.h"
#include "platform/wake/bell.h"
#include "remote/global_keys.h"

namespace tavlo::platform {

/// A thread that has the keys of a display for the deck as long as it lives.
class GrabThread {
 public:
  /// How long a display that gives no answer keeps the end waiting.
  static constexpr std::chrono::milliseconds kMomentToEnd{300};

  /// The events, whose bell also rings when grants change, must outlive this. Throws
  /// std::system_error when the process has no descriptor or the machine no thread left.
  GrabThread(std::string display, KeyEvents& events);
  /// Gives the keys back. What was held counts as released.
  ~GrabThread();
  GrabThread(const GrabThread&) = delete;

  /// Asks for these keys and no others. What was asked for before is tried again, and keeps its
  /// grant until the display has answered. Never waits.
  void Wish(std::vector<remote::KeyWish> wishes);
  /// One for each wish, in its order. Never waits.
  std::vector<remote::KeyGrant> Grants();
  /// The display has gone, or was never there; nothing comes any more.
  bool Over();

 private:
  void Run(const std::stop_token& stop);
  /// Has the keys until they are not wished for any more or the display is lost. True when they can
  /// be had again.
  bool Serve(const std::stop_token& stop);
  void Tell(const std::vector<remote::KeyWish>& answered,
            const std::vector<remote::KeyGrant>& grants);
  void TellTheEnd();
  void Show(int descriptor);

  const std::string display_;
  KeyEvents& events_;
  const Bell wished_;
  std::mutex mutex_;
  std::vector<remote::KeyWish> wishes_;
  std::vector<remote::KeyGrant> grants_;
  bool over_ = false;
  int descriptor_ = -1;  ///< Of the connection, while it is open.
  std::binary_semaphore ended_{0};
  std::jthread thread_;
};

}  // namespace tavlo::platform
