#pragma once

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "base/loop.h"
#include "platform/curl/socket_handle.h"
#include "platform/wake/descriptor_waits.h"
#include "shell/file_handover.h"

namespace tavlo::platform::desktop {

/// Files go from one start to the deck that runs by a socket of this machine. Both ends only ever
/// do what can be done at once, so no other process holds a loop, and whoever sends too much,
/// nonsense, or too slowly is let go of.
class SocketHandover : public shell::FileHandover {
 public:
  /// The loop and its waits must outlive it. A start that has no answer for `patience` takes it
  /// that nobody has its files.
  SocketHandover(base::Loop& loop, DescriptorWaits& waits, const std::string& installRoot,
                 base::Duration patience = std::chrono::seconds(5));
  ~SocketHandover() override;
  SocketHandover(const SocketHandover&) = delete;

  void Listen(std::function<void(const Paths& paths)> came) override;
  void Close() override;
  bool HandOver(const Paths& paths) override;

 private:
  class Guest;

  void OpenDoor();
  void LetIn();
  /// Nobody is let in until somebody has gone, or for a second.
  void Rest();
  void Hear(Guest& guest);
  /// The whole message of a guest has come.
  void Answer(Guest& guest);
  void Dismiss(Guest& guest);
  void LookAfterGuests();
  void Tell();

  base::Loop& loop_;
  DescriptorWaits& waits_;
  const std::string name_;
  const base::Duration patience_;
  std::function<void(const Paths& paths)> came_;
  SocketHandle listening_;
  std::unique_ptr<DescriptorWait> door_;  ///< Null while nobody more is let in.
  std::list<Guest> guests_;
  std::vector<Paths> untold_;
  base::Timer tmrGuests_;
  base::Timer tmrTell_;
};

}  // namespace tavlo::platform::desktop
