#pragma once

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

#include "platform/keys/display_keys.h"
#include "platform/keys/held_keys.h"
#include "platform/keys/key_events.h"
#include "platform/keys/key_grabs.h"
#include "platform/keys/keyboard_map.h"
#include "platform/wake/bell.h"
#include "remote/global_keys.h"

namespace tavlo::platform {

/// A thread with a connection of its own to a display, whose keys it has for the deck as long as it
/// lives. From each press on the keyboard of the whole session stands still until the thread has
/// answered, so it does nothing else and waits for nobody but the display.
class GrabThread {
 public:
  /// How often the keyboard is looked at while a key is held and its release would not be told.
  static constexpr std::chrono::milliseconds kBetweenLooks{10};
  /// A layout changes in several steps.
  static constexpr std::chrono::milliseconds kKeyboardSettles{30};
  /// How long a display that gives no answer keeps the end waiting.
  static constexpr std::chrono::milliseconds kMomentToEnd{300};

  /// The events, whose bell also rings when grants change, must outlive this. Throws
  /// std::system_error when the process has no descriptor or the machine no thread left.
  GrabThread(std::string display, KeyEvents& events);
  /// Gives the keys back. What was held counts as released.
  ~GrabThread();
  GrabThread(const GrabThread&) = delete;

  /// Asks for these keys and no others; once more if they are the same, whose grants then stand
  /// until the display has answered. Never waits.
  void Wish(std::vector<remote::KeyWish> wishes);
  /// One for each wish, in its order. Never waits.
  std::vector<remote::KeyGrant> Grants();
  /// The display has gone, or never answered; nothing comes any more.
  bool Over();

 private:
  /// What the thread has for itself.
  struct Desk;

  void Run(const std::stop_token& stop);
  void Serve(Desk& desk, const std::stop_token& stop);
  void TakeWishes(Desk& desk);
  void TakeNews(Desk& desk);
  void FollowKeyboard(Desk& desk);
  void Grab(Desk& desk);
  void Sleep(const Desk& desk);
  void Tell(const Desk& desk, const std::vector<remote::KeyGrant>& grants);
  void Show(int descriptor);
  void TellTheEnd();

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
