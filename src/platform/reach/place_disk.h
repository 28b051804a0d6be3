#pragma once

#include <memory>
#include <utility>

#include "platform/disk/posix_disk.h"
#include "platform/reach/errands.h"
#include "platform/reach/held_file_meter.h"

namespace tavlo::platform {

/// What the thread of one place uses, and nobody else, since a stuck thread may still touch it.
struct PlaceDisk {
  PlaceDisk(WriterWatch::Clock clock, WriterWatch::LeaseTrust leaseTrust,
            std::unique_ptr<HeldFileMeter> itsMeter)
      : disk(std::move(clock), std::move(leaseTrust),
             [this] {
               if (sign) sign->Give();
             }),
        meter(std::move(itsMeter)) {}
  PlaceDisk(const PlaceDisk&) = delete;

  Errands::Sign* sign = nullptr;  ///< Of the errand at hand.
  PosixDisk disk;
  const std::unique_ptr<HeldFileMeter> meter;
};

/// Names the errand at hand as long as this lives.
class AtHand {
 public:
  AtHand(PlaceDisk& place, Errands::Sign& sign) : place_(place) { place_.sign = &sign; }
  ~AtHand() { place_.sign = nullptr; }
  AtHand(const AtHand&) = delete;

 private:
  PlaceDisk& place_;
};

}  // namespace tavlo::platform
