#pragma once

#include "platform/ffmpeg/plain_file.h"

namespace tavlo::platform {

/// A container format that we list.
struct ContainerFormat {
  const char* name;  ///< As the library calls its reader.
  /// Whether its length must be counted packet by packet, because the format tells none.
  bool countPackets;
};

/// The format whose mark stands in the first bytes of a file; nullptr for any other.
const ContainerFormat* FindContainerFormat(Bytes head);

}  // namespace tavlo::platform
