#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "pedals/usb_watcher.h"
#include "platform/reach/errands.h"
#include "platform/reach/hush.h"
#include "platform/wake/readable_once.h"

namespace tavlo::platform {

/// The watcher library of the root, loaded when the first watch starts. A library that is missing,
/// or lacks one of the three calls, or cannot be reached, starts no watch. It stays loaded until
/// the process ends, since it may have threads.
///
/// Used on the loop's thread, on which its calls are made, too; they may not wait for a pedal. The
/// library itself is loaded by an errand, and held in memory as far as the process may, so that no
/// call of it waits for the root.
class PluginUsbWatcher : public pedals::UsbWatcher, public WatchedFoot {
 public:
  /// The errands must outlive it.
  PluginUsbWatcher(Errands& errands, std::string libraryPath);

  bool StartWatch(int product, int usagePage, int usage, pedals::MonitorHandle& monitor) override;
  bool GetData(pedals::MonitorHandle& monitor, std::span<std::uint8_t> buffer,
               std::int32_t& count) override;
  bool StopWatch(pedals::MonitorHandle& monitor) override;
  /// A library that lacks this call is taken to have its pedal.
  pedals::UsbPresence Presence(pedals::MonitorHandle monitor) override;
  /// A library that lacks this call, too, is polled.
  bool TellOnce(pedals::MonitorHandle monitor, base::Listener& listener) override;
  /// Takes the reports that wait; `GetData` hands them over as they came.
  bool LetGo() override;

 private:
  struct Calls {
    std::uint8_t (*startWatch)(std::int32_t, std::int32_t, std::int32_t, std::int32_t*) = nullptr;
    std::uint8_t (*getData)(std::int32_t*, std::uint8_t*, std::int32_t, std::int32_t*) = nullptr;
    std::uint8_t (*stopWatch)(std::int32_t*) = nullptr;
    std::int32_t (*pedalPresence)(std::int32_t) = nullptr;
    std::int32_t (*newsDescriptor)(std::int32_t) = nullptr;

    bool Complete() const { return startWatch && getData && stopWatch; }
  };

  static Calls Load(const std::string& libraryPath);
  /// Loads the library where a stall holds nobody.
  void Fetch();
  bool TakeData(pedals::MonitorHandle& monitor, std::span<std::uint8_t> buffer,
                std::int32_t& count);
  /// Follows the pedals through reports. True when all were let go on the way.
  bool Follow(std::span<const std::uint8_t> reports);
  /// Of the watch that was started last; null when it has none to wait on.
  std::unique_ptr<ReadableOnce> FindNews(pedals::MonitorHandle monitor) const;

  Errands& errands_;
  const std::string libraryPath_;
  Calls calls_;
  std::unique_ptr<ReadableOnce> news_;
  pedals::MonitorHandle monitor_ = 0;            ///< Of the watch that was started last.
  std::deque<std::vector<std::uint8_t>> ahead_;  ///< What `LetGo` has taken, one read each.
  std::size_t reportSize_ = 0;                   ///< 0 until a read has told.
  bool held_ = false;                            ///< A pedal was down in the last report.
};

}  // namespace tavlo::platform
